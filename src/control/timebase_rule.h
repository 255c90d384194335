#pragma once
#include <cstdint>
#include <functional>
#include <string>

namespace zorvik {

// The device's limits that the rule reads: the session's seven and the safe clock.
struct TimebaseLimits {
  int32_t MCd = 0, MCl = 0, MCh = 0;
  int32_t TOv = 0, TOl = 0, TMl = 0, TMh = 0, TPl = 0;
  // The fast sampler's floor, clocks x 256: the lowest set bit n of TOv times 256, 128 for bit 0.
  int32_t fastFloor() const;
};

// The manual clock limits of the clock page, in MHz; 0 in a "Manual" value means the device's own.
struct ClockSettings {
  int minimum = 0, manualMin = 0, maximum = 0, manualMax = 0;
};

// The clock periods the rule may use, seconds.
struct ClockWindow {
  double PeriodFast = 0;
  double PeriodSlow = 0;
};
ClockWindow clockWindow(const TimebaseLimits& limits, const ClockSettings& settings);

struct TimebaseRuleInput {
  float timePerDiv = 0;  // seconds
  TimebaseLimits limits;
  ClockWindow clock;
  bool EnableRIS = false;
  bool MaximizeClock = false;
  int MemoDepth = 1;  // 0..3
  int AcqWidthPixels = 320;
  // The memory limit table's entry for a sampling period about to be set (0: not known yet).
  std::function<int32_t(int32_t ts)> qsTableEntry = [](int32_t) { return 0; };
};

enum class TimebaseBranch { Refused, Slow, Fast, Ris };

struct TimebaseRuleResult {
  TimebaseBranch branch = TimebaseBranch::Refused;
  std::string message;     // the box text when refused
  int SamplesPerDiv = 16;  // S of the round that stopped
  int ScreenSamples = 0;
  int32_t TS = 0, MC = 0, QS = 0;
  bool RisActive = false;
  bool ok() const { return branch != TimebaseBranch::Refused; }
};

// The three texts of a time per division that cannot be served, after the common first line.
extern const char* const kTimeDivNotSupported;
extern const char* const kSelectOtherValue;
extern const char* const kUseHighSpeedScope;
extern const char* const kUseRisForRepetitive;

// Chooses sampling period, clock and record length for a time per division: rounds A to F with the
// slow, fast and RIS branches. Pure: the caller writes the result.
TimebaseRuleResult selectTimebase(const TimebaseRuleInput& in);

}  // namespace zorvik
