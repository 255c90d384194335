#include "measure/sig_timing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "measure/meter_readings.h"
#include "measure/sig_calc.h"

using namespace zorvik;

namespace {
constexpr float kSp = 1e-6f;
const RecordShape kBytes{};

std::string codes(std::initializer_list<std::pair<int, int>> runs) {
  std::string s;
  for (auto [code, count] : runs) s.append(static_cast<size_t>(count), static_cast<char>(code));
  return s;
}

// A square wave between 50 and 200 whose edges ramp over 10 samples: 50, 65, ..., 200.
std::string rampedSquare(int periods) {
  std::string s;
  for (int p = 0; p < periods; ++p) {
    s.append(30, static_cast<char>(50));
    for (int k = 1; k < 10; ++k) s += static_cast<char>(50 + 15 * k);
    s.append(30, static_cast<char>(200));
    for (int k = 1; k < 10; ++k) s += static_cast<char>(200 - 15 * k);
  }
  return s;
}

struct Measured {
  SigCalc calc;
  SigTiming timing;
  explicit Measured(const std::string& s, const RecordShape& shape = kBytes, bool negative = false) {
    calc.CalcPeaks(s, shape.IsHiRes, 1.6f, 0);
    calc.BuildLevelHistogram(s, shape.IsHiRes, shape.IsPeak);
    calc.FindRails(shape.IsHiRes, static_cast<int>(s.size()));
    timing.FindCrossings(s, shape, 0, 127, calc);
    timing.CalcPeriod(negative, kSp);
    timing.CalcPulseWidth(negative, kSp);
    timing.FindEdges(s, shape, false, calc);
  }
};
}  // namespace

TEST(SigTiming, CrossingsNeedThirtyTwoCharactersAndComeFromTheOtherSide) {
  Measured shortRecord(codes({{50, 10}, {200, 11}, {50, 10}}));
  EXPECT_TRUE(shortRecord.timing.riseList().empty());
  EXPECT_TRUE(shortRecord.timing.fallList().empty());
  EXPECT_EQ(shortRecord.timing.PeriodCount, -1);

  // Up onto the level and resting there: one rise, counted on arrival, none on leaving upwards.
  Measured resting(codes({{100, 10}, {128, 20}, {180, 10}}));
  ASSERT_EQ(resting.timing.riseList().size(), 1u);
  EXPECT_EQ(resting.timing.riseList()[0], 11);  // A = 100 + 128, B = 128 + 128 reaches 256 at the 11th
  EXPECT_EQ(resting.timing.PeriodCount, 0);     // one rise, no fall
}

TEST(SigTiming, PeriodAndPulseWidthFromTheLists) {
  // Two rises and two falls: one period, the distance between the rises.
  Measured two(codes({{50, 10}, {200, 20}, {50, 20}, {200, 30}, {50, 10}}));
  ASSERT_EQ(two.timing.riseList().size(), 2u);
  ASSERT_EQ(two.timing.fallList().size(), 2u);
  EXPECT_EQ(two.timing.PeriodCount, 1);
  EXPECT_FLOAT_EQ(two.timing.Period, 40 * kSp);
  EXPECT_EQ(two.timing.PulseCount, 2);
  // 20 and 30 samples high, each a sample short: a rise is found on the first high sample of the
  // moving sum, a fall on the last one.
  EXPECT_FLOAT_EQ(two.timing.PulseWidth, 24 * kSp);

  // Starting high: negative polarity takes the period from the falls (10 and 45); under positive polarity
  // the first fall has no rise before it and the last rise no fall after it, so one pulse is left.
  Measured high(codes({{200, 10}, {50, 20}, {200, 15}, {50, 25}, {200, 10}}), kBytes, true);
  EXPECT_EQ(high.timing.riseList().size(), 2u);
  EXPECT_EQ(high.timing.fallList().size(), 2u);
  EXPECT_FLOAT_EQ(high.timing.Period, 35 * kSp);
  Measured positive(codes({{200, 10}, {50, 20}, {200, 15}, {50, 25}, {200, 10}}));
  EXPECT_FLOAT_EQ(positive.timing.Period, 40 * kSp);
  EXPECT_EQ(positive.timing.PulseCount, 1);
  EXPECT_FLOAT_EQ(positive.timing.PulseWidth, 14 * kSp);
  // With negative polarity but a single fall, the period comes from the rises.
  Measured oneFall(codes({{50, 10}, {200, 20}, {50, 20}, {200, 20}}), kBytes, true);
  EXPECT_EQ(oneFall.timing.fallList().size(), 1u);
  EXPECT_FLOAT_EQ(oneFall.timing.Period, 40 * kSp);
}

