#include "core/latin1_text.h"

#include <gtest/gtest.h>

#include <string>

using namespace zorvik;

TEST(Latin1Text, EveryByteIsTheCharacterOfItsCodeAndComesBackTheSame) {
  std::string all;
  for (int b = 0; b < 256; ++b) all += static_cast<char>(b);
  const QString text = latin1Text(all);
  ASSERT_EQ(text.size(), 256);
  for (int b = 0; b < 256; ++b) EXPECT_EQ(text[b].unicode(), b) << "byte " << b;
  EXPECT_EQ(latin1Bytes(text), all);
}

TEST(Latin1Text, HighBytesShowAsTheirLatin1Characters) {
  // A device name and a unit as an instrument or an old file may hold them: one byte a character.
  EXPECT_EQ(latin1Text("Gr\xFC\xDF"
                       "e \xB5s \xA9"),
            QString::fromUtf8("Grüße µs ©"));
  EXPECT_EQ(latin1Bytes(QString::fromUtf8("Grüße µs ©")),
            "Gr\xFC\xDF"
            "e \xB5s \xA9");
}

TEST(Latin1Text, ACharacterAbove255BecomesOneQuestionMark) {
  EXPECT_EQ(latin1Bytes(QString::fromUtf8("\xC3\xBF\xC4\x80")), "\xFF?");  // U+00FF stays, U+0100 has no byte
  EXPECT_EQ(latin1Bytes(QString::fromUtf8("5\xE2\x82\xAC")), "5?");        // the euro sign
  EXPECT_EQ(latin1Bytes(QString::fromUtf8("a\xF0\x9F\x98\x80z")), "a?z");  // above U+FFFF: one character
  EXPECT_EQ(latin1Bytes(QString(QChar(0xD83D)) + QChar('z')), "?z");       // a lone surrogate
}
