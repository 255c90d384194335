#include "core/box_placement.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace zorvik {

namespace {
int clampToInt(long long v) {
  return static_cast<int>(std::clamp<long long>(v, INT_MIN, INT_MAX));
}
}  // namespace

BoxPosition cascadeInfoBox(BoxPosition centred, const std::vector<int>& otherLefts) {
  const std::size_t n = std::min(otherLefts.size(), kMaxCascadeBoxes);
  const auto first = otherLefts.begin();
  const auto last = first + static_cast<std::ptrdiff_t>(n);
  // Positions are whole pixels, so the step of a fifth of the left is rounded.
  const long long step = std::lround(centred.left / 5.0);
  long long left = centred.left;
  long long tested = centred.top;
  // While the step is not zero the values tested after the first all differ, so at most n + 1 steps can
  // each meet a box; the bound also ends the loop when the step is zero (a box at the screen's left edge).
  for (std::size_t i = 0; i <= n && std::find(first, last, tested) != last; ++i) {
    tested = left;
    left += step;
  }
  return {clampToInt(left), clampToInt(static_cast<long long>(centred.top) - centred.left + left)};
}

BoxPosition placeQuestionBox(BoxPosition centred, int height, bool infoBoxOpen) {
  if (!infoBoxOpen) return centred;
  return {centred.left, clampToInt(static_cast<long long>(centred.top) + height)};
}

}  // namespace zorvik
