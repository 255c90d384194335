#include "control/timebase_rule.h"

#include <gtest/gtest.h>

#include <cmath>

#include "core/fault.h"

using namespace zorvik;

namespace {

// The simulator's device: safe clock 10 ns, 8 to 500 ns, fast sampler at 1/2, 1 and 2 clocks.
TimebaseLimits simLimits() {
  return {1000, 800, 50000, 7, 256, 8, 256, 25600};
}

TimebaseRuleInput input(float t, TimebaseLimits l = simLimits()) {
  TimebaseRuleInput in;
  in.timePerDiv = t;
  in.limits = l;
  in.clock = clockWindow(l, {});
  return in;
}

void withTable(TimebaseRuleInput& in, int32_t qsh) {
  in.qsTableEntry = [qsh](int32_t) { return qsh; };
}

}  // namespace

TEST(ClockWindow, ManualLimitsAreHeldToTheDevicesClocks) {
  TimebaseLimits l = simLimits();
  ClockWindow device = clockWindow(l, {});
  EXPECT_DOUBLE_EQ(device.PeriodSlow, 5e-7);  // MCh
  EXPECT_DOUBLE_EQ(device.PeriodFast, 1e-8);  // MCd, the safe clock
  EXPECT_DOUBLE_EQ(clockWindow(l, {10, 1, 0, 0}).PeriodSlow, 1e-7);
  EXPECT_DOUBLE_EQ(clockWindow(l, {1, 1, 0, 0}).PeriodSlow, 5e-7);    // 1 MHz is slower than the device goes
  EXPECT_DOUBLE_EQ(clockWindow(l, {10, 0, 0, 0}).PeriodSlow, 5e-7);   // not chosen as manual
  EXPECT_DOUBLE_EQ(clockWindow(l, {0, 0, 200, 1}).PeriodFast, 8e-9);  // 200 MHz is faster than MCl
  EXPECT_DOUBLE_EQ(clockWindow(l, {0, 0, 50, 1}).PeriodFast, 2e-8);
  EXPECT_DOUBLE_EQ(clockWindow(l, {0, 1, 50, 0}).PeriodFast, 1e-8);
}

TEST(TimebaseRule, SlowSamplingFallsBackToOneScreenWhileTheMemoryIsUnknown) {
  // 100 us: at 32 samples a division the screen needs 320 samples, more than the 250 assumed.
  TimebaseRuleInput in = input(100e-6f);
  TimebaseRuleResult r = selectTimebase(in);
  ASSERT_TRUE(r.ok());
  EXPECT_EQ(r.branch, TimebaseBranch::Slow);
  EXPECT_EQ(r.SamplesPerDiv, 16);
  EXPECT_EQ(r.TS, 25600);  // the roll limit TPl
  EXPECT_EQ(r.MC, 6250);
  EXPECT_EQ(r.QS, 160 + 12);
  EXPECT_FALSE(r.RisActive);

  withTable(in, 8192);
  r = selectTimebase(in);
  EXPECT_EQ(r.SamplesPerDiv, 32);
  EXPECT_EQ(r.MC, 3125);
  EXPECT_EQ(r.QS, 332);
  withTable(in, 325);  // no more than the memory holds
  EXPECT_EQ(selectTimebase(in).QS, 325);
}

TEST(TimebaseRule, OnlyTheDeepestMemoryMayFallShortOfTheScreenAndByLessThanHalf) {
  TimebaseRuleInput in = input(100e-6f);
  in.MemoDepth = 3;  // 128 samples a division first: 1280 on the screen
  withTable(in, 1000);
  TimebaseRuleResult r = selectTimebase(in);
  EXPECT_EQ(r.SamplesPerDiv, 128);
  EXPECT_EQ(r.QS, 1000);
  withTable(in, 600);  // short by more than half
  r = selectTimebase(in);
  EXPECT_EQ(r.SamplesPerDiv, 64);
  EXPECT_EQ(r.QS, 600);
  in.MemoDepth = 2;
  EXPECT_EQ(selectTimebase(in).SamplesPerDiv, 32);
  withTable(in, 1000);
  r = selectTimebase(in);
  EXPECT_EQ(r.SamplesPerDiv, 64);
  EXPECT_EQ(r.QS, 652);
}

TEST(TimebaseRule, LongestAndMiddleTimesPerDivision) {
  TimebaseRuleInput in = input(0.5f);
  withTable(in, 8192);
  TimebaseRuleResult r = selectTimebase(in);
  EXPECT_EQ(r.TS, 8000256);  // (Int(m x 256 / PeriodSlow) \ 256 + 1) x 256
  EXPECT_EQ(r.MC, 49998);
  // 1 us runs at one clock a sample, the real-time limit TOl.
  in = input(1e-6f);
  r = selectTimebase(in);
  EXPECT_EQ(r.TS, 256);
  EXPECT_EQ(r.MC, 6250);
  // A slow clock of 10 us: the longest time still fits 2^24 samples, so the rule goes on.
  TimebaseLimits slow = simLimits();
  slow.MCh = 1000000;
  in = input(0.5f, slow);
  in.MemoDepth = 0;
  r = selectTimebase(in);
  EXPECT_EQ(r.branch, TimebaseBranch::Slow);
  EXPECT_EQ(r.TS, 3126 * 256);
}

