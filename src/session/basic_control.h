#pragma once
#include "control/channel_control.h"
#include "control/timebase_control.h"
#include "session/register_table.h"

namespace zorvik {

class DeviceContext;
class RunControl;
class TriggerControl;
class FirmwareUpdate;

// The channel and the time base, wired to each other, and the one table of the instrument's registers.
class BasicControl {
 public:
  explicit BasicControl(DeviceContext& main);

  ChannelControl& channel() { return channel_; }
  TimebaseControl& timebase() { return timebase_; }
  // Run control asks whether RIS would run and whether the input is AC; the trigger's delay moves the
  // record's centre and follows the clock.
  void wire(RunControl& run, TriggerControl& trigger);

  // Every register, its writer and its echo, stated once. Without the trigger or run control their
  // registers are written from the cache as they stand; without a firmware update "BOOT" is refused.
  void fillRegisters(RegisterTable& table, TriggerControl* trigger = nullptr, RunControl* run = nullptr,
                     FirmwareUpdate* firmware = nullptr);

 private:
  void put(int width, const char* name, int32_t value);
  DeviceContext& main_;
  ChannelControl channel_;
  TimebaseControl timebase_;
};

}  // namespace zorvik
