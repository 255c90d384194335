#include "measure/sig_calc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

using namespace zorvik;

namespace {
constexpr float kFs = 1.6f;  // 200 mV a division

std::string bytes(std::initializer_list<std::pair<int, int>> runs) {
  std::string s;
  for (auto [code, count] : runs) s.append(static_cast<size_t>(count), static_cast<char>(code));
  return s;
}

std::string words(std::initializer_list<std::pair<int, int>> runs) {
  std::string s;
  for (auto [code, count] : runs)
    for (int i = 0; i < count; ++i) {
      s += static_cast<char>(code >> 8);
      s += static_cast<char>(code & 0xFF);
    }
  return s;
}
}  // namespace

TEST(SigCalc, EmptyAndClippedRecordsLeaveTheFlagsFalseAndTheValuesAsTheyWere) {
  SigCalc c;
  c.CalcDC(bytes({{140, 10}}), false, kFs, 0.1f);
  ASSERT_TRUE(c.DCValid);
  EXPECT_EQ(c.MeanCode8, 140);
  EXPECT_EQ(c.MeanCode16, 140 * 256);
  EXPECT_FLOAT_EQ(c.DCVolts, kFs * 12 / 256 + 0.1f);

  c.CalcDC("", false, kFs, 0);
  c.CalcPeaks("", false, kFs, 0);
  c.CalcAC("", false, kFs);
  EXPECT_FALSE(c.DCValid);
  EXPECT_FALSE(c.PeakHighValid);
  EXPECT_FALSE(c.PeakLowValid);
  EXPECT_FALSE(c.HasAC);

  // One sample at the top of the range: no DC, the means stand; only the high peak is out of range.
  c.CalcDC(bytes({{100, 5}, {255, 1}, {100, 5}}), false, kFs, 0);
  EXPECT_FALSE(c.DCValid);
  EXPECT_EQ(c.MeanCode8, 140);
  c.CalcPeaks(bytes({{100, 5}, {255, 1}}), false, kFs, 0);
  EXPECT_FALSE(c.PeakHighValid);
  EXPECT_TRUE(c.PeakLowValid);
  EXPECT_FLOAT_EQ(c.PeakLowVolts, kFs * (100 - 128) / 256);
  EXPECT_FLOAT_EQ(c.PeakToPeakVolts, kFs * 155 / 256);
}

TEST(SigCalc, MeansTruncateInBothWidths) {
  SigCalc c;
  c.CalcDC(bytes({{100, 2}, {101, 1}}), false, kFs, 0);  // 301 / 3
  EXPECT_EQ(c.MeanCode8, 100);
  c.CalcDC(words({{0x8000, 1}, {0x8003, 1}}), true, kFs, 0);  // 2 x 65539 / 4 characters
  EXPECT_EQ(c.MeanCode16, 0x8001);
  EXPECT_EQ(c.MeanCode8, 0x80);
  EXPECT_FLOAT_EQ(c.DCVolts, kFs * 1 / 65536);
  c.CalcDC(words({{65535, 1}}), true, kFs, 0);
  EXPECT_FALSE(c.DCValid);
}

TEST(SigCalc, AcRmsAboutTheMeanAndItsLevel) {
  SigCalc c;
  const std::string square = bytes({{78, 50}, {178, 50}});  // 50 codes either side of 128
  c.CalcDC(square, false, kFs, 0.5f);
  c.CalcAC(square, false, kFs);
  ASSERT_TRUE(c.HasAC);
  EXPECT_FLOAT_EQ(c.ACVolts, 50 * kFs / 256);
  EXPECT_FLOAT_EQ(c.ACDCVolts, 0.5f + c.ACVolts);  // magnitudes added, not squares
  EXPECT_NEAR(c.LevelDBV, 20 * std::log10(c.ACVolts), 1e-4);

  // A constant record: no AC, and the level keeps its earlier value.
  const float level = c.LevelDBV;
  const std::string flat = bytes({{100, 64}});
  c.CalcDC(flat, false, kFs, 0);
  c.CalcAC(flat, false, kFs);
  EXPECT_FALSE(c.HasAC);
  EXPECT_EQ(c.ACVolts, 0);
  EXPECT_EQ(c.LevelDBV, level);

  const std::string hi = words({{0x8000 - 1000, 10}, {0x8000 + 1000, 10}});
  c.CalcDC(hi, true, kFs, 0);
  c.CalcAC(hi, true, kFs);
  EXPECT_FLOAT_EQ(c.ACVolts, 1000 * kFs / 65536);
}

