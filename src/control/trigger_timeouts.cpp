#include "control/trigger_timeouts.h"

#include <algorithm>
#include <cmath>

#include "config/settings.h"
#include "config/text_number.h"
#include "control/trigger_control.h"

namespace zorvik {

int64_t TriggerTimeouts::micros(const std::string& typed, Unit unit) {
  static constexpr double kMicros[3] = {0.001, 1, 1000};
  const double v = textToNumber(typed, 0) * kMicros[std::clamp(static_cast<int>(unit), 0, 2)];
  if (std::isnan(v)) return 0;
  return std::llround(std::clamp(v, 0.0, 2.0e9));
}

int64_t TriggerTimeouts::set(Timeout which, const std::string& typed, Unit unit) {
  const int64_t us = micros(typed, unit);
  settings_.saveInt("Mode", which == Auto ? "TimeoutAuto" : "TimeoutWait", us);
  if (which == Auto)
    trigger_.PutGetRegisterTA();
  else
    trigger_.PutGetRegisterTW();
  return us;
}

}  // namespace zorvik
