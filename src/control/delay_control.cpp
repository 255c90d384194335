#include "control/delay_control.h"

#include <algorithm>

#include "config/text_number.h"
#include "control/trigger_control.h"
#include "link/device_context.h"

namespace zorvik {

namespace {
// Past this the device's 31-bit count can't hold the delay at any clock this program writes.
constexpr int64_t kMaxDelayMicros = 2000000000;
}  // namespace

DelayControl::DelayControl(DeviceContext& main, TriggerControl& trigger) : main_(main), trigger_(trigger) {}

int64_t DelayControl::delayMicros() const {
  double v = main_.settings().getDouble("Mode", "TrigDelay");
  return static_cast<int64_t>(std::clamp(v, 0.0, static_cast<double>(kMaxDelayMicros)));
}

void DelayControl::setWeight(int weight) {
  static const int kWeights[] = {1, 10, 100, 1000, 10000};
  weight_ = std::find(std::begin(kWeights), std::end(kWeights), weight) != std::end(kWeights) ? weight : 1;
}

void DelayControl::store(int64_t micros) {
  main_.settings().saveInt("Mode", "TrigDelay", std::clamp<int64_t>(micros, 0, kMaxDelayMicros));
  trigger_.PutGetRegisterTD();
}

void DelayControl::step(int direction) {
  store(delayMicros() + (direction > 0 ? weight_ : -weight_));
}

void DelayControl::KeyDelayOff_Click() {
  kept_ = delayMicros();
  store(0);
  restoreEnabled_ = true;
}

void DelayControl::KeyDelayRestore_Click() {
  store(kept_);
}

}  // namespace zorvik