TEST(TimebaseRule, TheThreeRefusalsAndTheOneForTooLong) {
  EXPECT_STREQ(kTimeDivNotSupported, "Time/div not supported.");
  EXPECT_STREQ(kSelectOtherValue, "Time/div not supported.\r\nSelect other value.");
  EXPECT_STREQ(kUseHighSpeedScope, "Time/div not supported.\r\nUse high speed oscilloscope.");
  EXPECT_STREQ(kUseRisForRepetitive, "Time/div not supported.\r\nUse RIS for repetitive sig.");

  TimebaseRuleResult r = selectTimebase(input(20e-9f));
  EXPECT_FALSE(r.ok());
  EXPECT_EQ(r.message, kUseRisForRepetitive);
  EXPECT_EQ(r.SamplesPerDiv, 16);

  TimebaseRuleInput ris = input(1e-9f);
  ris.EnableRIS = true;
  EXPECT_EQ(selectTimebase(ris).message, kUseHighSpeedScope);

  // The fast sampler starts at 4 clocks, above the longest RIS period: between them nothing serves.
  TimebaseLimits gap = simLimits();
  gap.TOv = 1 << 4;
  gap.TOl = 2048;
  EXPECT_EQ(selectTimebase(input(200e-9f, gap)).message, kSelectOtherValue);

  // Too long even for 2^24 samples of the slowest clock: refused in the first round.
  TimebaseLimits fast = simLimits();
  fast.MCh = 1000;
  r = selectTimebase(input(10.0f, fast));
  EXPECT_EQ(r.message, kTimeDivNotSupported);
  EXPECT_EQ(r.SamplesPerDiv, 32);
  // A time that is no time is refused, not looped on.
  EXPECT_FALSE(selectTimebase(input(-1.0f)).ok());
  EXPECT_FALSE(selectTimebase(input(0.0f)).ok());
  EXPECT_FALSE(selectTimebase(input(std::nanf(""))).ok());
}

TEST(TimebaseRule, RefusalsComeAtSixteenSamplesOnly) {
  // At 32 samples the fast sampler is too slow for 100 ns, which is no refusal; at 16 it serves.
  TimebaseRuleResult r = selectTimebase(input(100e-9f));
  ASSERT_TRUE(r.ok());
  EXPECT_EQ(r.branch, TimebaseBranch::Fast);
  EXPECT_EQ(r.SamplesPerDiv, 16);
  // A branch that fails at 16 (a screen wider than the memory) goes on to 8.
  TimebaseRuleInput in = input(100e-9f);
  in.AcqWidthPixels = 640;
  r = selectTimebase(in);
  ASSERT_TRUE(r.ok());
  EXPECT_EQ(r.SamplesPerDiv, 8);
}

TEST(TimebaseRule, FastBranchWalksTheBitsOfTOv) {
  TimebaseLimits l = simLimits();
  l.TOv = 0x16;  // 1, 2 and 4 clocks a sample
  l.TOl = 1000000;
  l.TPl = 100000000;
  l.MCh = 2000;  // slowest clock 20 ns
  TimebaseRuleInput in = input(16 * 30e-9f, l);
  in.MemoDepth = 0;
  // Up from the lowest bit while the clock would have to be slower than the slowest.
  TimebaseRuleResult r = selectTimebase(in);
  ASSERT_EQ(r.branch, TimebaseBranch::Fast);
  EXPECT_EQ(r.TS, 512);
  EXPECT_EQ(r.MC, 1500);
  // Down from the highest bit while the clock would have to be faster than the fastest.
  in.MaximizeClock = true;
  r = selectTimebase(in);
  EXPECT_EQ(r.TS, 512);
  in.timePerDiv = 16 * 50e-9f;
  EXPECT_EQ(selectTimebase(in).TS, 1024);
}

TEST(TimebaseRule, RisStepIsRoundedUpWithATolerance) {
  TimebaseLimits l{1000, 800, 1000, 1 << 20, 10000000, 8, 1000, 100000000};
  TimebaseRuleInput in = input(4.15486e-7f, l);  // x = 3.004: within the tolerance of 3
  in.EnableRIS = true;
  in.MemoDepth = 0;
  TimebaseRuleResult r = selectTimebase(in);
  ASSERT_EQ(r.branch, TimebaseBranch::Ris);
  EXPECT_EQ(r.TS, 2000 / 3);
  EXPECT_TRUE(r.RisActive);
  in.timePerDiv = 4.026e-7f;  // x = 3.1: up to 4
  EXPECT_EQ(selectTimebase(in).TS, 500);
  // 20 ns on the simulator: the step is cut to the shortest RIS period.
  TimebaseRuleInput sim = input(20e-9f);
  sim.EnableRIS = true;
  r = selectTimebase(sim);
  EXPECT_EQ(r.branch, TimebaseBranch::Ris);
  EXPECT_EQ(r.TS, 8);
  EXPECT_EQ(r.MC, 4000);
  // 200 ns needs no RIS: one clock of 12.5 ns a sample is real time.
  sim.timePerDiv = 200e-9f;
  r = selectTimebase(sim);
  EXPECT_EQ(r.branch, TimebaseBranch::Slow);
  EXPECT_EQ(r.TS, 256);
  EXPECT_EQ(r.MC, 1250);
}

TEST(TimebaseRule, ArithmeticThatCannotGoOnIsAFault) {
  // The safe clock unknown: maximizing divides by its zero period.
  TimebaseLimits noSafe = simLimits();
  noSafe.MCd = 0;
  TimebaseRuleInput in = input(100e-6f, noSafe);
  in.MaximizeClock = true;
  EXPECT_THROW(selectTimebase(in), Fault);
  // A sampling period past 32 bits.
  TimebaseLimits fast = simLimits();
  fast.MCh = 1000;
  in = input(2.0f, fast);
  in.MemoDepth = 0;
  EXPECT_THROW(selectTimebase(in), Fault);
  in.MemoDepth = 4;
  EXPECT_THROW(selectTimebase(in), Fault);
}
