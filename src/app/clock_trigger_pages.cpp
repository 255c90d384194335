#include "app/clock_trigger_pages.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <algorithm>
#include <memory>

#include "app/device_setting_page.h"
#include "config/settings.h"
#include "control/clock_limits.h"
#include "control/timebase_control.h"
#include "control/trigger_control.h"
#include "control/trigger_timeouts.h"
#include "session/main_controller.h"

namespace zorvik {

namespace {

// One limit: the automatic choice or a manual value; the limits store it and the time base follows.
void clockLimit(DeviceSettingPage* page, std::shared_ptr<ClockLimits> limits, ClockLimits::Limit limit,
                const char* caption, const char* object, const char* autoCaption, const char* manualCaption) {
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
  auto show = [choice, value](ClockLimits::Setting s) {
    choice->setCurrentIndex(s.manual ? 1 : 0);
    value->setEnabled(s.manual);
    value->setText(QString::number(s.mhz));
  };
  show(limits->setting(limit));
  auto apply = [page, limits, limit, choice, value, show] {
    try {
      show(limits->set(limit, choice->currentIndex() == 1, value->text().toStdString()));
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
  auto* page =
      new DeviceSettingPage(settings, "DeviceClockPage", "Device clock setting", "DevClkWin", parent);
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
  QObject::connect(maximize, &QCheckBox::clicked, page,
                   [&timebase](bool on) { timebase.MaximizeClock_Click(on); });
  auto limits = std::make_shared<ClockLimits>(main, timebase);
  clockLimit(page, limits, ClockLimits::High, "High limit:", "MaxMCUclock",
             "Use 0.8 of maximum clock frequency", "manual clock frequency high limit");
  clockLimit(page, limits, ClockLimits::Low, "Low limit:", "MinMCUclock",
             "use minimum device clock frequency", "manual clock frequency low limit");
  page->onRefresh = [&timebase, labels, maximize](const MainState& state) {
    // The header events write the frequencies in whole MHz.
    const char* fields[4] = {"DeviceClockPage.ClockMCUmax", "DeviceClockPage.ClockMCUmin",
                             "DeviceClockPage.ClockMCUdef", "ClockMCUcur"};
    for (int i = 0; i < 4; ++i) {
      auto it = state.fields.find(fields[i]);
      labels[i]->setText(it == state.fields.end() || it->second.empty() ? QString("-")
                                                                        : QString::fromStdString(it->second));
    }
    QSignalBlocker b(maximize);
    maximize->setChecked(timebase.model().MaximizeClock);
  };
  return page;
}

DeviceSettingPage* makeTriggerPage(SettingsStore& settings, TriggerControl& trigger, QWidget* parent) {
  auto* page = new DeviceSettingPage(settings, "DeviceTrigPage", "Trigger setting", "DevTrigWin", parent);
  auto timeouts = std::make_shared<TriggerTimeouts>(settings, trigger);
  auto timeout = [&](const char* caption, const char* input, const char* units,
                     TriggerTimeouts::Timeout which) {
    auto* unit = new QComboBox(page);
    unit->setObjectName(units);
    for (const char* u : {"ns", "us", "ms"}) unit->addItem(u);
    unit->setCurrentIndex(1);
    const std::string field = std::string("DeviceTrigPage.") + input;
    page->input(
        field.c_str(), input, caption, "", (std::string(input) + "Key").c_str(), "Send new value to scope",
        [timeouts, unit, which](const QString& t) {
          const auto u = static_cast<TriggerTimeouts::Unit>(std::clamp(unit->currentIndex(), 0, 2));
          timeouts->set(which, t.toStdString(), u);
          unit->setCurrentIndex(1);  // the field shows the stored value, in µs
        },
        unit);
  };
  timeout("Auto time-out:", "TrigWaitTimeAuto", "TWTauto", TriggerTimeouts::Auto);
  timeout("Norm time-out:", "TrigWaitTimeNorm", "TWTnorm", TriggerTimeouts::Norm);
  page->readOut("DeviceTrigPage.CurTrigWaitTime", "CurTrigWaitTime", "Now, us:");
  page->readOut("DeviceTrigPage.CurrentTriggerModeWin", "CurrentTriggerModeWin", "Trigger mode:");
  return page;
}

}  // namespace zorvik
