#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zorvik {

class MainController;

// What the front panel shows of the run state.
struct RunModel {
  bool WorkMode = true;  // serial acquisitions
  bool AutoWait = true;  // Auto (untriggered after a time-out) rather than Norm
  bool keyStartVisible = false;
  std::string frameModeCaption;
  std::string workModeToolTip;
  std::string autoWaitToolTip;
  std::string CurrentTriggerModeWin;  // "Autorun" or "Normal" on the trigger page
  int averagesIndex = 0;              // selected entry of AveragesPeaks
  int risAveragesIndex = 0;           // selected entry of RisAveragesPeaks
};

// The delays after a calibration and the intervals of the periodic one, in seconds; the store keeps the
// index of the entry.
const std::vector<int>& calibrationDelayList();
const std::vector<int>& calibrationIntervalList();
const std::vector<std::string>& averagesList();
const std::vector<std::string>& risAveragesList();
// Fix(Val(text) - 0.9) limited to a byte: "1" gives 0, "256" gives 255.
uint8_t averagesRegister(const std::string& entry);
// From the last entry backwards, the first whose number is at most value + 1.
int averagesEntryFor(const std::vector<std::string>& list, int value);

// Single and serial acquisitions, Auto and Norm, the averages registers and the calibration around a
// start. The channel tells whether RIS would run and whether the input is AC.
class RunControl {
 public:
  explicit RunControl(MainController& main);

  std::function<bool()> risWouldRun = [] { return false; };
  std::function<bool()> inputIsAc = [] { return false; };
  std::function<void()> onChange = [] {};
  // Serial acquisition switched off, by the check box or by its key.
  std::function<void()> onSerialStopped = [] {};

  const RunModel& model() const { return model_; }
  void loadSettings();

  void KeyStart_Click();
  void ResendLast();  // "R" while the focus is on KeyStart
  void WorkMode_Click(bool checked);
  void AutoWait_Click(bool checked);
  void AveragesPeaks_Click(int index);
  void RisAveragesPeaks_Click(int index);
  // Mode text and link calls for the present WorkMode; called once the session is ready too.
  void applyWorkMode();
  void SetupPeriodicCalibration();
  void recalibrate();
  // The mouse over WorkMode recalibrates, at most once a second.
  void mouseOverWorkMode(int64_t nowMs);

  // Writers and echoes of RT, AP and AR.
  void PutGetRegisterRT();
  void PutGetRegisterAP();
  void PutGetRegisterAR();
  void rtEcho();
  void apEcho();
  void arEcho();

 private:
  void serialStart();
  void calibrateBeforeStart();
  void showModeText();
  void setStatus(const std::string& text);
  void setToolTips();

  MainController& main_;
  RunModel model_;
  bool selecting_ = false;  // keeps the list handlers quiet while an echo selects the entry
  int64_t lastMouseMs_ = -1000000;
};

}  // namespace zorvik
