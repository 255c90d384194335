#include "signal/header_value.h"

#include <gtest/gtest.h>

#include <string>

#include "link/device_cache.h"

using namespace zorvik;

namespace {
std::string bytes(std::initializer_list<int> b) {
  std::string s;
  for (int v : b) s += static_cast<char>(v);
  return s;
}
}  // namespace

TEST(HeaderValue, FitsEachTargetWidth) {
  EXPECT_EQ(fitByte(bytes({0xFF})), 255);
  EXPECT_EQ(fitByte(bytes({0x01, 0x00})), std::nullopt);
  EXPECT_EQ(fitByte(bytes({0x00, 0x7F})), 0x7F);  // leading zero bytes still fit
  EXPECT_EQ(fitByte(""), 0);                      // an empty value folds to 0
  EXPECT_EQ(fitSigned16(bytes({0xFF, 0xFF})), -1);
  EXPECT_EQ(fitSigned16(bytes({0x7F, 0xFF})), 32767);
  EXPECT_EQ(fitSigned16(bytes({0x01, 0x00, 0x00})), std::nullopt);
  EXPECT_EQ(fitUnsigned16(bytes({0x80, 0x00})), std::nullopt);
  EXPECT_EQ(fitUnsigned16(bytes({0x7F, 0xFF})), 32767);
  EXPECT_EQ(fit32(bytes({0x80, 0x00})), 32768);
  EXPECT_EQ(fit32(bytes({0xFF, 0xFF, 0xFF, 0xFF})), -1);
  EXPECT_EQ(fit32(bytes({0x80, 0, 0, 0})), INT32_MIN);
  EXPECT_EQ(fit32(bytes({0x01, 0, 0, 0, 0})), std::nullopt);  // five bytes: too wide
  EXPECT_EQ(fit32(bytes({0, 0, 0, 0, 5})), 5);                // five bytes that still fit
}

TEST(HeaderValue, OverlongValueSaturatesInsteadOfWrapping) {
  std::string nine(9, static_cast<char>(0xFF));
  EXPECT_EQ(fit32(nine), std::nullopt);
  // 2^64 would wrap to 0 in a plain fold and wrongly fit every target.
  std::string wrap = bytes({1, 0, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(fitByte(wrap), std::nullopt);
}

TEST(DeviceCache, SamplingClassesAndTableIndex) {
  DeviceCache c;
  c.TMl = 8;
  c.TMh = 1024;
  c.TOl = 2048;
  c.TOv = 0x6;  // one and two clocks a sample: floor 256
  EXPECT_EQ(c.fastFloor(), 256);
  EXPECT_EQ(c.samplingClass(4), 0);
  EXPECT_EQ(c.samplingClass(100), 1);
  EXPECT_EQ(c.samplingClass(256), 2);
  EXPECT_EQ(c.samplingClass(1024), 2);
  EXPECT_EQ(c.samplingClass(1025), 3);
  EXPECT_EQ(c.samplingClass(2048), 4);
  c.TOv = 0x1;  // half a clock only
  EXPECT_EQ(c.fastFloor(), 128);
  EXPECT_EQ(c.samplingClass(100), 1);
  EXPECT_EQ(c.samplingClass(200), 2);

  c.TS = 5000;
  c.RS = 0xFF;  // only the low three bits count
  c.AP = 3;
  c.M1 = 0xFC;
  EXPECT_EQ(c.limitRow(), 4 * 8 + 7);
  EXPECT_EQ(c.limitColumn(), 8 + 4);
  EXPECT_LT(c.limitRow(), kLimitRows);
}
