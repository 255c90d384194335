#pragma once
#include <QWidget>

namespace zorvik {

class DeviceSettingPage;
class SettingsStore;
class MainController;
class ChannelControl;
class TimebaseControl;
class TriggerControl;

// The pages of the Device menu that set what the front panel does not: fine sensitivity, offset and
// level of the channel; fine time per division and sample rate; the record's memory.
DeviceSettingPage* makeCh1Page(SettingsStore& settings, MainController& main, ChannelControl& channel,
                               TriggerControl& trigger, QWidget* parent);
DeviceSettingPage* makeSamplingPage(SettingsStore& settings, MainController& main, TimebaseControl& timebase,
                                    QWidget* parent);
DeviceSettingPage* makeMemoryPage(SettingsStore& settings, TimebaseControl& timebase, QWidget* parent);

}  // namespace zorvik
