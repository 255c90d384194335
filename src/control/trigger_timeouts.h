#pragma once
#include <cstdint>
#include <string>

namespace zorvik {

class SettingsStore;
class TriggerControl;

// The trigger's time-outs as the trigger page sets them: a value typed in ns, µs or ms, kept in whole
// µs under "TimeoutAuto" or "TimeoutWait" of section "Mode" and written to the instrument (TA, TW).
class TriggerTimeouts {
 public:
  enum Timeout { Auto, Norm };
  enum Unit { Nanoseconds, Microseconds, Milliseconds };

  TriggerTimeouts(SettingsStore& settings, TriggerControl& trigger)
      : settings_(settings), trigger_(trigger) {}

  // The typed value is read as far as it is a number; below 0 it is 0, beyond 2e9 µs it is 2e9.
  // Returns the µs stored.
  int64_t set(Timeout which, const std::string& typed, Unit unit);

  static int64_t micros(const std::string& typed, Unit unit);

 private:
  SettingsStore& settings_;
  TriggerControl& trigger_;
};

}  // namespace zorvik
