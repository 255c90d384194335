#pragma once
#include <cstdint>

namespace zorvik {

class DeviceContext;
class TriggerControl;

// The fine setting of the trigger delay, in µs by digits: a weight of 1 to 10000 µs and steps of it; off
// keeps the value so that it can be restored.
class DelayControl {
 public:
  DelayControl(DeviceContext& main, TriggerControl& trigger);

  int64_t delayMicros() const;
  int weight() const { return weight_; }
  void setWeight(int weight);  // 1, 10, 100, 1000 or 10000
  void step(int direction);    // Coma: the chosen digit up or down, never below 0
  void KeyDelayOff_Click();
  void KeyDelayRestore_Click();
  bool restoreEnabled() const { return restoreEnabled_; }

 private:
  void store(int64_t micros);
  DeviceContext& main_;
  TriggerControl& trigger_;
  int weight_ = 1;
  int64_t kept_ = 0;
  bool restoreEnabled_ = false;
};

}  // namespace zorvik
