#pragma once
#include <cmath>
#include <cstdint>

namespace zorvik {

// The rounding rules of the display arithmetic: conversions to whole numbers round half to even, the
// whole-number division rounds both operands first and then cuts toward zero, Int takes the floor.

inline double roundEven(double v) { return std::nearbyint(v); }

// A double that may be far out of range (or not a number) as a 64-bit whole number, saturated.
inline int64_t toWhole(double v) {
  if (!(v == v)) return 0;
  if (v >= 9.2e18) return INT64_MAX;
  if (v <= -9.2e18) return INT64_MIN;
  return static_cast<int64_t>(roundEven(v));
}

// Sample positions are kept within this distance of the record: far enough for any view, and the sums
// and doublings on them stay in range.
constexpr int64_t kFarPosition = int64_t{1} << 40;
inline int64_t position(double v) {
  const int64_t p = toWhole(v);
  return p < -kFarPosition ? -kFarPosition : (p > kFarPosition ? kFarPosition : p);
}

inline int64_t wholeDiv(double a, double b) {
  int64_t d = toWhole(b);
  return d == 0 ? 0 : toWhole(a) / d;
}

inline int64_t floorWhole(double v) {
  if (!(v == v)) return 0;
  if (v >= 9.2e18) return INT64_MAX;
  if (v <= -9.2e18) return INT64_MIN;
  return static_cast<int64_t>(std::floor(v));
}

}  // namespace zorvik
