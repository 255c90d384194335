#include "app/clock_trigger_pages.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <cmath>

#include "app/device_setting_page.h"
#include "config/settings.h"
#include "config/text_number.h"
#include "control/timebase_control.h"
#include "control/trigger_control.h"
#include "session/main_controller.h"

namespace zorvik {

namespace {

constexpr char kClock[] = "MCUclock";

// A clock limit in MHz pulled into the instrument's range; the range is known once MCl and MCh are.
long limitClock(double mhz, const DeviceCache& c) {
  if (c.MCl >= 1 && c.MCh >= 1) {
    const double fastest = 100000.0 / c.MCl, slowest = 100000.0 / c.MCh;
    if (mhz > fastest) mhz = std::floor(fastest);
    if (mhz < slowest) mhz = std::floor(slowest);
  }
  return std::lround(mhz);
}

// One limit: the automatic choice or a manual value, stored under its keys; the time base follows.
void clockLimit(DeviceSettingPage* page, SettingsStore& settings, MainController& main, TimebaseControl& timebase,
                const char* caption, const char* object, const char* autoCaption, const char* manualCaption,
                const char* manualKey, const char* valueKey) {
  auto* choice = new QComboBox(page);
  choice->setObjectName(object);
  choice->addItem(autoCaption);
  choice->addItem(manualCaption);
  auto* value = new QLineEdit(page);
  value->setObjectName(QString(object) + "Value");
  auto* row = new QHBoxLayout;
  row->addWidget(choice, 1);
  row->addWidget(value);
  page->form()->addRow(caption, row);
  choice->setCurrentIndex(settings.getInt(kClock, manualKey) == 1 ? 1 : 0);
  value->setEnabled(choice->currentIndex() == 1);
  value->setText(QString::number(settings.getInt(kClock, valueKey)));
  auto apply = [page, &settings, &main, &timebase, choice, value, manualKey, valueKey] {
    try {
      settings.saveInt(kClock, manualKey, choice->currentIndex());
      value->setEnabled(choice->currentIndex() == 1);
      const long mhz = limitClock(textToNumber(value->text().toStdString(), 0), main.cache());
      value->setText(QString::number(mhz));
      settings.saveInt(kClock, valueKey, mhz);
      timebase.SetupTimeDiv();
    } catch (const std::exception& e) {
      page->onFault(e.what());
    }
  };
  QObject::connect(choice, &QComboBox::activated, page, apply);
  QObject::connect(value, &QLineEdit::editingFinished, page, apply);
}

}  // namespace

DeviceSettingPage* makeClockPage(SettingsStore& settings, MainController& main, TimebaseControl& timebase,
                                 QWidget* parent) {
  auto* page = new DeviceSettingPage(settings, "DeviceClockPage", "Device clock setting", "DevClkWin", parent);
  const char* names[4] = {"ClockMCUmax", "ClockMCUmin", "ClockMCUdef", "ClockMCUcur"};
  const char* captions[4] = {"Maximum, MHz:", "Minimum, MHz:", "Safe, MHz:", "Current, MHz:"};
  const char* tips[4] = {"Maximum device clock frequency (overclocked)", "Maximum device clock frequency", "",
                         "Current device clock frequency"};
  QLabel* labels[4];
  for (int i = 0; i < 4; ++i) {
    labels[i] = new QLabel("-", page);
    labels[i]->setObjectName(names[i]);
    labels[i]->setToolTip(tips[i]);
    page->form()->addRow(captions[i], labels[i]);
  }
  auto* maximize = new QCheckBox("Maximize clock", page);
  maximize->setObjectName("MaximizeClock");
  maximize->setToolTip("Keep as fast clock as possible (setup sample rate with max c");
  page->form()->addRow(maximize);
  QObject::connect(maximize, &QCheckBox::clicked, page, [&timebase](bool on) { timebase.MaximizeClock_Click(on); });
  clockLimit(page, settings, main, timebase, "High limit:", "MaxMCUclock", "Use 0.8 of maximum clock frequency",
             "manual clock frequency high limit", "Manual max", "Maximum");
  clockLimit(page, settings, main, timebase, "Low limit:", "MinMCUclock", "use minimum device clock frequency",
             "manual clock frequency low limit", "Manual min", "Minimum");
  page->onRefresh = [&main, &timebase, labels, maximize](const MainState&) {
    const DeviceCache& c = main.cache();
    // Periods in 10 ps: 100000 / period is the frequency in MHz.
    const int32_t periods[4] = {c.MCl, c.MCh, c.MCd, c.MC};
    for (int i = 0; i < 4; ++i)
      labels[i]->setText(periods[i] > 0 ? QString::number(100000.0 / periods[i], 'f', 2) : QString("-"));
    QSignalBlocker b(maximize);
    maximize->setChecked(timebase.model().MaximizeClock);
  };
  return page;
}

DeviceSettingPage* makeTriggerPage(SettingsStore& settings, TriggerControl& trigger, QWidget* parent) {
  auto* page = new DeviceSettingPage(settings, "DeviceTrigPage", "Trigger setting", "DevTrigWin", parent);
  static constexpr double kMicros[3] = {0.001, 1, 1000};  // ns, us, ms
  auto timeout = [&](const char* caption, const char* input, const char* units, const char* key, bool autoMode) {
    auto* unit = new QComboBox(page);
    unit->setObjectName(units);
    for (const char* u : {"ns", "us", "ms"}) unit->addItem(u);
    unit->setCurrentIndex(1);
    page->input(
        "", input, caption, "", (std::string(input) + "Key").c_str(), "Send new value to scope",
        [&settings, &trigger, unit, key, autoMode](const QString& t) {
          QString text = t;
          text.replace(',', '.');
          const double micros = textToNumber(text.toStdString(), 0) * kMicros[std::clamp(unit->currentIndex(), 0, 2)];
          settings.saveInt("Mode", key, std::llround(std::clamp(micros, 0.0, 2.0e9)));
          if (autoMode)
            trigger.PutGetRegisterTA();
          else
            trigger.PutGetRegisterTW();
        },
        unit);
  };
  timeout("Auto time-out:", "TrigWaitTimeAuto", "TWTauto", "TimeoutAuto", true);
  timeout("Norm time-out:", "TrigWaitTimeNorm", "TWTnorm", "TimeoutWait", false);
  auto* current = new QLabel(page);
  current->setObjectName("CurTrigWaitTime");
  page->form()->addRow("Now, us:", current);
  page->onRefresh = [&trigger, current](const MainState&) {
    current->setText(QString("Auto %1, Norm %2").arg(trigger.model().timeoutAutoMicros).arg(trigger.model().timeoutWaitMicros));
  };
  return page;
}

}  // namespace zorvik
