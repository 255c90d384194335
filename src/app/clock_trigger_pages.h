#pragma once
#include <QWidget>

namespace zorvik {

class DeviceSettingPage;
class SettingsStore;
class MainController;
class TimebaseControl;
class TriggerControl;

// "Device clock setting": the instrument's clock range and the limits the time-base rule may use.
DeviceSettingPage* makeClockPage(SettingsStore& settings, MainController& main, TimebaseControl& timebase,
                                 QWidget* parent);
// "Trigger setting": the Auto and Norm time-outs in any unit.
DeviceSettingPage* makeTriggerPage(SettingsStore& settings, TriggerControl& trigger, QWidget* parent);

}  // namespace zorvik
