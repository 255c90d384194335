#include "control/timebase_rule.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/fault.h"
#include "core/whole_numbers.h"

namespace zorvik {

const char* const kTimeDivNotSupported = "Time/div not supported.";
const char* const kSelectOtherValue = "Time/div not supported.\r\nSelect other value.";
const char* const kUseHighSpeedScope = "Time/div not supported.\r\nUse high speed oscilloscope.";
const char* const kUseRisForRepetitive = "Time/div not supported.\r\nUse RIS for repetitive sig.";

namespace {

constexpr double kTwoTo24 = 16777216.0;
constexpr double kTsHigh = 2147483647.0;  // the slow branch's high limit
constexpr int kMinQsMax = 250;            // stands in while the memory table is still empty

bool bit(int32_t mask, int n) {
  return n >= 0 && n < 32 && ((static_cast<uint32_t>(mask) >> n) & 1u) != 0;
}
int32_t fastTs(int n) {
  return n == 0 ? 128 : n * 256;
}

struct Round {
  const TimebaseRuleInput& in;
  int S;
  float m;  // seconds of one sample
  int screenSamples;

  int32_t qsMax(int32_t ts) const { return std::max(in.qsTableEntry(ts), kMinQsMax); }

  std::optional<int32_t> slow(double low) const {
    const double pf = in.clock.PeriodFast, ps = in.clock.PeriodSlow;
    double ts;
    if (in.MaximizeClock) {
      double whole = std::nearbyint(m * 256.0 / pf);
      if (!std::isfinite(whole)) throw Fault("Overflow: the sampling period has no finite value");
      ts = std::min(std::trunc(whole / 256) * 256, kTsHigh);
    } else {
      double whole = std::nearbyint(m * 256.0 / ps);
      if (!std::isfinite(whole)) throw Fault("Overflow: the sampling period has no finite value");
      ts = std::max((std::trunc(whole / 256) + 1) * 256, low);
    }
    int32_t result = truncToInt32OrFault(ts, "TS");
    int32_t limit = qsMax(result);
    // Only at the deepest memory may the packet fall short of the screen, and by less than half.
    if (screenSamples > limit && (static_cast<double>(screenSamples) / limit >= 2 || in.MemoDepth < 3))
      return std::nullopt;
    return result;
  }

  std::optional<int32_t> fast() const {
    const int32_t tov = in.limits.TOv;
    int n;
    int32_t ts;
    if (in.MaximizeClock) {
      for (n = 30; n >= 3 && !bit(tov, n); --n) {
      }
      ts = n * 256;
      while (m * 256.0 / ts < in.clock.PeriodFast) {
        for (--n; n >= 0 && !bit(tov, n); --n) {
        }
        if (n < 0) break;
        ts = fastTs(n);
      }
    } else {
      for (n = 0; n <= 28 && !bit(tov, n); ++n) {
      }
      ts = fastTs(n);
      while (n < 31 && !(m * 256.0 / ts < in.clock.PeriodSlow)) {
        for (++n; n <= 30 && !bit(tov, n); ++n) {
        }
        if (n > 30) break;
        ts = n * 256;
      }
    }
    if (screenSamples > qsMax(ts)) return std::nullopt;
    return ts;
  }

  std::optional<int32_t> ris() const {
    const double tmh = in.limits.TMh;
    double x = in.MaximizeClock ? 2 * tmh / (m * 256.0 / in.clock.PeriodFast)
                                : 2 * tmh / (m * 256.0 / in.clock.PeriodSlow + 1);
    if (std::isnan(x)) throw Fault("Overflow: the RIS step has no value");
    // Up to the next whole step, with a tolerance of 0.01.
    double fix = std::trunc(x);
    x = fix + 0.01 < x ? fix + 1 : fix;
    if (x < 2) x = 2;
    // Twice TMh fits 33 bits; a step beyond it leaves nothing.
    int64_t twice = 2 * static_cast<int64_t>(in.limits.TMh);
    int64_t ts = x > 9e9 ? 0 : twice / truncToInt64OrFault(x, "RIS step");
    ts = in.MaximizeClock ? std::min<int64_t>(ts, in.limits.TMh) : std::max<int64_t>(ts, in.limits.TMl);
    auto result = static_cast<int32_t>(ts);  // within TMh or at TMl after the limit
    if (screenSamples > qsMax(result)) return std::nullopt;
    return result;
  }

