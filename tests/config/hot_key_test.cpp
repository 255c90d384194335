#include "config/hot_key.h"

#include <gtest/gtest.h>

#include "config/settings.h"

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
