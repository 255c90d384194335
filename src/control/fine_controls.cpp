#include "control/fine_controls.h"

#include <algorithm>
#include <cmath>

#include "config/text_number.h"
#include "link/device_context.h"

namespace zorvik::fine {

namespace {
bool blank(const std::string& text) {
  return text.find_first_not_of(" \t\r\n") == std::string::npos;
}
}  // namespace

double timePerDiv(const std::string& typed, TimeUnit unit) {
  static constexpr double kScale[4] = {1e-9, 1e-6, 1e-3, 1};
  return textToNumber(typed, 0) * kScale[std::clamp(static_cast<int>(unit), 0, 3)];
}

int32_t whole(const std::string& typed, double scale) {
  const double v = std::trunc(textToNumber(typed, 0) * scale);
  if (std::isnan(v)) return 0;
  return static_cast<int32_t>(std::clamp(v, -2147483648.0, 2147483647.0));
}

void trimSampling(DeviceContext& main, const std::string& clocksPerSample, const std::string& clockPs) {
  ClassOBEX* link = main.link();
  if (!link) return;
  if (blank(clocksPerSample))
    link->GetRegister("TS");
  else
    link->PutRegister4("TS", whole(clocksPerSample, 256));
  if (blank(clockPs))
    link->GetRegister("MC");
  else
    link->PutRegister2("MC", whole(clockPs) / 10);
}

int triggerLevel(const std::string& typed) {
  return std::clamp(whole(typed), 0, 255);
}

}  // namespace zorvik::fine
