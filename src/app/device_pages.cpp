#include "app/device_pages.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>

#include "app/device_setting_page.h"
#include "control/channel_control.h"
#include "control/fine_controls.h"
#include "control/timebase_control.h"
#include "control/trigger_control.h"
#include "core/eng_text.h"
#include "link/class_obex.h"
#include "session/main_controller.h"

namespace zorvik {

namespace {

const char* const kHysteresis[4] = {"small", "medium", "high", "large"};

}  // namespace

DeviceSettingPage* makeCh1Page(SettingsStore& settings, MainController& main, ChannelControl& channel,
                               TriggerControl& trigger, QWidget* parent) {
  auto* page = new DeviceSettingPage(settings, "DeviceCh1Page", "Device Ch1 setting", "DevCh1Win", parent);
  page->input("Vdiv1cur", "Vdiv1cur", "Fine sencitivity:", "in mV/div", "Vdiv1updateKey",
              "Send new value to scope",
              [&main](const QString& t) { main.link()->PutRegister2("V1", fine::whole(t.toStdString())); });
  page->input("Offs1cur", "Offs1cur", "Fine offset:", "offset in 1/256 of full screen (signed)",
              "Offs1updateKey", "Send new value to scope",
              [&main](const QString& t) { main.link()->PutRegister2("P1", fine::whole(t.toStdString())); });
  page->input("TrigLev1", "TrigLev1", "Trigger level:", "0...255 (bottom...top)", "TrigLev1updateKey",
              "Send new value to scope",
              [&trigger](const QString& t) { trigger.setLevel(fine::triggerLevel(t.toStdString())); });

  auto* compensation = new QLabel(page);
  compensation->setObjectName("TriggerCompensation1");
  auto* up = new QPushButton("+", page);
  up->setObjectName("TrigCompensUP1");
  auto* down = new QPushButton("-", page);
  down->setObjectName("TrigCompensDOWN1");
  auto* row = new QHBoxLayout;
  row->addWidget(compensation, 1);
  row->addWidget(down);
  row->addWidget(up);
  page->form()->addRow("Trigger compensation:", row);
  auto step = [page, &trigger, &main](double ns) {
    try {
      trigger.stepCompensation(ns);
      page->refresh(main.state());
    } catch (const std::exception& e) {
      page->onFault(e.what());
    }
  };
  QObject::connect(up, &QPushButton::clicked, page, [step] { step(1); });
  QObject::connect(down, &QPushButton::clicked, page, [step] { step(-1); });

  auto* fall = new QComboBox(page);
  fall->setObjectName("HysteresisF1");
  auto* rise = new QComboBox(page);
  rise->setObjectName("HysteresisR1");
  for (const char* h : kHysteresis) {
    fall->addItem(h);
    rise->addItem(h);
  }
  auto* hyst = new QHBoxLayout;
  hyst->addWidget(new QLabel("fall", page));
  hyst->addWidget(fall);
  hyst->addWidget(new QLabel("rise", page));
  hyst->addWidget(rise);
  page->form()->addRow("Trigger hysteresis:", hyst);
  QObject::connect(fall, &QComboBox::activated, page, [&trigger](int i) { trigger.setHysteresisF(i); });
  QObject::connect(rise, &QComboBox::activated, page, [&trigger](int i) { trigger.setHysteresisR(i); });

  auto* interlaced = new QCheckBox("Interlaced peak detector", page);
  interlaced->setObjectName("NIpeak1");
  interlaced->setToolTip("Data format in peak detector mode");
  page->form()->addRow(interlaced);
  QObject::connect(interlaced, &QCheckBox::clicked, page, [&channel](bool on) { channel.NIpeak1_Click(on); });

  page->onRefresh = [&, compensation, fall, rise, interlaced, page](const MainState&) {
    compensation->setText(QString("%1 ns").arg(trigger.model().compensationNs));
    QSignalBlocker b1(fall), b2(rise), b3(interlaced);
    fall->setCurrentIndex(trigger.model().hysteresisF & 3);
    rise->setCurrentIndex(trigger.model().hysteresisR & 3);
    interlaced->setChecked(channel.model().NIpeak1);
    page->setOnline(main.Online());
    // The level goes through the trigger control, which stores it offline too.
    if (auto* k = page->findChild<QPushButton*>("TrigLev1updateKey")) k->setEnabled(true);
  };
  return page;
}

DeviceSettingPage* makeSamplingPage(SettingsStore& settings, MainController& main, TimebaseControl& timebase,
                                    QWidget* parent) {
  auto* page =
      new DeviceSettingPage(settings, "DeviceSamplingPage", "Device sampling setting", "DevSmpWin", parent);
  page->readOut("DeviceSamplingPage.CurSamplesPerDiv", "CurSamplesPerDiv",
                "Samples per division:", "Samples per one division");
  auto* rate = new QLabel(page);
  rate->setObjectName("CurMegaSamples");
  page->form()->addRow("Sample rate:", rate);
  auto* period = new QLabel(page);
  period->setObjectName("CurNanoSecPerSample");
  page->form()->addRow("Sample period:", period);

  auto* units = new QComboBox(page);
  units->setObjectName("TimeDivExpCur");
  for (const char* u : {"ns/div", "us/div", "ms/div", "s/div"}) units->addItem(u);
  units->setCurrentIndex(1);
  page->input(
      "", "TimeDivValCur", "Fine T/div:", "any time per division", "FineTimeDivSetKey",
      "Set this time per division",
      [&timebase, units](const QString& t) {
        const auto unit = static_cast<fine::TimeUnit>(std::clamp(units->currentIndex(), 0, 3));
        timebase.PutGetRegisterMCTSRS(static_cast<float>(fine::timePerDiv(t.toStdString(), unit)));
      },
      units);

  // Fine sample rate: typed values go to the instrument, an empty field asks for its own.
  auto* perSample = new QLineEdit(page);
  perSample->setObjectName("ClockPerSampleCur");
  perSample->setToolTip("trimming sample rate (i.e. for anti-aliasing)");
  page->form()->addRow("clock per sample:", perSample);
  page->input("", "ClockPeriodMCUcur", "Clock period, ps:", "trimming sample rate (i.e. for anti-aliasing)",
              "ClockUpdate", "Fine samperate trim", [&main, perSample](const QString& clockPs) {
                fine::trimSampling(main, perSample->text().toStdString(), clockPs.toStdString());
              });
  auto* clock = page->findChild<QLineEdit*>("ClockPeriodMCUcur");
  page->onRefresh = [&main, page, rate, period, perSample, clock](const MainState& state) {
    const double sp = main.scale().SamplePeriod;
    rate->setText(sp > 0 ? QString::fromStdString(engineeringText(1 / sp, "S/s")) : QString("-"));
    period->setText(QString::fromStdString(engineeringText(sp, "s")));
    auto show = [&state](QLineEdit* e, const char* field) {
      auto it = state.fields.find(field);
      if (!e->hasFocus() && it != state.fields.end()) e->setText(QString::fromStdString(it->second));
    };
    show(perSample, "ClockPerSampleCur");
    show(clock, "ClockPeriodMCUcur");
    page->setOnline(main.Online());
  };
  return page;
}

DeviceSettingPage* makeMemoryPage(SettingsStore& settings, TimebaseControl& timebase, QWidget* parent) {
  auto* page = new DeviceSettingPage(settings, "DeviceMemPage", "Device memory setting", "DevMemWin", parent);
  page->readOut("DeviceMemPage.OknoSamples", "OknoSamples",
                "Samples:", "Requested samples in current acqusion mode");
  page->readOut("OknoBytesPerSample", "OknoBytesPerSample", "Bytes per sample:", "Bytes per sample");
  page->readOut("DeviceMemPage.OknoMaxSamples", "OknoMaxSamples", "Max samples:", "");
  page->readOut("DeviceMemPage.OknoPreSamples", "OknoPreSamples", "Presamples:", "Number of presamples");
  page->readOut("DeviceMemPage.OknoMaxPreSamples", "OknoMaxPreSamples",
                "Max presamples:", "Max presamples in current acqusion mode");
  page->readOut("DeviceMemPage.OknoCurSamples", "OknoCurSamples", "Last packet:", "Samples in last packet");
  auto* depth = new QComboBox(page);
  depth->setObjectName("SampleMemoDepth");
  for (const char* d : kMemoDepthEntries) depth->addItem(d);
  page->form()->addRow("Memory depth:", depth);
  auto* keep = new QCheckBox("Keep presamples proportional", page);
  keep->setObjectName("KeepPropPresamp");
  page->form()->addRow(keep);
  QObject::connect(depth, &QComboBox::activated, page, [&timebase, page](int i) {
    try {
      timebase.SampleMemoDepth_Click(i);
    } catch (const std::exception& e) {
      page->onFault(e.what());
    }
  });
  QObject::connect(keep, &QCheckBox::clicked, page,
                   [&timebase](bool on) { timebase.KeepPropPresamp_Click(on); });
  page->onRefresh = [&timebase, depth, keep](const MainState&) {
    QSignalBlocker b1(depth), b2(keep);
    depth->setCurrentIndex(timebase.model().SampleMemoDepth);
    keep->setChecked(timebase.model().KeepPropPresamp);
  };
  return page;
}

}  // namespace zorvik
