#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <vector>

namespace zorvik {

class RunControl;
class SettingsStore;

// "Device calibration force": when the program has the instrument calibrate itself, around a single
// acquisition (ONCE mode) and while serial acquisitions run (RUN mode). Each control stores its state at
// once; the RUN controls also set the link's periodic command anew.
class CalibrationPage : public QDialog {
  Q_OBJECT
 public:
  CalibrationPage(SettingsStore& settings, RunControl& run, QWidget* parent = nullptr);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  QCheckBox* box(const char* name, const char* caption, const char* key, bool periodic);
  QComboBox* list(const char* name, const char* key, const std::vector<int>& seconds, bool periodic);
  void enableGroups();

  SettingsStore& settings_;
  RunControl& run_;
  QCheckBox* CalibrAtKeyStart = nullptr;
  QCheckBox* CalibrAtStartRIS = nullptr;
  QCheckBox* CalibrAtStartAC = nullptr;
  QComboBox* CalibrAtStartDelay = nullptr;
  QCheckBox* CalibrAtRunPeriodic = nullptr;
  QCheckBox* CalibrAtRunRIS = nullptr;
  QCheckBox* CalibrAtRunAC = nullptr;
  QComboBox* PeriodicCalibrInterval = nullptr;
};

}  // namespace zorvik
