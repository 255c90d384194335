#include "sim/trigger_path.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zorvik {

namespace {

// The finest comparator grid resolves a cycle in this many steps, enough for the band to be seen.
constexpr double kStepsPerPeriod = 64;
constexpr double kMaxSubsteps = 1 << 20;
// Far beyond any wait a register can ask for, and still exact as a double.
constexpr double kLastStep = 0x1.0p62;
// The comparator's noise is cut here, so a jump over a stretch out of its reach never skips a
// firing.
constexpr double kNoiseReach = 5.0;

Edge opposite(Edge edge) {
  return edge == Edge::Rising ? Edge::Falling : Edge::Rising;
}

// One edge: armed once the signal is beyond `armAt` on the far side of the level, fires when it
// then reaches the level. Values are compared as sign x volts, so one rule serves both edges.
struct Comparator {
  Edge edge = Edge::Rising;
  double level = 0;
  double armAt = 0;
  bool armed = false;
  bool dead = false;  // the clean signal never comes within reach again

  double sign() const { return edge == Edge::Rising ? 1.0 : -1.0; }

  // The earliest time from t on at which a value within `reach` of the clean signal could change
  // this comparator: t itself, a later crossing, or nothing.
  std::optional<double> reachable(const SignalGenerator& path, double t, double y, double reach) const {
    if (armed) {
      if (sign() * y + reach >= sign() * level) return t;
      return path.nextCrossing(t, level - sign() * reach, edge);
    }
    if (sign() * y - reach < sign() * armAt) return t;
    return path.nextCrossing(t, armAt + sign() * reach, opposite(edge));
  }

  // Takes one value; true when it fires.
  bool see(double v) {
    if (!armed) {
      armed = sign() * v < sign() * armAt;
      return false;
    }
    return sign() * v >= sign() * level;
  }
};

}  // namespace

TriggerPath::TriggerPath(SignalGenerator& input) : path_(input) {
  path_.random() = SimRandom(input.random().next());
}

std::optional<int64_t> TriggerPath::fire(const AcquisitionSetup& setup, double origin, int64_t first,
                                         double until) {
  if (setup.triggerDead) return std::nullopt;
  const double level = setup.triggerLevel();
  Comparator comparators[2];
  int count = 0;
  if ((setup.T1 & 0x20) != 0)
    comparators[count++] = {Edge::Rising, level, level - setup.hysteresisVolts(Edge::Rising)};
  if ((setup.T1 & 0x10) != 0)
    comparators[count++] = {Edge::Falling, level, level + setup.hysteresisVolts(Edge::Falling)};
  if (count == 0) return std::nullopt;

  path_.condition(setup.triggerConditioning());
  const double dt = setup.samplePeriod();
  const double substeps =
      path_.steady() ? 1.0 : std::clamp(std::ceil(dt / path_.period() * kStepsPerPeriod), 1.0, kMaxSubsteps);
  const auto perSample = static_cast<int64_t>(substeps);
  const double step = dt / substeps;
  const double sigma = path_.noiseRms(step);
  const double reach = kNoiseReach * sigma;
  const double last = std::min((until - origin) / step, kLastStep);
  if (!(last >= 0) || first < 0) return std::nullopt;

  int64_t j = first * perSample;
  for (int n = 0; n < kMaxSteps; ++n) {
    if (static_cast<double>(j) > last) return std::nullopt;
    const double t = origin + static_cast<double>(j) * step;
    const double y = path_.clean(t);
    bool inReach = false;
    double next = std::numeric_limits<double>::infinity();
    for (int k = 0; k < count; ++k) {
      Comparator& c = comparators[k];
      if (c.dead) continue;
      const std::optional<double> at = c.reachable(path_, t, y, reach);
      if (!at)
        c.dead = true;
      else if (*at <= t)
        inReach = true;
      else
        next = std::min(next, *at);
    }
    if (!inReach) {
      const double target = std::ceil((next - origin) / step);  // +inf when every edge is dead
      if (!(target <= last)) return std::nullopt;
      j = std::max(j + 1, static_cast<int64_t>(target));
      continue;
    }
    double v = y;
    if (sigma > 0)
      v += sigma * std::clamp(static_cast<double>(path_.random().gaussian()), -kNoiseReach, kNoiseReach);
    for (int k = 0; k < count; ++k) {
      if (!comparators[k].dead && comparators[k].see(v)) return (j + perSample - 1) / perSample;
    }
    ++j;
  }
  return std::nullopt;
}

}  // namespace zorvik
