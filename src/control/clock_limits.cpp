#include "control/clock_limits.h"

#include <algorithm>
#include <cmath>

#include "config/text_number.h"
#include "control/timebase_control.h"
#include "link/device_context.h"

namespace zorvik {

namespace {
constexpr char kSection[] = "MCUclock";
const char* manualKey(ClockLimits::Limit l) {
  return l == ClockLimits::High ? "Manual max" : "Manual min";
}
const char* valueKey(ClockLimits::Limit l) {
  return l == ClockLimits::High ? "Maximum" : "Minimum";
}
}  // namespace

long ClockLimits::limitClock(double mhz, const DeviceCache& cache) {
  if (std::isnan(mhz)) return 0;
  if (cache.MCl >= 1 && cache.MCh >= 1) {
    // Periods in 10 ps: 100000 / period is the frequency in MHz.
    const double fastest = 100000.0 / cache.MCl, slowest = 100000.0 / cache.MCh;
    if (mhz > fastest) mhz = std::floor(fastest);
    if (mhz < slowest) mhz = std::floor(slowest);
  }
  // The store keeps whole numbers of the Int type.
  return std::lround(std::clamp(mhz, -2147483648.0, 2147483647.0));
}

ClockLimits::Setting ClockLimits::setting(Limit limit) const {
  SettingsStore& s = main_.settings();
  return {s.getInt(kSection, manualKey(limit)) == 1, s.getInt(kSection, valueKey(limit))};
}

ClockLimits::Setting ClockLimits::set(Limit limit, bool manual, const std::string& typedMHz) {
  const Setting now{manual, limitClock(textToNumber(typedMHz, 0), main_.cache())};
  SettingsStore& s = main_.settings();
  s.saveInt(kSection, manualKey(limit), manual ? 1 : 0);
  s.saveInt(kSection, valueKey(limit), now.mhz);
  timebase_.SetupTimeDiv();
  return now;
}

}  // namespace zorvik
