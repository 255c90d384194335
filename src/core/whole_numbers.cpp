#include "core/whole_numbers.h"

#include <cmath>
#include <cstdio>
#include <string>

#include "core/fault.h"

namespace zorvik {

namespace {
[[noreturn]] void overflow(const char* what, double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.15g", value);
  throw Fault(std::string("Overflow: ") + what + " = " + text + " is out of range");
}

int32_t fit32(double whole, const char* what) {
  if (!(whole >= -2147483648.0 && whole <= 2147483647.0)) overflow(what, whole);
  return static_cast<int32_t>(whole);
}
}  // namespace

int32_t roundToInt32OrFault(double value, const char* what) {
  return fit32(std::nearbyint(value), what);
}

int32_t truncToInt32OrFault(double value, const char* what) {
  return fit32(std::trunc(value), what);
}

int64_t truncToInt64OrFault(double value, const char* what) {
  double whole = std::trunc(value);
  // 2^63 itself does not fit; the comparison also refuses NaN.
  if (!(whole >= -9223372036854775808.0 && whole < 9223372036854775808.0)) overflow(what, whole);
  return static_cast<int64_t>(whole);
}

}  // namespace zorvik