TEST(SigCalc, SquareWaveFindsBothRailsAndTheOvershoots) {
  SigCalc c;
  const std::string square = bytes({{60, 100}, {210, 2}, {200, 98}, {55, 1}});
  c.CalcPeaks(square, false, kFs, 0);
  c.BuildLevelHistogram(square, false, false);
  c.FindRails(false, static_cast<int>(square.size()));
  EXPECT_EQ(c.BaseCode8, 60);
  EXPECT_EQ(c.TopCode8, 200);
  EXPECT_EQ(c.TopCode16, 200 * 256);
  EXPECT_TRUE(c.BaseFound);
  EXPECT_TRUE(c.TopFound);
  EXPECT_FLOAT_EQ(c.RailToRailVoltage(false, kFs), kFs * 140 / 256);
  EXPECT_FLOAT_EQ(c.TopRailVoltage(false, kFs, 0.2f), kFs * 72 / 256 + 0.2f);
  EXPECT_FLOAT_EQ(c.PositiveOvershoot(false), 10.0f / 140);
  EXPECT_FLOAT_EQ(c.NegativeOvershoot(false), 5.0f / 140);
}

TEST(SigCalc, SpreadShortAndCloseRecords) {
  SigCalc c;
  // A sine over most of the screen spends too little time near any one level: no rails. (A small one
  // crowds its peaks into the windows and finds them.)
  std::string sine;
  for (int i = 0; i < 1000; ++i) sine += static_cast<char>(128 + std::lround(120 * std::sin(i * 0.0628)));
  c.BuildLevelHistogram(sine, false, false);
  c.FindRails(false, 1000);
  EXPECT_FALSE(c.TopFound);
  EXPECT_FALSE(c.BaseFound);

  // Fewer than 20 characters count nothing.
  c.BuildLevelHistogram(bytes({{90, 19}}), false, false);
  EXPECT_EQ(c.histogram8(90), 0);
  c.FindRails(false, 19);
  EXPECT_FALSE(c.TopFound);
  EXPECT_EQ(c.BaseCode8, 0);  // an empty histogram leaves the first rail at bin 0

  // A second level 4 bins from the strongest is inside its exclusion zone: the rail is the next one out.
  c.BuildLevelHistogram(bytes({{100, 60}, {104, 50}, {150, 30}}), false, false);
  c.FindRails(false, 140);
  EXPECT_LE(std::abs(c.BaseCode8 - 100), 2);
  EXPECT_EQ(c.TopCode8, 150);

  // Peak pairs count at the middle of each pair.
  c.BuildLevelHistogram(
      bytes({{90, 1}, {111, 1}, {90, 1}, {111, 1}, {90, 1}, {111, 1}, {90, 1}, {111, 1}, {90, 1}, {111, 1},
             {90, 1}, {111, 1}, {90, 1}, {111, 1}, {90, 1}, {111, 1}, {90, 1}, {111, 1}, {90, 1}, {111, 1}}),
      false, true);
  EXPECT_EQ(c.histogram8(100), 10);
  EXPECT_EQ(c.histogram8(90), 0);
}

TEST(SigCalc, HiResRailsAndTheBaseRailsOwnDivisor) {
  SigCalc c;
  const std::string square = words({{0x2000, 200}, {0xE000, 200}});
  c.BuildLevelHistogram(square, true, false);
  EXPECT_EQ(c.histogram12(0x200), 200);
  c.FindRails(true, 400);
  EXPECT_EQ(c.BaseCode16, 0x2000);
  EXPECT_EQ(c.TopCode16, 0xE000);
  EXPECT_EQ(c.TopCode8, 0xE0);
  EXPECT_TRUE(c.TopFound && c.BaseFound);
  const float top = c.TopRailVoltage(true, kFs, 0), base = c.BaseRailVoltage(true, kFs, 0);
  EXPECT_FLOAT_EQ(top, kFs * 0.375f);
  // Equal rails about the middle, but the base reads about 0.15 % low.
  EXPECT_NEAR(-base / top, 65536.0 / 65636.0, 1e-6);
}