  TimebaseRuleResult commonEnd(int32_t ts, TimebaseBranch branch) const {
    TimebaseRuleResult r;
    r.branch = branch;
    r.SamplesPerDiv = S;
    r.ScreenSamples = screenSamples;
    r.TS = ts;
    if (ts == 0) throw Fault("Division by zero: the sampling period TS is 0");
    r.MC = roundToInt32OrFault(m * 1e11 * 256.0 / ts, "MC");
    int32_t limit = qsMax(ts);
    r.QS = screenSamples + 12 < limit ? screenSamples + 12 : limit;
    r.RisActive = branch == TimebaseBranch::Ris;
    return r;
  }
};

TimebaseRuleResult refusal(int S, int screenSamples, const char* text) {
  TimebaseRuleResult r;
  r.SamplesPerDiv = S;
  r.ScreenSamples = screenSamples;
  r.message = text;
  return r;
}

}  // namespace

int32_t TimebaseLimits::fastFloor() const {
  for (int n = 0; n < 32; ++n)
    if (bit(TOv, n)) return fastTs(n);
  return 0;
}

ClockWindow clockWindow(const TimebaseLimits& limits, const ClockSettings& settings) {
  const double shortest = limits.MCl / 1e11, longest = limits.MCh / 1e11;
  auto manual = [&](int mhz) { return std::max(std::min(1e-6 / mhz, longest), shortest); };
  ClockWindow w;
  w.PeriodSlow = settings.manualMin == 0 || settings.minimum == 0 ? longest : manual(settings.minimum);
  w.PeriodFast =
      settings.manualMax == 0 || settings.maximum == 0 ? limits.MCd / 1e11 : manual(settings.maximum);
  return w;
}

TimebaseRuleResult selectTimebase(const TimebaseRuleInput& in) {
  if (in.MemoDepth < 0 || in.MemoDepth > 3)
    throw Fault("Memory depth " + std::to_string(in.MemoDepth) + " is not 0 to 3");
  const double T = in.timePerDiv;
  const double pf = in.clock.PeriodFast, ps = in.clock.PeriodSlow;
  const TimebaseLimits& L = in.limits;
  const double F = L.fastFloor();
  int S = (1 << in.MemoDepth) * 32;
  for (;;) {
    S /= 2;
    const Round r{in, S, in.timePerDiv / static_cast<float>(S == 0 ? 1 : S), (in.AcqWidthPixels / 32) * S};
    if (ps * S * kTwoTo24 <= T || S == 0) {
      // Too long for the slowest clock; at S = 0 nothing else can serve (a negative or NaN time).
      return refusal(S, r.screenSamples, kTimeDivNotSupported);
    }
    std::optional<int32_t> ts;
    TimebaseBranch branch = TimebaseBranch::Slow;
    const char* box = nullptr;
    if (L.TPl / 256.0 * S * pf <= T) {
      ts = r.slow(L.TPl);
    } else if (L.TOl / 256.0 * S * pf <= T) {
      ts = r.slow(L.TOl);
    } else if (L.TMh / 256.0 * S * pf <= T) {
      if (F / 256 * S * pf <= T) {
        ts = r.fast();
        branch = TimebaseBranch::Fast;
      } else if (in.EnableRIS && L.TMh / 256.0 * S * ps >= T) {
        ts = r.ris();
        branch = TimebaseBranch::Ris;
      } else {
        box = kSelectOtherValue;
      }
    } else if (in.EnableRIS) {
      if (L.TMl / 256.0 * S * pf <= T) {
        ts = r.ris();
        branch = TimebaseBranch::Ris;
      } else {
        box = kUseHighSpeedScope;
      }
    } else if (F / 256 * S * pf <= T) {
      ts = r.fast();
      branch = TimebaseBranch::Fast;
    } else {
      box = kUseRisForRepetitive;
    }
    if (ts) return r.commonEnd(*ts, branch);
    // The refusals of steps D to F come only at 16 exactly: smaller rounds go on.
    if (box && S == 16) return refusal(S, r.screenSamples, box);
  }
}

}  // namespace zorvik
