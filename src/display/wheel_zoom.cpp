#include "display/wheel_zoom.h"

#include <algorithm>
#include <cstdint>

namespace zorvik {

int wheelZoomFactor(const std::vector<int>& factors, int present, int notches) {
  if (factors.empty()) return 1;
  // Position 0 is no zoom, position i the i-th key.
  const int count = static_cast<int>(factors.size());
  const auto it = std::find(factors.begin(), factors.end(), present);
  const int at = it == factors.end() ? 0 : static_cast<int>(it - factors.begin()) + 1;
  const int64_t next = std::clamp<int64_t>(static_cast<int64_t>(at) + notches, 0, count);
  return next == 0 ? 1 : factors[static_cast<size_t>(next - 1)];
}

int wheelScrollValue(ZoomAxis axis, int value, int notches, int step) {
  // The largest value shows the record's left end, so later times lie towards smaller values.
  const int64_t sign = axis == ZoomAxis::Horizontal ? -1 : 1;
  const int64_t next = static_cast<int64_t>(value) + sign * notches * static_cast<int64_t>(step);
  return static_cast<int>(std::clamp<int64_t>(next, ViewZoom::kMin, ViewZoom::kMax));
}

int takeWheelNotches(int& accumulated, int delta) {
  constexpr int kNotch = 120;
  const int64_t sum = std::clamp<int64_t>(static_cast<int64_t>(accumulated) + delta, -1'000'000, 1'000'000);
  const int notches = static_cast<int>(sum / kNotch);  // towards zero: the rest keeps its sign
  accumulated = static_cast<int>(sum - static_cast<int64_t>(notches) * kNotch);
  return notches;
}

}  // namespace zorvik