TEST(SigTiming, RiseAndFallTimesBetweenTheRails) {
  Measured m(rampedSquare(3));
  ASSERT_TRUE(m.calc.TopFound && m.calc.BaseFound);
  EXPECT_EQ(m.timing.RiseCount, 3);
  EXPECT_EQ(m.timing.FallCount, 3);
  EXPECT_NEAR(m.timing.RiseTime(kSp), 8 * kSp, 0.1 * kSp);  // 10 % to 90 % of a 10-sample ramp
  EXPECT_NEAR(m.timing.FallTime(kSp), 8 * kSp, 0.1 * kSp);

  // Without rails there are no edges.
  std::string sine;
  for (int i = 0; i < 1000; ++i) sine += static_cast<char>(128 + std::lround(120 * std::sin(i * 0.0628)));
  Measured none(sine);
  EXPECT_EQ(none.timing.RiseCount, 0);
  EXPECT_EQ(none.timing.RiseTime(kSp), 0);

  // Peak pairs at half rate (one character a sample) never complete a fall.
  std::string pairs;
  for (char c : rampedSquare(3)) pairs += std::string(2, c);
  Measured peak(pairs, RecordShape{false, true, true});
  EXPECT_GT(peak.timing.RiseCount, 0);
  EXPECT_EQ(peak.timing.FallCount, 0);
}

TEST(MeterReadings, ValuesAndTheStatusesInTheirPlace) {
  SigCalc c;
  SigTiming t;
  MeterContext ctx;
  EXPECT_EQ(readMeter(Meter::DCV, c, t, ctx).status, "Limit!");
  EXPECT_EQ(readMeter(Meter::ACV, c, t, ctx).status, "No signal");
  EXPECT_EQ(readMeter(Meter::FRH, c, t, ctx).status, "No signal");
  EXPECT_EQ(readMeter(Meter::FRH, c, t, ctx).value, 1);  // 1 / 1 until a period is found
  EXPECT_EQ(readMeter(Meter::RTS, c, t, ctx).status, "No rises");
  EXPECT_EQ(readMeter(Meter::FTS, c, t, ctx).status, "No falls");
  EXPECT_EQ(readMeter(Meter::TRV, c, t, ctx).status, "NotFound");
  EXPECT_EQ(meterTable().size(), 19u);
  EXPECT_STREQ(meterInfo(Meter::VDB).unit, "dBV");

  Measured m(rampedSquare(4));
  ctx.n = 600;
  const MeterReading f = readMeter(Meter::FRH, m.calc, m.timing, ctx);
  EXPECT_TRUE(f.status.empty());
  EXPECT_NEAR(f.value, 1 / (78 * kSp), 1);  // a period of 78 samples
  EXPECT_TRUE(f.detail);
  const MeterReading duty = readMeter(Meter::DCR, m.calc, m.timing, ctx);
  EXPECT_NEAR(duty.value, 50, 1);
  EXPECT_EQ(duty.picture, "00.0");
  const MeterReading dc = readMeter(Meter::DCV, m.calc, m.timing, ctx);
  EXPECT_EQ(dc.status, "Limit!");  // CalcDC never ran on this one
  EXPECT_FLOAT_EQ(static_cast<float>(readMeter(Meter::RRV, m.calc, m.timing, ctx).resolution), 1.6f / 256);
}
