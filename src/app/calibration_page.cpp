#include "app/calibration_page.h"

#include <QCloseEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QVBoxLayout>
#include <algorithm>

#include "config/settings.h"
#include "session/run_control.h"

namespace zorvik {

namespace {
constexpr const char* kSection = "AutoCalibrating";
}

CalibrationPage::CalibrationPage(SettingsStore& settings, RunControl& run, QWidget* parent)
    : QDialog(parent), settings_(settings), run_(run) {
  setObjectName("DeviceCalibration");
  setWindowTitle("Device calibration force");
  auto* layout = new QVBoxLayout(this);

  auto* once = new QGroupBox("ONCE mode");
  auto* onceLayout = new QFormLayout(once);
  CalibrAtKeyStart = box("CalibrAtKeyStart", "by Start click", "KeyStart", false);
  CalibrAtStartRIS = box("CalibrAtStartRIS", "in RIS mode", "KeyStartRIS", false);
  CalibrAtStartAC = box("CalibrAtStartAC", "if AC input", "KeyStartAC", false);
  CalibrAtStartDelay = list("CalibrAtStartDelay", "StartDelay", calibrationDelayList(), false);
  onceLayout->addRow(CalibrAtKeyStart);
  onceLayout->addRow(CalibrAtStartRIS);
  onceLayout->addRow(CalibrAtStartAC);
  onceLayout->addRow("delay after calibration", CalibrAtStartDelay);
  layout->addWidget(once);

  auto* running = new QGroupBox("RUN mode");
  auto* runLayout = new QFormLayout(running);
  CalibrAtRunPeriodic = box("CalibrAtRunPeriodic", "Periodically -", "Periodic", true);
  CalibrAtRunRIS = box("CalibrAtRunRIS", "in RIS mode", "PeriodicRIS", true);
  CalibrAtRunAC = box("CalibrAtRunAC", "if AC input", "PeriodicAC", true);
  PeriodicCalibrInterval = list("PeriodicCalibrInterval", "Interval", calibrationIntervalList(), true);
  runLayout->addRow(CalibrAtRunPeriodic);
  runLayout->addRow(CalibrAtRunRIS);
  runLayout->addRow(CalibrAtRunAC);
  runLayout->addRow("after calibration", PeriodicCalibrInterval);
  layout->addWidget(running);
  enableGroups();

  const int left = settings_.getInt("Startup Position", "DevCalibr Left", -1);
  const int top = settings_.getInt("Startup Position", "DevCalibr Top", -1);
  if (left >= 0 && top >= 0) move(left, top);
}

QCheckBox* CalibrationPage::box(const char* name, const char* caption, const char* key, bool periodic) {
  auto* b = new QCheckBox(caption);
  b->setObjectName(name);
  b->setChecked(settings_.getBool(kSection, key));
  connect(b, &QCheckBox::clicked, this, [this, key, periodic](bool on) {
    settings_.saveInt(kSection, key, on ? 1 : 0);
    enableGroups();
    if (periodic) run_.SetupPeriodicCalibration();
  });
  return b;
}

QComboBox* CalibrationPage::list(const char* name, const char* key, const std::vector<int>& seconds,
                                 bool periodic) {
  auto* c = new QComboBox;
  c->setObjectName(name);
  for (int s : seconds) c->addItem(QString("%1 s").arg(s));
  const int stored = settings_.getInt(kSection, key);
  c->setCurrentIndex(std::clamp(stored, 0, static_cast<int>(seconds.size()) - 1));
  connect(c, &QComboBox::activated, this, [this, key, periodic](int index) {
    settings_.saveInt(kSection, key, index);
    if (periodic) run_.SetupPeriodicCalibration();
  });
  return c;
}

void CalibrationPage::enableGroups() {
  CalibrAtStartRIS->setEnabled(CalibrAtKeyStart->isChecked());
  CalibrAtStartAC->setEnabled(CalibrAtKeyStart->isChecked());
}

void CalibrationPage::closeEvent(QCloseEvent* event) {
  settings_.saveInt("Startup Position", "DevCalibr Left", x());
  settings_.saveInt("Startup Position", "DevCalibr Top", y());
  // Only hidden, as the other device pages.
  hide();
  event->ignore();
}

}  // namespace zorvik
