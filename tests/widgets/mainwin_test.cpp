#include "app/mainwin.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QShortcut>
#include <QtTest>

#include "control/trigger_control.h"
#include "display/scope_display.h"
#include "export/display_pictures.h"
#include "sim/sim_config.h"
#include "sim/simulated_obex.h"
#include "ui/hot_key_dialog.h"
#include "window_fixture.h"

using namespace zorvik;

class MainwinTest : public QObject {
  Q_OBJECT

 private:
  std::unique_ptr<mainwin> make(const std::string& sim) {
    auto w = test::simWindow(settings_, sim);
    return w;
  }
  MemorySettings settings_ = [] {
    MemorySettings s;
    s.saveInt("Sampling", "TimePerDiv", 15);  // 100 us a division, where the tests start
    return s;
  }();

 private slots:
  void connectReachesReadyAndPacketsArrive() {
    auto w = make("rate=200");
    auto* connectKey = w->findChild<QPushButton*>("KeyConnect");
    auto* start = w->findChild<QPushButton*>("KeyStart");
    auto* serial = w->findChild<QCheckBox*>("WorkMode");
    QVERIFY(connectKey && start && serial);
    QCOMPARE(connectKey->text(), QString("Connect"));
    QVERIFY(!start->isEnabled());
    QVERIFY(w->windowTitle().startsWith("ZORVIK digital oscilloscope  v."));
    // Every move of the auto level is echoed and restarts the packet count with the persistence.
    w->trigger().setAutoTrig(false);

    QTest::mouseClick(connectKey, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(w->core().sessionState(), SessionState::Ready, 5000);
    QVERIFY(start->isEnabled());
    QVERIFY(connectKey->isHidden());
    auto* model = w->findChild<QLabel*>("Property_VNM");
    QVERIFY(model);
    QCOMPARE(model->text(), QString("Zorvik ZV-1"));

    // Serial acquisitions are on by default and start as soon as the session is ready.
    QVERIFY(serial->isChecked());
    QTRY_VERIFY_WITH_TIMEOUT(w->core().PacketCount() >= 10, 5000);
    QCOMPARE(w->core().state().modeText, std::string("Auto"));
    QTRY_VERIFY_WITH_TIMEOUT(!w->findChild<QLabel*>("FPSlabel")->text().isEmpty(), 2000);
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      w->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT"));
    serial->click();
    QCOMPARE(w->core().state().modeText, std::string("Ready"));
    QVERIFY(start->isVisible());
    w->core().link()->CloseSession();
    QTRY_VERIFY_WITH_TIMEOUT(!connectKey->isHidden(), 3000);
    QCOMPARE(connectKey->text(), QString("Connect"));
  }

  void closeWhileOfflineStoresThePosition() {
    auto w = make("rate=max");
    w->move(40, 50);
    QVERIFY(w->close());
    QCOMPARE(settings_.GetSettingValue("Startup Position", "ZorvikWin Left", ""), std::to_string(w->x()));
  }

  void draggingTheMarkerSetsTheTriggerLevel() {
    auto w = make("rate=max");
    auto* marker = w->findChild<QWidget*>("TrigInd1");
    QVERIFY(marker);
    // At zoom 1 a row is half a pixel: the top of the trace area is level 255, the middle 128.
    const int top = w->display().canvas().geometry().pixelY(255);
    QTest::mousePress(marker, Qt::LeftButton, {}, QPoint(8, top));
    QCOMPARE(w->core().cache().S1, 255);
    QTest::mouseMove(marker, QPoint(8, w->display().canvas().geometry().pixelY(128)));
    QTest::mouseRelease(marker, Qt::LeftButton, {}, QPoint(8, w->display().canvas().geometry().pixelY(128)));
    QCOMPARE(w->core().cache().S1, 128);
    QTest::mouseClick(marker, Qt::LeftButton, {}, QPoint(8, marker->height() - 1));  // below the frame
    QCOMPARE(w->core().cache().S1, 0);
  }

  void keysReachTheDisplayTheChannelAndTheTimeBase() {
    auto w = make("rate=max");
    const int narrow = w->display().canvas().width();
    QTest::keyClick(w.get(), Qt::Key_W);
    QCOMPARE(w->display().canvas().width(), narrow + 160);  // wide: 480 columns instead of 320
    QVERIFY(settings_.getBool("Startup Position", "Wide", false));
    QTest::keyClick(w.get(), Qt::Key_W);
    QCOMPARE(w->display().canvas().width(), narrow);

    const int volts = w->control().channel().model().scrollCH1;
    QTest::keyClick(w.get(), Qt::Key_PageUp);
    QCOMPARE(w->control().channel().model().scrollCH1, volts + 1);
    const int time = w->control().timebase().model().ScrollTimeDiv;
    QTest::keyClick(w.get(), Qt::Key_End);
    QCOMPARE(w->control().timebase().model().ScrollTimeDiv, time - 1);

    const bool interpolated = w->display().settings().interpolation != 0;
    QTest::keyClick(w.get(), Qt::Key_I);
    QCOMPARE(w->display().settings().interpolation != 0, !interpolated);
    QTest::keyClick(w.get(), Qt::Key_I);
    QCOMPARE(w->display().settings().interpolation != 0, interpolated);
  }

  void keysActWhateverControlHasTheFocus() {
    auto w = make("rate=max");
    w->activateWindow();
    auto* volts = w->findChild<QComboBox*>("VoltDiv1");
    auto* times = w->findChild<QComboBox*>("TimeDiv");
    QVERIFY(volts && times);
    volts->setFocus();
    QTRY_VERIFY(volts->hasFocus());
    const int vdiv = w->control().channel().model().scrollCH1;
    const int offset = w->control().channel().model().VScroll1;
    QTest::keyClick(volts, Qt::Key_Up);  // the offset, as the keyboard table says, not the focused list
    QCOMPARE(w->control().channel().model().scrollCH1, vdiv);
    QCOMPARE(w->control().channel().model().VScroll1 != offset, w->control().channel().model().HardwShift1);
    times->setFocus();
    QTRY_VERIFY(times->hasFocus());
    const int time = w->control().timebase().model().ScrollTimeDiv;
    QTest::keyClick(times, Qt::Key_End);  // one step faster, not the list's last entry
    QCOMPARE(w->control().timebase().model().ScrollTimeDiv, time - 1);
  }

  void serialOnAndOffLeavesTheRunPanelInPlace() {
    auto w = make("rate=max");
    QTest::mouseClick(w->findChild<QPushButton*>("KeyConnect"), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(w->core().sessionState(), SessionState::Ready, 5000);
    auto* serial = w->findChild<QCheckBox*>("WorkMode");
    auto* autoRun = w->findChild<QCheckBox*>("AutoWait");
    const QPoint serialAt = serial->mapTo(w.get(), QPoint()), autoAt = autoRun->mapTo(w.get(), QPoint());
    auto* start = w->findChild<QPushButton*>("KeyStart");
    for (int i = 0; i < 2; ++i) {
      const bool shown = start->isVisible();
      serial->click();
      QTRY_VERIFY(start->isVisible() != shown);
      QApplication::processEvents();
      QCOMPARE(serial->mapTo(w.get(), QPoint()), serialAt);
      QCOMPARE(autoRun->mapTo(w.get(), QPoint()), autoAt);
    }
    w->core().link()->CloseSession();
    QTRY_VERIFY(w->core().state().connectVisible);
  }

  void newWindowsOpenBesideTheMainWindowAndCascade() {
    auto w = make("rate=max");
    for (const char* item : {"Meters_0", "Meters_6", "Meters_7"}) {
      QAction* a = w->findChild<QAction*>(item);
      QVERIFY2(a, item);
      a->trigger();
    }
    QList<QPoint> places;
    for (QWidget* top : QApplication::topLevelWidgets())
      if (top != w.get() && top->isVisible() && top->objectName() == "unimeter") places << top->pos();
    QCOMPARE(places.size(), 3);
    const QRect area = w->screen()->availableGeometry();
    for (const QPoint& p : places) {
      QVERIFY2(area.contains(p), qPrintable(QString("%1,%2").arg(p.x()).arg(p.y())));
      QCOMPARE(places.count(p), 1);  // none hides another
    }
  }

  void theLargestZoomBringsTheWindowBackOntoTheScreen() {
    auto w = make("rate=max");
    const QRect area = w->screen()->availableGeometry();
    w->move(area.right() - 200, area.bottom() - 200);
    for (QAction* a : w->findChild<QMenu*>("Zoom")->actions())
      if (a->text() == "x3") a->trigger();
    const QRect frame = w->frameGeometry();
    QVERIFY2(frame.width() > area.width() || frame.right() <= area.right(), "right edge off the screen");
    QVERIFY2(frame.height() > area.height() || frame.bottom() <= area.bottom(), "bottom edge off the screen");
    QVERIFY(frame.left() >= area.left() && frame.top() >= area.top());
    for (QAction* a : w->findChild<QMenu*>("Zoom")->actions())
      if (a->text() == "x1") a->trigger();  // the store is shared by the tests that follow
  }

  // Columns with any pixel of a trace's colours: blue in it, or pure green (the grid is olive).
  static int tracedColumns(const QImage& picture) {
    int columns = 0;
    for (int x = 0; x < picture.width(); ++x) {
      for (int y = 0; y < picture.height(); ++y) {
        const QRgb p = picture.pixel(x, y) & 0xFFFFFF;
        if (qBlue(p) > 0 || (qGreen(p) > 0 && qRed(p) == 0)) {
          ++columns;
          break;
        }
      }
    }
    return columns;
  }

  void startUpShowsTheDefaultPacket() {
    QTemporaryDir dir;
    QVERIFY(QFile::copy(QT_TESTCASE_SOURCEDIR "/data/default.zrv", dir.filePath("default.zrv")));
    const QString previous = QDir::currentPath();
    QDir::setCurrent(dir.path());
    auto w = make("rate=max");
    w->restoreDefaultPacket();
    QDir::setCurrent(previous);
    QVERIFY(!w->core().LastPacket().empty());
    QVERIFY2(tracedColumns(w->display().canvas().snapshot()) > 100, "the default packet is on the screen");
  }

  void autoLevelMovesTheTriggerToTheRecordsMean() {
    QTemporaryDir dir;
    QVERIFY(QFile::copy(QT_TESTCASE_SOURCEDIR "/data/default.zrv", dir.filePath("default.zrv")));
    const QString previous = QDir::currentPath();
    QDir::setCurrent(dir.path());
    auto w = make("rate=max");
    w->trigger().setAutoTrig(false);
    w->trigger().setLevel(30);
    w->restoreDefaultPacket();
    QCOMPARE(w->trigger().model().level, 30);
    w->trigger().setAutoTrig(true);
    w->restoreDefaultPacket();
    QDir::setCurrent(previous);
    QCOMPARE(w->trigger().model().level, 129);  // the mean code of the default square wave
    QCOMPARE(settings_.GetSettingValue("Ch1", "TrigPoz", ""), std::string("129"));
  }

  void thePictureOfTheDisplayWithAndWithoutLabels() {
    auto w = make("rate=max");
    QVERIFY(w->findChild<QAction*>("SaveToBMPGIFJPG_0"));
    QVERIFY(w->findChild<QAction*>("SaveToBMPGIFJPG_1")->isEnabled());
    QVERIFY(w->findChild<QAction*>("SaveWithLabels")->isChecked());  // the catalogue's default
    const QImage plain = displayPicture(w->display(), w->display().labels(), false);
    const QImage labelled = displayPicture(w->display(), w->display().labels(), true);
    QCOMPARE(plain.size(), QSize(341, 277));
    QCOMPARE(labelled.size(), plain.size());
    QVERIFY(plain != labelled);
    QCOMPARE(plain, w->display().canvas().image());
  }

  void theHotKeyIsStoredAndGivenToTheWindow() {
    auto w = make("rate=max");
    w->findChild<QAction*>("SetupHotKey")->trigger();
    auto* dialog = w->findChild<HotKey*>("HotKey");
    QVERIFY(dialog && dialog->isVisible());
    QCOMPARE(dialog->findChild<QLabel*>("HotKeyName")->text(), QString("Oscilloscope window hot key"));
    dialog->findChild<QRadioButton*>("FirstKeyOption2")->setChecked(true);
    QTest::keyClicks(dialog->findChild<QLineEdit*>("SymbolHotKey"), "o");
    QCOMPARE(dialog->findChild<QLineEdit*>("SymbolHotKey")->text(), QString("O"));
    dialog->KeySET_Click();
    QCOMPARE(settings_.GetSettingValue("Windows Hot Keys", "Oscilloscope", ""), std::string("591"));
    auto* key = w->findChild<QShortcut*>("HotKey Oscilloscope");
    QVERIFY(key);
    QCOMPARE(key->key(), QKeySequence("Ctrl+O"));
  }

  void slowTimeBaseGrowsTheTraceWhileTheDataArrive() {
    auto w = make("rate=200,freq=2");
    QTest::mouseClick(w->findChild<QPushButton*>("KeyConnect"), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(w->core().sessionState(), SessionState::Ready, 5000);
    auto* serial = w->findChild<QCheckBox*>("WorkMode");
    if (!serial->isChecked()) serial->click();         // an earlier case may have left it off
    w->control().timebase().ScrollTimeDiv_Change(25);  // 200 ms a division: a record of two seconds
    // Part of a record on the screen while the rest is still being taken.
    QTRY_VERIFY_WITH_TIMEOUT(w->core().roll().started() && w->core().roll().done() > 100, 8000);
    const int early = tracedColumns(w->display().canvas().snapshot());
    QTRY_VERIFY_WITH_TIMEOUT(w->core().roll().done() > 400, 8000);
    const int later = tracedColumns(w->display().canvas().snapshot());
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      w->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".roll.png");
    QVERIFY2(early > 5 && later > early + 20,
             qPrintable(QString("%1 then %2 columns").arg(early).arg(later)));
  }
};

QTEST_MAIN(MainwinTest)
#include "mainwin_test.moc"
