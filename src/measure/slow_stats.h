#pragma once
#include <cstdint>

namespace zorvik {

// A reading with its minimum, maximum and an average that looks back over some ten seconds, whatever
// the rate of the readings: the main meter's groups and the THD meter.
struct SlowStats {
  float cur = 0, min = 1e30f, max = -1e30f, avg = 0;
  uint32_t lastTick = 0;
  bool fresh = true;  // just reset: the next value is drawn whatever it is

  void reset() { *this = SlowStats{}; }
  // Returns whether the current value changed (or the stats were fresh).
  bool add(float value, uint32_t nowMs) {
    const bool changed = value != cur || fresh;
    fresh = false;
    cur = value;
    if (cur > max) max = cur;
    if (cur < min) min = cur;
    const uint32_t dt = nowMs - lastTick;
    const float a = dt < 10000 ? static_cast<float>(dt) / 10000 : 1.0f;
    avg = avg == 0 ? cur : cur * a + (1 - a) * avg;
    lastTick = nowMs;
    return changed;
  }
};

}  // namespace zorvik
