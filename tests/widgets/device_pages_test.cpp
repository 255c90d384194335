#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QWindow>
#include <QtTest>

#include "app/device_setting_page.h"
#include "app/mainwin.h"
#include "control/trigger_control.h"
#include "firmware/fw_update_window.h"
#include "sim/sim_config.h"
#include "sim/simulated_obex.h"
#include "window_fixture.h"

using namespace zorvik;

// The Device menu's setting pages on the main window, against the simulated instrument.
class DevicePagesTest : public QObject {
  Q_OBJECT

 private:
  std::unique_ptr<mainwin> make() {
    auto w = test::simWindow(settings_, "rate=max");
    return w;
  }
  static DeviceSettingPage* open(mainwin& w, const QString& item, const char* object) {
    for (QAction* a : w.findChild<QMenu*>("DeviceInternals")->actions())
      if (a->text() == item) a->trigger();
    return w.findChild<DeviceSettingPage*>(object);
  }
  static void set(DeviceSettingPage* page, const char* input, const QString& text, const char* key) {
    page->findChild<QLineEdit*>(input)->setText(text);
    page->findChild<QPushButton*>(key)->click();
  }
  MemorySettings settings_;

 private slots:
  void fineValuesReachTheInstrumentAndTheEchoShowsThem() {
    auto w = make();
    DeviceSettingPage* ch1 = open(*w, "CH1 setting", "DeviceCh1Page");
    QVERIFY(ch1 && ch1->isVisible());
    QVERIFY(
        !ch1->findChild<QPushButton*>("Vdiv1updateKey")->isEnabled());  // offline: no instrument to send to
    set(ch1, "TrigLev1", "200", "TrigLev1updateKey");                   // the level is stored offline
    QCOMPARE(w->trigger().model().level, 200);

    QTest::mouseClick(w->findChild<QPushButton*>("KeyConnect"), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(w->core().sessionState(), SessionState::Ready, 5000);
    QVERIFY(ch1->findChild<QPushButton*>("Vdiv1updateKey")->isEnabled());
    set(ch1, "Vdiv1cur", "150", "Vdiv1updateKey");  // between the list's 100 and 200 mV
    QTRY_COMPARE_WITH_TIMEOUT(static_cast<int>(w->core().cache().V1), 150, 3000);
    QTRY_COMPARE_WITH_TIMEOUT(ch1->findChild<QLineEdit*>("Vdiv1cur")->text(), QString("150"), 3000);
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      ch1->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT"));

    DeviceSettingPage* memory = open(*w, "Memory setting", "DeviceMemPage");
    QVERIFY(memory);
    QTRY_VERIFY_WITH_TIMEOUT(memory->findChild<QLabel*>("OknoSamples")->text() != "-", 3000);
    w->core().link()->CloseSession();
  }

  void fineTimePerDivisionAndTheCloseBox() {
    auto w = make();
    QTest::mouseClick(w->findChild<QPushButton*>("KeyConnect"), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(w->core().sessionState(), SessionState::Ready, 5000);
    DeviceSettingPage* sampling = open(*w, "Sampling setting", "DeviceSamplingPage");
    QVERIFY(sampling);
    sampling->findChild<QComboBox*>("TimeDivExpCur")->setCurrentIndex(1);  // us/div
    set(sampling, "TimeDivValCur", "3", "FineTimeDivSetKey");              // not in the 1-2-5 list
    // The instrument's echoes set the sample period of the new time base.
    QTRY_VERIFY_WITH_TIMEOUT(
        std::abs(w->core().scale().SamplePeriod * static_cast<float>(w->core().scale().SamplesPerDiv) -
                 3e-6f) < 0.3e-6f,
        3000);
    QVERIFY(sampling->findChild<QLabel*>("CurSamplesPerDiv")->text() != "-");
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      sampling->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".sampling.png");

    // Closed, the page stays for the header events and keeps its place.
    sampling->move(120, 130);
    sampling->windowHandle()->close();
    QVERIFY(!sampling->isVisible());
    QCOMPARE(w->findChild<DeviceSettingPage*>("DeviceSamplingPage"), sampling);
    QVERIFY(!settings_.GetSettingValue("Startup Position", "DevSmpWin Left", "").empty());
    w->core().link()->CloseSession();
  }

  void firmwareWindowShowsTheImageTheInstrumentAndTheSectors() {
    auto w = make();
    QVERIFY(w->findChild<QAction*>("FWupdateKey"));
    FWupdate window;
    ZfwImage image;
    image.target = "ZV-1";
    image.version = "1.20";
    image.date = "20261123";
    window.showImage(image);
    window.showDevice(parseDeviceIdentity("ZV-11.2 00421.00"));
    window.showSectors(20);
    window.setSector(0, true);
    window.setSector(3, false);
    window.setSector(99, true);  // no such indicator: nothing happens
    window.enableStart(true);
    window.showWindow();
    QCOMPARE(window.findChildren<QLabel*>(QRegularExpression("^SectorShape")).size(), 20);
    QCOMPARE(window.findChild<QLabel*>("HWrev")->text(), QString("1.2 "));
    QVERIFY(window.findChild<QPushButton*>("KeyStartFU")->isEnabled());
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      window.grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".fw.png");
    window.closeWindow();
    QVERIFY(!window.isVisible());
  }

