#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QtTest>

#include "core/recording_sink.h"
#include "export/packet_files.h"
#include "export/scripted_file_dialogs.h"
#include "measure/main_meter_window.h"
#include "measure/thd_window.h"
#include "spectrum/spectrum_stage.h"
#include "spectrum/spectrum_window.h"
#include "stat/stat_stage.h"
#include "stat/stat_window.h"
#include "window_fixture.h"

using namespace zorvik;

// The spectrum window opened from the Meters menu, on the default packet.
class SpectrumTest : public QObject {
  Q_OBJECT

 private:
  MemorySettings settings_;

 private slots:
  void spectralOpensTheWindowWhichShowsTheLastPacket() {
    auto w = test::windowWithDefaultPacket(settings_);
    QAction* item = w->findChild<QAction*>("MeterFFT");
    QVERIFY(item);
    item->trigger();
    auto* spectrum = w->findChild<Spectrum*>("Spectrum");
    QVERIFY(spectrum && spectrum->isVisible());
    QVERIFY(item->isChecked());
    QCOMPARE(settings_.GetSettingValue("Spectrum", "Visible", ""), std::string("True"));
    // Drawn within a frame of the screen.
    QTRY_VERIFY2(!spectrum->findChild<QLabel*>("SpectrumPeak")->text().isEmpty(),
                 "the peak of the default packet");
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      spectrum->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT"));

    // dB replots the same computation; an interpolated plot leaves the rectangular window for Hamming.
    spectrum->findChild<QRadioButton*>("TypeAmp_1")->click();
    QVERIFY(spectrum->plotSettings().dB);
    QCOMPARE(settings_.GetSettingValue("Spectrum", "VertScale", ""), std::string("1"));
    auto* interp = spectrum->findChild<QComboBox*>("Interpol1");
    interp->setCurrentIndex(1);
    emit interp->activated(1);
    QCOMPARE(spectrum->findChild<QComboBox*>("WindowFunction")->currentText(), QString("Hamming"));
    QCOMPARE(settings_.GetSettingValue("Spectrum", "Window function", ""), std::string("1"));

    item->trigger();  // closes it
    QVERIFY(!spectrum->isVisible());
    QCOMPARE(settings_.GetSettingValue("Spectrum", "Visible", ""), std::string("False"));
  }

