#pragma once
#include <cmath>
#include <cstdint>

namespace zorvik {

// Conversions of doubles to whole numbers, under one of two rules that the names say:
//  - "OrFault": the instrument's register arithmetic. A value that is no number or does not fit is a
//    zorvik::Fault naming `what`, never a wrap: a wrong register value must not reach the device.
//  - "Saturating": the display arithmetic, run per sample. A value out of range sticks at the limit and
//    no number counts as 0, so that drawing never stops and never throws.
// Rounding is half to even (as the platform converts), trunc cuts toward zero, floor goes down.

int32_t roundToInt32OrFault(double value, const char* what);
int32_t truncToInt32OrFault(double value, const char* what);
// Into 64 bits, for intermediate results that may pass 32 bits.
int64_t truncToInt64OrFault(double value, const char* what);

inline double roundHalfEven(double v) {
  return std::nearbyint(v);
}

// From +-9.2e18 on the result is the int64 limit: a round bound below 2^63, from where the conversion
// itself would be undefined.
constexpr double kSaturatingBound = 9.2e18;

inline int64_t roundToInt64Saturating(double v) {
  if (!(v == v)) return 0;
  if (v >= kSaturatingBound) return INT64_MAX;
  if (v <= -kSaturatingBound) return INT64_MIN;
  return static_cast<int64_t>(roundHalfEven(v));
}

inline int64_t floorToInt64Saturating(double v) {
  if (!(v == v)) return 0;
  if (v >= kSaturatingBound) return INT64_MAX;
  if (v <= -kSaturatingBound) return INT64_MIN;
  return static_cast<int64_t>(std::floor(v));
}

// Rounds both operands, then divides cutting toward zero; a divisor that rounds to 0 gives 0.
inline int64_t wholeDivSaturating(double a, double b) {
  const int64_t d = roundToInt64Saturating(b);
  const int64_t n = roundToInt64Saturating(a);
  if (d == 0) return 0;
  if (d == -1) return n == INT64_MIN ? INT64_MAX : -n;  // the one quotient that does not fit
  return n / d;
}

// Sample positions are kept within this distance of the record: far enough for any view, and the sums
// and doublings on them stay in range.
constexpr int64_t kFarPosition = int64_t{1} << 40;
inline int64_t roundToPositionSaturating(double v) {
  const int64_t p = roundToInt64Saturating(v);
  return p < -kFarPosition ? -kFarPosition : (p > kFarPosition ? kFarPosition : p);
}

}  // namespace zorvik
