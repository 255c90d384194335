#include <QCheckBox>
#include <QComboBox>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QtTest>

#include "app/horizontal_panel.h"
#include "app/vertical_panel.h"
#include "core/recording_sink.h"
#include "session/basic_control.h"
#include "session/main_controller.h"
#include "sim/simulated_obex.h"

using namespace zorvik;

namespace {

SimConfig quietDevice() {
  SimConfig c;
  applySimOptions(c, "rate=50");
  return c;
}

// The front panel on the core, with the simulated instrument behind the link.
struct Rig {
  MemorySettings settings = [] {
    MemorySettings s;
    s.saveInt("Sampling", "TimePerDiv", 15);  // 100 us a division, where the tests start
    return s;
  }();
  RecordingSink sink;
  MainView view;
  SimulatedObex sim{quietDevice()};
  MainController main{settings, sink, view};
  BasicControl control{main};
  VerticalPanel vertical{control.channel()};
  HorizontalPanel horizontal{control.timebase()};
  Rig() {
    control.fillRegisters(main.registers());
    main.attachLink(&sim);
  }
  ~Rig() {
    main.attachLink(nullptr);
    main.registers().clear();
  }
  QComboBox* VoltDiv1() { return vertical.findChild<QComboBox*>("VoltDiv1"); }
  QComboBox* TimeDiv() { return horizontal.findChild<QComboBox*>("TimeDiv"); }
  QScrollBar* ScrollTimeDiv() { return horizontal.findChild<QScrollBar*>("ScrollTimeDiv"); }
  double devicePeriod() {
    const AcquisitionSetup s = sim.device().setup();
    return s.TS / 256.0 * s.MC * 1e-11;
  }
};

}  // namespace

class FrontPanelTest : public QObject {
  Q_OBJECT

 private slots:
  void controlsCarryTheirNamesAndTips() {
    Rig rig;
    QVERIFY(rig.VoltDiv1() && rig.TimeDiv() && rig.ScrollTimeDiv());
    for (const char* name : {"scrollCH1", "VScroll1", "KeyNulOffset1", "HardwShift1", "OpenClose1", "Ground1",
                             "FilterH1", "FilterL1", "Average1", "Peak1", "HiRes1"})
      QVERIFY2(rig.vertical.findChild<QWidget*>(name), name);
    for (const char* name :
         {"HScrollCenter", "EnableRIS", "RealtmDraw", "SampleMemoDepth", "KeepPropPresamp"})
      QVERIFY2(rig.horizontal.findChild<QWidget*>(name), name);
    QCOMPARE(rig.VoltDiv1()->toolTip(), QString("Channel sensitivity"));
    QCOMPARE(rig.VoltDiv1()->itemText(0), QString("20mV"));
    QCOMPARE(rig.TimeDiv()->itemText(12), QString::fromUtf8("200\xC2\xB5s"));
    QCOMPARE(rig.horizontal.findChild<QCheckBox*>("EnableRIS")->toolTip(),
             QString("Enable RIS (Stroboscope)"));
    QCOMPARE(rig.vertical.findChild<QCheckBox*>("HardwShift1")->toolTip(),
             QString("Hardware offset: from -1.6V to 1.6V"));
    // Below 500 ns the entries wait for RIS.
    auto* items = qobject_cast<QStandardItemModel*>(rig.TimeDiv()->model());
    QVERIFY(items && !items->item(0)->isEnabled() && items->item(4)->isEnabled());
    rig.horizontal.findChild<QCheckBox*>("EnableRIS")->click();
    QVERIFY(items->item(0)->isEnabled());
  }

  void onlineTheListsWriteTheRegistersAndTheEchoMarksThem() {
    Rig rig;
    rig.main.KeyConnect_Click();
    QTRY_COMPARE_WITH_TIMEOUT(rig.main.sessionState(), SessionState::Ready, 5000);
    QCOMPARE(rig.VoltDiv1()->currentText(), QString("200mV"));

    QTest::keyClick(rig.VoltDiv1(), Qt::Key_Down);
    QTRY_COMPARE(rig.sim.device().value("V1").value_or(0), 500);
    QTRY_COMPARE(rig.VoltDiv1()->currentText(), QString("500mV"));
    QCOMPARE(rig.main.scale().FullScaleVolts, 4.0f);

    rig.ScrollTimeDiv()->triggerAction(QAbstractSlider::SliderSingleStepAdd);  // 100 us to 200 us
    QTRY_COMPARE(rig.TimeDiv()->currentText(), QString::fromUtf8("200\xC2\xB5s"));
    QVERIFY(std::abs(rig.devicePeriod() - 200e-6 / rig.main.scale().SamplesPerDiv) < 1e-8);
    QVERIFY(std::abs(rig.main.scale().SamplePeriod - rig.devicePeriod()) < 1e-9);
    QCOMPARE(rig.settings.GetSettingValue("Sampling", "TimePerDiv", ""), std::string("16"));
    rig.sim.CloseSession();
    QTRY_VERIFY(!rig.main.Online());
  }

  void offlineTheListsStoreAndScaleAtOnce() {
    Rig rig;
    QTest::keyClick(rig.VoltDiv1(), Qt::Key_Up);  // 100 mV
    QCOMPARE(rig.settings.GetSettingValue("Ch1", "VoltPerDiv", ""), std::string("6"));
    QCOMPARE(rig.main.cache().V1, 100);
    QCOMPARE(rig.main.scale().FullScaleVolts, 0.8f);
    QCOMPARE(rig.VoltDiv1()->currentText(), QString("100mV"));
    rig.ScrollTimeDiv()->triggerAction(QAbstractSlider::SliderSingleStepSub);  // 50 us
    QCOMPARE(rig.settings.GetSettingValue("Sampling", "TimePerDiv", ""), std::string("14"));
    QCOMPARE(rig.TimeDiv()->currentText(), QString::fromUtf8("50\xC2\xB5s"));
    QCOMPARE(rig.main.scale().SamplePeriod, 50e-6f / 16);
    QCOMPARE(rig.sim.device().value("V1").value_or(-1), 200);  // its power-on value: nothing went out offline
  }
};

QTEST_MAIN(FrontPanelTest)
#include "front_panel_test.moc"
