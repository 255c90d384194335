#include "config/hot_key.h"

#include <gtest/gtest.h>

#include "config/settings.h"
#include "core/recording_sink.h"

using namespace zorvik;

TEST(HotKey, StoredValueRangeAndSymbol) {
  MemorySettings s;
  EXPECT_FALSE(readHotKey(s, "Oscilloscope").registrable());  // 0: no key
  saveHotKey(s, "Oscilloscope", {2, 'O'});
  EXPECT_EQ(s.GetSettingValue("Windows Hot Keys", "Oscilloscope", ""), "591");  // Ctl + "O"
  const HotKeyValue k = readHotKey(s, "Oscilloscope");
  EXPECT_EQ(k.modifier, 2);
  EXPECT_EQ(k.symbol, 'O');
  EXPECT_TRUE(k.registrable());
  EXPECT_FALSE(hotKeyFromValue(256).registrable());  // a modifier without a character
  EXPECT_TRUE(hotKeyFromValue(257).registrable());
  EXPECT_TRUE(hotKeyFromValue(1279).registrable());
  EXPECT_FALSE(hotKeyFromValue(1280).registrable());
  EXPECT_EQ(hotKeySymbol("q"), 'Q');  // typed lower case, kept upper case
  EXPECT_EQ(hotKeySymbol(""), 0);
}

TEST(HotKey, AKeyBelongsToOneWindowAndGoesWithAnother) {
  HotKeyTable t;
  using O = HotKeyTable::Outcome;
  EXPECT_EQ(t.give("Oscilloscope", {2, 'O'}), O::Given);
  EXPECT_EQ(t.give("Oscilloscope", {2, 'O'}), O::Given);  // its own key again
  EXPECT_EQ(t.give("Statscope", {2, 'O'}), O::Occupied);
  EXPECT_EQ(t.holder({2, 'O'}), "Oscilloscope");
  EXPECT_EQ(t.give("Statscope", {4, 'O'}), O::Given);  // another modifier is another key
  // A window that takes a new key frees its old one.
  EXPECT_EQ(t.give("Oscilloscope", {2, 'P'}), O::Given);
  EXPECT_EQ(t.holder({2, 'O'}), "");
  EXPECT_EQ(t.give("Statscope", {2, 'O'}), O::Given);
  EXPECT_EQ(t.holder({4, 'O'}), "");
  // No key (0, or out of range) takes the window's key away; a closed window frees its key.
  EXPECT_EQ(t.give("Statscope", {}), O::Cleared);
  EXPECT_EQ(t.holder({2, 'O'}), "");
  t.release("Oscilloscope");
  EXPECT_EQ(t.give("Spectrumscope", {2, 'P'}), O::Given);
}

TEST(HotKey, AnOccupiedStoredKeyAsksForAnother) {
  MemorySettings s;
  HotKeyTable t;
  RecordingSink sink;
  bool setup = true;
  EXPECT_EQ(giveStoredHotKey(t, s, sink, "Oscilloscope", setup), HotKeyTable::Outcome::Cleared);
  EXPECT_FALSE(setup);
  saveHotKey(s, "Oscilloscope", {2, 'O'});
  saveHotKey(s, "VDC meter", {2, 'O'});
  EXPECT_EQ(giveStoredHotKey(t, s, sink, "Oscilloscope", setup), HotKeyTable::Outcome::Given);
  EXPECT_TRUE(sink.messages.empty());
  EXPECT_FALSE(setup);
  sink.answers = {kAnswerNo, kAnswerYes};
  EXPECT_EQ(giveStoredHotKey(t, s, sink, "VDC meter", setup), HotKeyTable::Outcome::Occupied);
  EXPECT_FALSE(setup);
  ASSERT_EQ(sink.messages.size(), 1u);
  EXPECT_EQ(sink.messages[0].kind, BoxKind::Question);
  EXPECT_EQ(sink.messages[0].title, "Error");
  EXPECT_EQ(sink.messages[0].text, "You hotkey occupied, setup another hotkey?");
  giveStoredHotKey(t, s, sink, "VDC meter", setup);
  EXPECT_TRUE(setup);
  EXPECT_EQ(t.holder({2, 'O'}), "Oscilloscope");
}

TEST(HotKey, AnOccupiedChosenKeyIsStoredAndRefusedWithTheHolderNamed) {
  MemorySettings s;
  HotKeyTable t;
  RecordingSink sink;
  t.give("Oscilloscope", {2, 'O'});
  t.give("Statscope", {1, 'S'});
  EXPECT_EQ(giveChosenHotKey(t, s, sink, "Statscope", {2, 'O'}), HotKeyTable::Outcome::Occupied);
  EXPECT_EQ(s.GetSettingValue("Windows Hot Keys", "Statscope", ""), "591");  // stored before it is tried
  ASSERT_EQ(sink.messages.size(), 1u);
  EXPECT_EQ(sink.messages[0].kind, BoxKind::Critical);
  EXPECT_NE(sink.messages[0].text.find("Oscilloscope"), std::string::npos);
  EXPECT_EQ(t.holder({1, 'S'}), "Statscope");  // the refused window keeps its key
  EXPECT_EQ(giveChosenHotKey(t, s, sink, "Statscope", {2, 'S'}), HotKeyTable::Outcome::Given);
  EXPECT_EQ(sink.messages.size(), 1u);
}
