#include <gtest/gtest.h>

#include <string>

#include "core/fault.h"
#include "export/csv_text.h"
#include "export/zrv_file.h"

using namespace zorvik;
using namespace std::string_literals;

TEST(ZrvFormat, WrittenLayoutIsMagicExtraLengthOneSamplesPerDivThenThePacket) {
  std::string packet = "\x10\x00\x00\x00\xff\x80\x00\x7f"s;
  EXPECT_EQ(makeZrv(packet, 128), "zorvik\x01\x80"s + packet);
  EXPECT_EQ(makeZrv("", 255), "zorvik\x01\xff"s);
  EXPECT_THROW(makeZrv("x", 256), Fault);
  EXPECT_THROW(makeZrv("x", -1), Fault);
}

TEST(ZrvFormat, ExtraLengthIsTakenFromTheFile) {
  auto none = parseZrv("zorvik\x00\x10\x00\x00\x00\x41"s);
  ASSERT_TRUE(none);
  EXPECT_FALSE(none->samplesPerDiv);
  EXPECT_EQ(none->packet, "\x10\x00\x00\x00\x41"s);

  auto three = parseZrv("zorvik\x03\x20\xAA\xBB\x10\x00\x00\x00\x41"s);
  ASSERT_TRUE(three);
  EXPECT_EQ(three->samplesPerDiv, 32);
  EXPECT_EQ(three->packet, "\x10\x00\x00\x00\x41"s);
}

TEST(ZrvFormat, ShortFilesGiveAnEmptyPacket) {
  for (std::string bytes : {"zorvik\x00"s, "zorvik"s, "zorvik\x05"s, "zorvik\xff\x08\x01"s}) {
    auto z = parseZrv(bytes);
    ASSERT_TRUE(z);
    EXPECT_TRUE(z->packet.empty());
    // No SamplesPerDiv without its byte.
    EXPECT_EQ(z->samplesPerDiv.has_value(), bytes.size() >= 8 && bytes[6] != 0);
  }
}

TEST(ZrvFormat, MagicIsComparedWithCase) {
  EXPECT_FALSE(parseZrv("Zorvik\x01\x10\x10\x00\x00\x00"s));
  EXPECT_FALSE(parseZrv("ZORVIK\x01\x10"s));
  EXPECT_FALSE(parseZrv("zorvi"));
}

TEST(PacketCsv, BytesFromTheFifthOnWithTheirSignBlankAndACarriageReturn) {
  // Later segment words are written as they lie.
  EXPECT_EQ(packetCsvText("\x20\x00\x00\x00\x89\x00\xff\x05"s), " 137\r 0\r 255\r 5\r");
  EXPECT_EQ(packetCsvText("\x10\x00\x00\x00"s), "");
  EXPECT_EQ(packetCsvText("\x10"s), "");
  std::string negative;
  appendCsvInteger(negative, -7);
  EXPECT_EQ(negative, "-7\r");
}
