#include <QLabel>
#include <QMenuBar>
#include <QtTest>

#include "app/mainwin.h"
#include "app/meter_menu.h"
#include "measure/meter_window.h"
#include "window_fixture.h"

using namespace zorvik;

// The Meters menu on the main window with the default packet on the screen.
class MetersTest : public QObject {
  Q_OBJECT

 private:
  std::unique_ptr<mainwin> make() { return test::windowWithDefaultPacket(settings_); }
  static QAction* item(mainwin& w, int index) {
    return w.findChild<QAction*>(QString("Meters_%1").arg(index));
  }
  static unimeter* meterWindow(const QString& caption) {
    for (QWidget* t : QApplication::topLevelWidgets())
      if (auto* m = qobject_cast<unimeter*>(t); m && m->isVisible() && m->windowTitle() == caption) return m;
    return nullptr;
  }
  MemorySettings settings_;

 private slots:
  void itemsOpenMetersThatShowTheLastPacket() {
    auto w = make();
    QAction* dc = item(*w, 0);
    QAction* rails = item(*w, 28);
    QVERIFY(dc && rails);
    QCOMPARE(dc->text(), QString("DC voltage"));
    dc->trigger();
    QVERIFY(dc->isChecked());
    unimeter* m = meterWindow("DC voltage");
    QVERIFY(m);
    QCOMPARE(m->mnemonic(), std::string("DCV"));
    const QString shown = m->findChild<QLabel*>("CurVal")->text();
    QVERIFY2(shown.endsWith("mV") && !shown.contains("Limit"), qPrintable(shown));
    QCOMPARE(settings_.GetSettingValue("Meters", "On", ""), std::string("0"));

    rails->trigger();  // the default square wave has both rails
    unimeter* r = meterWindow("Rail-to-Rail voltage");
    QVERIFY(r);
    QVERIFY(r->findChild<QLabel*>("CurVal")->text().endsWith("mV"));
    QCOMPARE(settings_.GetSettingValue("Meters", "On", ""), std::string("0L"));
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      r->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT"));

    // Closed by its frame: the check mark goes and the list follows.
    m->close();
    QVERIFY(!dc->isChecked());
    QCOMPARE(settings_.GetSettingValue("Meters", "On", ""), std::string("L"));
    QVERIFY(!settings_.GetSettingValue("Meters Positions", "DCV Left", "").empty());

    // By the menu again: closed without a trace of it in the list.
    rails->trigger();
    QVERIFY(!rails->isChecked());
    QVERIFY(!meterWindow("Rail-to-Rail voltage"));
    QCOMPARE(settings_.GetSettingValue("Meters", "On", ""),
             std::string(" "));  // an empty text is kept as a blank
  }

  void theOpenMetersComeBackAtStartAndTheTimingChoicesAreStored() {
    settings_.SaveSettingValue("Meters", "On", "0@");  // DC voltage and frequency
    auto w = make();
    QVERIFY(item(*w, 0)->isChecked());
    QVERIFY(item(*w, 16)->isChecked());
    QVERIFY(meterWindow("Frequency"));
    auto* falls = w->findChild<QAction*>("MeterPolarity_1");
    QVERIFY(falls);
    falls->trigger();
    QCOMPARE(settings_.GetSettingValue("Meters", "TimingPolarity", ""), std::string("True"));
    QVERIFY(w->close());
    QCOMPARE(settings_.GetSettingValue("Meters", "On", ""), std::string("0@"));
  }

  void prefixKeysOpenMetersTheSpectrumAndAMemoWindow() {
    auto w = make();
    QTest::keyClick(w.get(), Qt::Key_M);
    QTest::keyClick(w.get(), Qt::Key_F);  // the frequency meter
    QVERIFY(item(*w, 16)->isChecked());
    QVERIFY(meterWindow("Frequency"));
    QTest::keyClick(w.get(), Qt::Key_M);
    QTest::keyClick(w.get(), Qt::Key_F);  // again: it stays open
    QVERIFY(item(*w, 16)->isChecked());
    QTest::keyClick(w.get(), Qt::Key_M);
    QTest::keyClick(w.get(), Qt::Key_S);
    QVERIFY(w->findChild<QAction*>("MeterFFT")->isChecked());
    QTest::keyClick(w.get(), Qt::Key_B);
    QTest::keyClick(w.get(), Qt::Key_W);
    QCOMPARE(w->findChildren<QWidget*>("memowin").size(), 1);
    QTest::keyClick(w.get(), Qt::Key_B);
    QTest::keyClick(w.get(), Qt::Key_R);  // the recorder, 5 frames: the status bar counts them down
    QCOMPARE(w->findChild<QLabel*>("RecorderProgress")->text(), QString("Recording: 5 frames to come"));
  }
};

QTEST_MAIN(MetersTest)
#include "meters_test.moc"