  void mainMeterAndThdReadTheSpectrum() {
    auto w = test::windowWithDefaultPacket(settings_);
    w->findChild<QAction*>("MeterFFT")->trigger();
    auto* spectrum = w->findChild<Spectrum*>("Spectrum");
    QVERIFY(spectrum);
    spectrum->findChild<QAction*>("MeterMaxFrq")->trigger();
    auto* main = spectrum->findChild<mainmeter*>("mainmeter");
    QVERIFY(main && main->isVisible());
    const QString amplitude = main->findChild<QLabel*>("CurVal")->text();
    QVERIFY2(amplitude.endsWith("V") && !amplitude.startsWith("No"), qPrintable(amplitude));
    QVERIFY(main->findChild<QLabel*>("CurValFrq")->text().endsWith("Hz"));

    spectrum->findChild<QAction*>("MeterTHD")->trigger();
    auto* thd = spectrum->findChild<THDmeter*>("THDmeter");
    QVERIFY(thd && thd->isVisible());
    // Opening it moves the window to Hamming before its first spectrum.
    QCOMPARE(spectrum->findChild<QComboBox*>("WindowFunction")->currentText(), QString("Hamming"));
    w->core().replayLastPacket();
    QVERIFY2(thd->findChild<QLabel*>("CurVal")->text().endsWith("%"),
             qPrintable(thd->findChild<QLabel*>("CurVal")->text()));
    thd->findChild<QLineEdit*>("MaxHarm")->setText("30");
    thd->findChild<QCheckBox*>("HarmList")->setChecked(true);
    w->core().replayLastPacket();
    QTRY_COMPARE(thd->findChild<QLineEdit*>("MaxHarm")->text(), QString("25"));
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT")) {
      main->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".main.png");
      thd->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".thd.png");
    }
  }

  void thdClosedByItsCloseBoxNoLongerRefinesThePeak() {
    settings_.saveBool("Spectrum", "Visible", false);
    auto w = test::windowWithDefaultPacket(settings_);
    w->findChild<QAction*>("MeterFFT")->trigger();
    auto* spectrum = w->findChild<Spectrum*>("Spectrum");
    QVERIFY(spectrum && spectrum->isVisible());
    spectrum->findChild<QAction*>("MeterTHD")->trigger();
    auto* thd = spectrum->findChild<THDmeter*>("THDmeter");
    QVERIFY(thd && thd->isVisible());
    QVERIFY(spectrum->stage().engine().Refined);

    QVERIFY(thd->close());
    w->core().replayLastPacket();
    QVERIFY(!spectrum->stage().engine().Refined);

    spectrum->findChild<QAction*>("MeterTHD")->trigger();  // the menu item opens it again
    QVERIFY(thd->isVisible());
    QVERIFY(spectrum->stage().engine().Refined);
  }

  void staisticShowsTheHistogramInSamplesOrPercent() {
    auto w = test::windowWithDefaultPacket(settings_);
    QAction* item = w->findChild<QAction*>("MeterStat");
    QVERIFY(item);
    item->trigger();
    auto* stat = w->findChild<Stat*>("Stat");
    QVERIFY(stat && stat->isVisible());
    auto* peak = stat->findChild<QLabel*>("StatPeak");
    QTRY_VERIFY2(peak->text().endsWith("smp"), qPrintable(peak->text()));
    stat->findChild<QRadioButton*>("TypeAmp_1")->click();
    QVERIFY(stat->percent());
    QVERIFY2(peak->text().endsWith("%"), qPrintable(peak->text()));
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      stat->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".stat.png");
    item->trigger();
    QVERIFY(!stat->isVisible());
    QCOMPARE(settings_.GetSettingValue("Stat", "Visible", ""), std::string("False"));
  }

  // The window's CSV writes each count with its leading blank, as the packet CSV does.
  void statCsvHasTheLeadingBlanks() {
    QTemporaryDir dir;
    const std::string path = dir.filePath("h.csv").toStdString();
    RecordingSink sink;
    MainView view;
    MainController main(settings_, sink, view);
    ScriptedFileDialogs dialogs({path});
    PacketFiles files(main, dialogs);
    StatStage stage([] { return StatStage::Scale{}; });
    stage.visible = [] { return true; };
    const std::string samples = std::string(3, '\x00') + std::string(5, '\x07');
    stage.stat(SegmentData{samples});
    Stat stat(settings_, stage, files, main, dialogs);
    QAction* save = stat.findChild<QAction*>("SaveToCSV");
    QVERIFY(save);
    save->trigger();
    QFile file(QString::fromStdString(path));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray csv = file.readAll();
    QVERIFY2(csv.startsWith(" 3\r 0\r 0\r 0\r 0\r 0\r 0\r 5\r 0\r"), csv.left(40).constData());
    QCOMPARE(csv.count('\r'), 257);  // 256 counts, then the closing CR LF
    QVERIFY(csv.endsWith(" 0\r\r\n"));
  }

  void anOpenSpectrumComesBackAtStart() {
    settings_.saveBool("Spectrum", "Visible", true);
    auto w = test::windowWithDefaultPacket(settings_);
    auto* spectrum = w->findChild<Spectrum*>("Spectrum");
    QVERIFY(spectrum && spectrum->isVisible());
    QVERIFY(w->close());
    QCOMPARE(settings_.GetSettingValue("Spectrum", "Visible", ""), std::string("True"));
  }
};

QTEST_MAIN(SpectrumTest)
#include "spectrum_test.moc"
