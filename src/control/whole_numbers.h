#pragma once
#include <cstdint>

namespace zorvik {

// The conversions of the instrument's arithmetic to whole numbers. A value that is no number or does
// not fit 32 bits is a Fault, never a wrap.

// Rounding to the nearest whole number; a half goes to the even neighbour, as the platform converts.
int32_t roundToInt32(double value, const char* what);
// Cut toward zero.
int32_t truncToInt32(double value, const char* what);
// Cut toward zero into 64 bits, for intermediate results that may pass 32 bits.
int64_t truncToInt64(double value, const char* what);

}  // namespace zorvik