  void clockLimitsAndTimeOuts() {
    auto w = make();
    QTest::mouseClick(w->findChild<QPushButton*>("KeyConnect"), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(w->core().sessionState(), SessionState::Ready, 5000);
    DeviceSettingPage* clock = open(*w, "Clock setting", "DeviceClockPage");
    QVERIFY(clock);
    // The instrument's clocks in whole MHz, as the header events give them.
    for (const char* name : {"ClockMCUmax", "ClockMCUmin", "ClockMCUdef", "ClockMCUcur"})
      QVERIFY2(QRegularExpression("^[0-9]+$").match(clock->findChild<QLabel*>(name)->text()).hasMatch(),
               name);
    auto* high = clock->findChild<QComboBox*>("MaxMCUclock");
    high->setCurrentIndex(1);
    emit high->activated(1);
    auto* value = clock->findChild<QLineEdit*>("MaxMCUclockValue");
    QVERIFY(value->isEnabled());
    value->setText("100000");  // far above the fastest clock: pulled back to it
    emit value->editingFinished();
    const int stored = std::stoi(settings_.GetSettingValue("MCUclock", "Maximum", "0"));
    QVERIFY(stored > 0 && stored < 100000);
    QCOMPARE(value->text(), QString::number(stored));

    DeviceSettingPage* trig = open(*w, "Trigger setting", "DeviceTrigPage");
    QVERIFY(trig);
    // From the first session on: the mode, the stored time-outs and those the device runs.
    QCOMPARE(trig->findChild<QLabel*>("CurrentTriggerModeWin")->text(),
             (w->core().cache().RT & 1) ? QString("Normal") : QString("Autorun"));
    QCOMPARE(trig->findChild<QLineEdit*>("TrigWaitTimeAuto")->text(),
             QString::fromStdString(settings_.GetSettingValue("Mode", "TimeoutAuto", "")));
    QCOMPARE(trig->findChild<QLabel*>("CurTrigWaitTime")->text(),
             QString("Auto %1, Norm %2")
                 .arg(settings_.getInt("Mode", "TimeoutAuto"))
                 .arg(settings_.getInt("Mode", "TimeoutWait")));
    trig->findChild<QComboBox*>("TWTauto")->setCurrentIndex(2);  // ms
    set(trig, "TrigWaitTimeAuto", "20", "TrigWaitTimeAutoKey");
    // The echo in clock counts comes back within a count of 20 ms.
    QTRY_VERIFY_WITH_TIMEOUT(std::abs(w->trigger().model().timeoutAutoMicros - 20000) < 20, 3000);
    QCOMPARE(trig->findChild<QComboBox*>("TWTauto")->currentIndex(), 1);  // back to µs, as the field shows
    w->core().link()->CloseSession();
  }

  void delayPageShowsTheCentreOfTheRecord() {
    auto w = make();
    QTest::mouseClick(w->findChild<QPushButton*>("KeyConnect"), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(w->core().sessionState(), SessionState::Ready, 5000);
    QTest::mouseClick(w->findChild<QPushButton*>("KeyDelay"), Qt::LeftButton);
    auto* page = w->findChild<QWidget*>("DelayPage");
    QVERIFY(page && page->isVisible());
    const QString centre = page->findChild<QLabel*>("TimeAsqLbl")->text();
    QVERIFY2(centre.endsWith("s") && centre != "0s", qPrintable(centre));
    w->core().link()->CloseSession();
  }
};

QTEST_MAIN(DevicePagesTest)
#include "device_pages_test.moc"
