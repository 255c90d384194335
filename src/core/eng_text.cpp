#include "core/eng_text.h"

#include <cmath>
#include <cstdio>

namespace zorvik {

std::string engineeringText(double value, const std::string& unit) {
  if (!std::isfinite(value)) return "?" + unit;
  if (value == 0) return "0" + unit;
  static const char* const kPrefixes[] = {"n", "\xC2\xB5", "m", "", "k", "M", "G"};
  double mag = std::fabs(value);
  int group = static_cast<int>(std::floor(std::log10(mag) / 3.0));
  group = group < -3 ? -3 : (group > 3 ? 3 : group);
  double scaled = value / std::pow(1000.0, group);
  // Rounding to three digits may carry into the next group (999.7 -> 1000).
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.3g", scaled);
  if (std::fabs(std::strtod(buf, nullptr)) >= 1000 && group < 3) {
    ++group;
    std::snprintf(buf, sizeof buf, "%.3g", value / std::pow(1000.0, group));
  }
  return std::string(buf) + kPrefixes[group + 3] + unit;
}

}  // namespace zorvik
