#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QWindow>
#include <QtTest>
#include <memory>

#include "measure/main_meter_window.h"
#include "measure/thd_window.h"
#include "session/scope_session.h"
#include "spectrum/spectrum_stage.h"
#include "spectrum/spectrum_window.h"
#include "window_fixture.h"

using namespace zorvik;

// The main meter and the THD meter as the user meets them: from the menu of the spectrum window, which
// the main window's Meters menu opens.
class SpectrumMetersTest : public QObject {
  Q_OBJECT

 private:
  static Spectrum* openSpectrum(mainwin& w) {
    w.findChild<QAction*>("MeterFFT")->trigger();
    auto* spectrum = w.findChild<Spectrum*>("Spectrum");
    return spectrum && spectrum->isVisible() ? spectrum : nullptr;
  }
  static QString text(QWidget* window, const char* label) {
    return window->findChild<QLabel*>(label)->text();
  }

 private slots:
  void thdRefinesExactlyWhileItIsVisibleHoweverItCloses() {
    MemorySettings settings;
    auto w = test::windowWithDefaultPacket(settings);
    Spectrum* spectrum = openSpectrum(*w);
    QVERIFY(spectrum);
    QAction* item = spectrum->findChild<QAction*>("MeterTHD");
    auto* thd = spectrum->findChild<THDmeter*>("THDmeter");
    QVERIFY(item && thd);
    const SpectrumStage& stage = w->session().spectrum();
    auto open = [&] {
      if (!thd->isVisible()) item->trigger();
      return thd->isVisible() && stage.refinePeak() && stage.engine().Refined;
    };
    auto closed = [&] {
      w->core().replayLastPacket();
      return !thd->isVisible() && !stage.refinePeak() && !stage.engine().Refined;
    };

    QVERIFY(open());
    item->trigger();  // its menu item again
    QVERIFY(closed());
    QVERIFY(open());
    QVERIFY(thd->close());
    QVERIFY(closed());
    QVERIFY(open());
    thd->windowHandle()->close();  // the close box of the window system
    QVERIFY(closed());
    QVERIFY(open());
    thd->hide();
    QVERIFY(closed());

    // Minimised it is still visible, and still reads.
    QVERIFY(open());
    thd->showMinimized();
    QVERIFY(thd->isVisible() && stage.refinePeak());
    thd->showNormal();

    // The spectrum window closed from the main window's menu takes the meter with it, which stores its
    // place; opened again, the spectrum does not refine until the meter is opened.
    thd->move(70, 80);
    w->findChild<QAction*>("MeterFFT")->trigger();
    QVERIFY(!spectrum->isVisible());
    QVERIFY(!thd->isVisible());
    QVERIFY(!stage.refinePeak());
    QCOMPARE(settings.getInt("Meters Positions", "THD Left", -1), thd->x());
    QVERIFY(openSpectrum(*w));
    QVERIFY(closed());
    QVERIFY(open());

    // Esc closes the program, and the meter with its spectrum window.
    w->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(w.get()));
    QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : w.get(), Qt::Key_Escape);
    QVERIFY(!w->isVisible());
    QVERIFY(!thd->isVisible());
    QVERIFY(!stage.refinePeak());
  }

  // A reader that wants Sin(x)/x moves a rectangular window to Hamming in the computation it asks for:
  // one computation an action.
  void eachActionComputesTheSpectrumOnce() {
    MemorySettings settings;
    settings.saveInt("Meters", "InterpolationMaxFind", 1);  // the main meter's Sin(x)/x
    auto w = test::windowWithDefaultPacket(settings);
    Spectrum* spectrum = openSpectrum(*w);
    QVERIFY(spectrum);
    SpectrumStage& stage = w->session().spectrum();
    auto computed = std::make_shared<int>(0);
    stage.onComputed = [computed, draw = stage.onComputed] {
      ++*computed;
      draw();
    };
    auto* window = spectrum->findChild<QComboBox*>("WindowFunction");
    auto choose = [](QComboBox* list, int index) {
      list->setCurrentIndex(index);
      emit list->activated(index);
    };
    choose(window, 0);
    QCOMPARE(*computed, 1);

    spectrum->findChild<QAction*>("MeterTHD")->trigger();
    QCOMPARE(*computed, 2);
    QCOMPARE(window->currentText(), QString("Hamming"));
    choose(window, 0);  // Rectangular again while the THD meter reads
    QCOMPARE(*computed, 3);
    QCOMPARE(window->currentText(), QString("Hamming"));
    w->core().replayLastPacket();
    QCOMPARE(*computed, 4);

    spectrum->findChild<QAction*>("MeterTHD")->trigger();  // closed
    QCOMPARE(*computed, 5);
    choose(window, 0);
    spectrum->findChild<QAction*>("MeterMaxFrq")->trigger();
    QCOMPARE(*computed, 7);
    QCOMPARE(window->currentText(), QString("Hamming"));
    spectrum->findChild<QAction*>("MeterMaxFrq")->trigger();  // closed: nobody wants Sin(x)/x
    choose(window, 0);
    QCOMPARE(*computed, 9);
    QCOMPARE(window->currentText(), QString("Rectangular"));
    choose(spectrum->findChild<QComboBox*>("Interpol1"), 1);
    QCOMPARE(*computed, 10);
    QCOMPARE(window->currentText(), QString("Hamming"));
  }

  // A 5 kHz square of 1 V peak to peak at 50 us/div: its fundamental stands in bin 2, beside the DC bins
  // that the plot leaves out. The meters read it at 5 kHz and 450 mV (-6.9 dBV).
  void aSquareInTheLowestBinsAndTheLevelRow() {
    MemorySettings settings;
    settings.saveInt("Sampling", "TimePerDiv", 14);  // 50 us
    auto w = test::simWindow(settings, "signal=square,freq=5000,vpp=1,rate=max");
    QTest::mouseClick(w->findChild<QPushButton*>("KeyConnect"), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(w->core().sessionState(), SessionState::Ready, 5000);
    QTRY_VERIFY_WITH_TIMEOUT(w->core().PacketCount() >= 1, 20000);
    w->findChild<QCheckBox*>("WorkMode")->click();  // stopped: the last packet stands
    Spectrum* spectrum = openSpectrum(*w);
    QVERIFY(spectrum);
    spectrum->findChild<QAction*>("MeterMaxFrq")->trigger();
    spectrum->findChild<QAction*>("MeterTHD")->trigger();
    auto* main = spectrum->findChild<mainmeter*>("mainmeter");
    auto* thd = spectrum->findChild<THDmeter*>("THDmeter");
    QVERIFY(main && main->isVisible() && thd && thd->isVisible());
    w->core().replayLastPacket();

    QVERIFY2(text(main, "CurValFrq").startsWith("5.00") && text(main, "CurValFrq").endsWith("kHz"),
             qPrintable(text(main, "CurValFrq")));
    const QString amplitude = text(main, "CurVal");
    QVERIFY2(amplitude.endsWith("mV") && qAbs(amplitude.chopped(2).toDouble() - 450) < 5,
             qPrintable(amplitude));
    // The level: its sign, two digits at least and one decimal.
    QCOMPARE(text(main, "CurValDB"), QString("-06.9dBV"));
    QCOMPARE(text(main, "MaxValDB"), QString("-06.9dBV"));
    // THD of the square's lines at multiples of 5 kHz (multiples of 5.375 kHz read 44 %).
    const double percent = text(thd, "CurVal").chopped(1).toDouble();
    QVERIFY2(percent > 45 && percent < 50, qPrintable(text(thd, "CurVal")));

    // Either reset key of the level row resets that row alone.
    for (const char* key : {"KeyResetDB", "KeyResetDBV"}) {
      auto* reset = main->findChild<QToolButton*>(key);
      QVERIFY2(reset, key);
      reset->click();
      for (const char* label : {"CurValDB", "MinValDB", "MaxValDB", "AvgValDB"})
        QVERIFY(text(main, label).isEmpty());
      QVERIFY(!text(main, "CurVal").isEmpty());
      QVERIFY(!text(main, "MaxValFrq").isEmpty());
      w->core().replayLastPacket();
      QCOMPARE(text(main, "MinValDB"), QString("-06.9dBV"));
    }
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT")) {
      main->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".main.png");
      thd->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".thd.png");
    }
  }
};

QTEST_MAIN(SpectrumMetersTest)
#include "spectrum_meters_test.moc"
