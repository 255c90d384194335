#include "session/run_control.h"

#include <algorithm>
#include <cmath>

#include "config/text_number.h"
#include "session/main_controller.h"

namespace zorvik {

namespace {
const char* const kManualCaption = "Manual: one-time sampling by Start key";
const char* const kAutoCaption = "AUTO: Sampling even if no trigger occurs";
const char* const kNormCaption = "NORM: Sampling will be only if the trigger occurs.";

int clampIndex(int i, size_t size) {
  return std::clamp(i, 0, static_cast<int>(size) - 1);
}
}  // namespace

const std::vector<int>& calibrationDelayList() {
  static const std::vector<int> list = {0, 1, 2, 3, 5, 10};
  return list;
}
const std::vector<int>& calibrationIntervalList() {
  static const std::vector<int> list = {1, 2, 5, 10, 20, 30, 60, 120};
  return list;
}
const std::vector<std::string>& averagesList() {
  static const std::vector<std::string> list = {"1", "2", "4", "8", "16", "32", "64", "128", "256"};
  return list;
}
const std::vector<std::string>& risAveragesList() {
  static const std::vector<std::string> list = {"1", "2", "4", "8", "16", "32", "64", "128", "255"};
  return list;
}

uint8_t averagesRegister(const std::string& entry) {
  double v = std::trunc(textToNumber(entry, 0) - 0.9);
  return static_cast<uint8_t>(std::clamp(v, 0.0, 255.0));
}

int averagesEntryFor(const std::vector<std::string>& list, int value) {
  for (int i = static_cast<int>(list.size()) - 1; i >= 0; --i)
    if (textToNumber(list[static_cast<size_t>(i)], 0) <= value + 1) return i;
  return 0;
}

RunControl::RunControl(MainController& main) : main_(main) {
  loadSettings();
}

void RunControl::loadSettings() {
  SettingsStore& s = main_.settings();
  model_.WorkMode = s.getBool("Mode", "AutoStart");
  model_.AutoWait = s.getBool("Mode", "NoWaiting");
  int ap = std::clamp(s.getInt("Sampling", "AveragesPeaks"), 0, 255);
  int ar = std::clamp(s.getInt("Sampling", "RisAveragesPeaks"), 0, 255);
  main_.cache().AP = static_cast<uint8_t>(ap);
  main_.cache().AR = static_cast<uint8_t>(ar);
  main_.setAveragesPeaks(ap);
  model_.averagesIndex = averagesEntryFor(averagesList(), ap);
  model_.risAveragesIndex = averagesEntryFor(risAveragesList(), ar);
  main_.cache().RT = static_cast<uint8_t>((main_.cache().RT & 0xFE) | (model_.AutoWait ? 0 : 1));
  model_.keyStartVisible = !model_.WorkMode;
  main_.workModeSerial = model_.WorkMode;
  model_.frameModeCaption =
      model_.WorkMode ? (model_.AutoWait ? kAutoCaption : kNormCaption) : kManualCaption;
  setToolTips();
}

void RunControl::setToolTips() {
  model_.workModeToolTip =
      model_.WorkMode ? "Press to stop serial acquisitions" : "Press to start serial acquisitions";
  model_.autoWaitToolTip = model_.AutoWait ? "AUTO: Sampling even if no trigger occurs, after timeout"
                                           : "NORM: Sampling will be only if the trigger occurs.";
  model_.CurrentTriggerModeWin = model_.AutoWait ? "Autorun" : "Normal";
  main_.mutableState().fields["DeviceTrigPage.CurrentTriggerModeWin"] = model_.CurrentTriggerModeWin;
}

void RunControl::setStatus(const std::string& text) {
  main_.mutableState().modeColor = kColorWhite;
  main_.setModeText(text);
}

void RunControl::showModeText() {
  model_.frameModeCaption = model_.AutoWait ? kAutoCaption : kNormCaption;
  setStatus(model_.AutoWait ? "Auto" : "Norm");
  onChange();
}

void RunControl::applyWorkMode() {
  main_.workModeSerial = model_.WorkMode;
  if (model_.WorkMode) {
    model_.keyStartVisible = false;
    showModeText();
    if (main_.Online()) serialStart();
  } else {
    if (main_.link()) main_.link()->SetRepeatCommand(false, "", false);
    setStatus("Ready");
    model_.frameModeCaption = kManualCaption;
    model_.keyStartVisible = true;
  }
  setToolTips();
  onChange();
}

void RunControl::WorkMode_Click(bool checked) {
  model_.WorkMode = checked;
  applyWorkMode();
  main_.settings().saveInt("Mode", "AutoStart", checked ? 1 : 0);
  if (!checked) onSerialStopped();
}

void RunControl::serialStart() {
  main_.mutableState().noTriggerVisible = false;
  main_.changed();
  calibrateBeforeStart();
  SetupPeriodicCalibration();
  if (!main_.Online()) return;  // the session may have ended inside the calibration wait
  main_.link()->SetRepeatCommand(true, "D", true);
  main_.setPacketCount(0);
}

void RunControl::KeyStart_Click() {
  if (!main_.Online()) return;
  calibrateBeforeStart();
  setStatus("Started");
  main_.mutableState().noTriggerVisible = false;
  main_.changed();
  if (!main_.Online()) return;
  main_.link()->SendCommand("D", true, true);
  main_.setPacketCount(0);
}

void RunControl::ResendLast() {
  if (main_.link()) main_.link()->ResendLast();
}

void RunControl::calibrateBeforeStart() {
  SettingsStore& s = main_.settings();
  auto calibrate = [&] {
    main_.link()->SendCommand("C", false, false);
    int idx = clampIndex(s.getInt("AutoCalibrating", "StartDelay"), calibrationDelayList().size());
    MainController::Wait(1000 * calibrationDelayList()[static_cast<size_t>(idx)]);
  };
  if (!main_.Online()) return;
  if (!main_.FirstCalibrationDone()) {
    calibrate();
    main_.setFirstCalibrationDone(true);
    return;
  }
  if (!s.getBool("AutoCalibrating", "KeyStart")) return;
  if (risWouldRun() && !s.getBool("AutoCalibrating", "KeyStartRIS")) return;
  if (inputIsAc() && !s.getBool("AutoCalibrating", "KeyStartAC")) return;
  calibrate();
}

void RunControl::SetupPeriodicCalibration() {
  if (!main_.link()) return;
  SettingsStore& s = main_.settings();
  bool enable = s.getBool("AutoCalibrating", "Periodic");
  if (risWouldRun() && !s.getBool("AutoCalibrating", "PeriodicRIS")) enable = false;
  if (inputIsAc() && !s.getBool("AutoCalibrating", "PeriodicAC")) enable = false;
  int idx = clampIndex(s.getInt("AutoCalibrating", "Interval"), calibrationIntervalList().size());
  main_.link()->SetPeriodicCommand(enable, "C", 1000 * calibrationIntervalList()[static_cast<size_t>(idx)]);
}

void RunControl::recalibrate() {
  if (!main_.link()) return;
  bool active = false;
  main_.link()->GetSerialActive(active);
  if (active) main_.link()->SendCommand("C", false, false);
}

void RunControl::mouseOverWorkMode(int64_t nowMs) {
  if (nowMs - lastMouseMs_ <= 1000) return;
  lastMouseMs_ = nowMs;
  recalibrate();
}

void RunControl::AutoWait_Click(bool checked) {
  model_.AutoWait = checked;
  if (model_.WorkMode) showModeText();
  setToolTips();
  main_.settings().saveInt("Mode", "NoWaiting", checked ? 1 : 0);
  PutGetRegisterRT();
  onChange();
}

void RunControl::PutGetRegisterRT() {
  DeviceCache& c = main_.cache();
  uint8_t rt = static_cast<uint8_t>((model_.AutoWait ? 0 : 1) + (c.RT & 0xFE));
  // Written whatever the session: offline the link drops it and the cache keeps it for the next start.
  c.RT = rt;
  if (main_.link()) main_.link()->PutRegister1("RT", rt);
}

void RunControl::rtEcho() {
  model_.AutoWait = (main_.cache().RT & 1) == 0;
  if (model_.WorkMode && main_.Online()) showModeText();
  setToolTips();
  onChange();
}

void RunControl::AveragesPeaks_Click(int index) {
  if (selecting_) return;
  index = clampIndex(index, averagesList().size());
  model_.averagesIndex = index;
  uint8_t ap = averagesRegister(averagesList()[static_cast<size_t>(index)]);
  // Online the echo moves the cache: the device may run another value than the one asked for.
  if (main_.Online()) {
    main_.link()->PutRegister1("AP", ap);
  } else {
    main_.cache().AP = ap;
    apEcho();
  }
}

void RunControl::RisAveragesPeaks_Click(int index) {
  if (selecting_) return;
  index = clampIndex(index, risAveragesList().size());
  model_.risAveragesIndex = index;
  uint8_t ar = averagesRegister(risAveragesList()[static_cast<size_t>(index)]);
  // Online the echo moves the cache: the device may run another value than the one asked for.
  if (main_.Online()) {
    main_.link()->PutRegister1("AR", ar);
  } else {
    main_.cache().AR = ar;
    arEcho();
  }
}

void RunControl::PutGetRegisterAP() {
  if (main_.Online()) main_.link()->PutRegister1("AP", main_.cache().AP);
}

void RunControl::PutGetRegisterAR() {
  if (main_.Online()) main_.link()->PutRegister1("AR", main_.cache().AR);
}

void RunControl::apEcho() {
  int ap = main_.cache().AP;
  main_.settings().saveInt("Sampling", "AveragesPeaks", ap);
  main_.setAveragesPeaks(ap);
  selecting_ = true;
  model_.averagesIndex = averagesEntryFor(averagesList(), ap);
  selecting_ = false;
  // The memory of the mode depends on averaging: ask for its limits again.
  if (main_.Online()) {
    main_.link()->GetProperty("QSh");
    main_.link()->GetProperty("TCh");
  }
  onChange();
}

void RunControl::arEcho() {
  int ar = main_.cache().AR;
  main_.settings().saveInt("Sampling", "RisAveragesPeaks", ar);
  selecting_ = true;
  model_.risAveragesIndex = averagesEntryFor(risAveragesList(), ar);
  selecting_ = false;
  onChange();
}

}  // namespace zorvik
