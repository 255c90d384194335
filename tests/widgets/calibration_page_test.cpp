#include "app/calibration_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QtTest>

#include "../link/fake_obex.h"
#include "core/recording_sink.h"
#include "session/main_controller.h"
#include "session/run_control.h"

using namespace zorvik;

class CalibrationPageTest : public QObject {
  Q_OBJECT

 private slots:
  void controlsStoreAtOnceAndTheRunGroupSetsThePeriodicCommand() {
    MemorySettings settings;
    RecordingSink sink;
    MainView view;
    test::FakeObex link;
    MainController main(settings, sink, view);
    main.attachLink(&link);
    RunControl run(main);
    CalibrationPage page(settings, run);

    auto* byStart = page.findChild<QCheckBox*>("CalibrAtKeyStart");
    auto* startRis = page.findChild<QCheckBox*>("CalibrAtStartRIS");
    QVERIFY(byStart && startRis);
    QVERIFY(byStart->isChecked());
    byStart->click();
    QCOMPARE(settings.getInt("AutoCalibrating", "KeyStart", 1), 0);
    QVERIFY(!startRis->isEnabled());  // the start group hangs on its first box

    const size_t before = link.calls.size();
    page.findChild<QCheckBox*>("CalibrAtRunPeriodic")->click();
    QCOMPARE(settings.getInt("AutoCalibrating", "Periodic", 1), 0);
    QVERIFY(link.calls.size() > before);
    QVERIFY(link.calls.back().rfind("SetPeriodicCommand", 0) == 0);

    auto* interval = page.findChild<QComboBox*>("PeriodicCalibrInterval");
    QTest::keyClick(interval, Qt::Key_Down);
    QCOMPARE(settings.getInt("AutoCalibrating", "Interval", 5), 6);
    main.attachLink(nullptr);
  }
};

QTEST_MAIN(CalibrationPageTest)
#include "calibration_page_test.moc"
