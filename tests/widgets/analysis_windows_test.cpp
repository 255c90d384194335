#include <QFileDialog>
#include <QImageReader>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include "analysis/analysis_window.h"
#include "core/messages.h"
#include "spectrum/spectrum_engine.h"
#include "spectrum/spectrum_stage.h"
#include "spectrum/spectrum_window.h"
#include "stat/stat_window.h"
#include "ui/value_plot.h"
#include "window_fixture.h"

using namespace zorvik;
using zorvik::test::onDialog;

namespace {

// Names typed into the next save dialogs, one a dialog.
void saveAs(QStringList paths) {
  auto left = std::make_shared<QStringList>(std::move(paths));
  onDialog([left](QFileDialog* d) {
    if (left->isEmpty()) return;
    d->findChild<QLineEdit*>("fileNameEdit")->setText(left->takeFirst());
    static_cast<QDialog*>(d)->accept();
  });
}

template <typename T>
T* child(QObject* parent, const char* name) {
  T* c = parent->findChild<T*>(name);
  if (!c) qFatal("no %s", name);
  return c;
}

}  // namespace

// The spectrum and histogram windows as the user meets them: opened from the main window's Meters
// menu, set through their own keys and menus.
class AnalysisWindowsTest : public QObject {
  Q_OBJECT

 private slots:
  void theSpectrumZoomsKeepsItsSettingsAndShowsMarkers() {
    MemorySettings settings;
    auto w = test::windowWithDefaultPacket(settings);
    w->findChild<QAction*>("MeterFFT")->trigger();
    auto* spectrum = w->findChild<Spectrum*>("Spectrum");
    QVERIFY(spectrum && spectrum->isVisible());
    AnalysisView& view = spectrum->view();

    child<QToolButton>(spectrum, "Hzoom10")->click();
    QCOMPARE(settings.GetSettingValue("Spectrum", "HorZoom", ""), std::string("10"));
    QCOMPARE(view.hZoom().factor(), 10);
    child<QScrollBar>(spectrum, "HScroll")->setValue(ViewZoom::kMax);
    QCOMPARE(settings.GetSettingValue("Spectrum", "HorZoom 10Poz", ""), std::to_string(ViewZoom::kMax));
    child<QToolButton>(spectrum, "x5Vzoom1")->click();
    QCOMPARE(settings.GetSettingValue("Spectrum", "Vert1Zoom", ""), std::string("5"));
    child<QPushButton>(spectrum, "FullViewKey")->click();
    QCOMPARE(view.hZoom().factor(), 1);
    QCOMPARE(view.vZoom().factor(), 1);
    QCOMPARE(settings.GetSettingValue("Spectrum", "HorZoom", ""), std::string("1"));

    // Styles and the memory go to the window's own section.
    const bool line = view.style().on(StyleKey::Line);
    child<QAction>(spectrum, "Line1")->trigger();
    QCOMPARE(settings.getBool("Spectrum", "Line1"), !line);
    child<QAction>(spectrum, "Fill1Color_2")->trigger();
    QCOMPARE(settings.getInt("Spectrum", "Fill1Color"), 2);
    child<QAction>(spectrum, "InterpolationPoints1_4")->trigger();
    QCOMPARE(settings.getInt("Spectrum", "InterpolationPoints1"), 5);
    QVERIFY(!settings.getBool("Spectrum", "Memory"));
    child<QPushButton>(spectrum, "MemoKey1")->click();
    QCOMPARE(settings.getInt("Spectrum", "Memory"), 1);
    QCOMPARE(settings.getInt("Plot1", "Memory"), 0);  // the main display's memory stays as it was
    child<QAction>(spectrum, "Grid")->trigger();
    QVERIFY(!view.grid());

    // A drag over the plot sets the two markers and reads their distance.
    auto* plot = child<ValuePlot>(spectrum, "SpectrumDisplay");
    QTest::mousePress(plot, Qt::LeftButton, {}, QPoint(100, 100));
    QTest::mouseMove(plot, QPoint(160, 140));
    QMouseEvent drag(QEvent::MouseMove, QPointF(160, 140), plot->mapToGlobal(QPointF(160, 140)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(plot, &drag);
    QVERIFY(view.markers().vertical && view.markers().horizontal);
    QVERIFY(!child<QLabel>(spectrum, "LabelFrq")->text().isEmpty());

    // Closed and opened again (a new start): the place, size and zoom come back.
    spectrum->resize(900, 520);
    child<QToolButton>(spectrum, "Hzoom2")->click();
    w->findChild<QAction*>("MeterFFT")->trigger();
    QCOMPARE(settings.getInt("Spectrum", "Width", 0), 900);
    w.reset();
    auto again = test::windowWithDefaultPacket(settings);
    again->findChild<QAction*>("MeterFFT")->trigger();
    auto* reopened = again->findChild<Spectrum*>("Spectrum");
    QCOMPARE(reopened->width(), 900);
    QCOMPARE(reopened->view().hZoom().factor(), 2);
    QCOMPARE(reopened->view().style()[StyleKey::FillColor], 2);
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      reopened->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".spectrum.png");
  }

  void eachWindowSavesPicturesAndATenFrameAnimation() {
    for (const char* item : {"MeterFFT", "MeterStat"}) {
      MemorySettings settings;
      settings.saveInt("HideQuestWin", "ViewAnimGIF", kAnswerNo);  // no question after the animation
      QTemporaryDir dir;
      auto w = test::windowWithDefaultPacket(settings);
      w->findChild<QAction*>(item)->trigger();
      AnalysisWindow* window = item == std::string("MeterFFT")
                                   ? static_cast<AnalysisWindow*>(w->findChild<Spectrum*>())
                                   : w->findChild<Stat*>();
      QVERIFY(window && window->isVisible());
      const QSize size(PlotGeometry::imageWidth(), PlotGeometry::imageHeight());
      int n = 0;
      for (const char* ext : {"bmp", "gif", "jpg"}) {
        const QString path = dir.filePath(QString("p.%1").arg(ext));
        saveAs({path});
        child<QAction>(window, qPrintable(QString("SaveToBMPGIFJPG_%1").arg(n++)))->trigger();
        QImage read(path);
        QVERIFY2(!read.isNull(), qPrintable(path));
        QCOMPARE(read.size(), size);
      }
      child<QAction>(window, "StartAnimatedRec_2")->trigger();  // "10"
      QVERIFY(window->recorder().recording());
      const QString gif = dir.filePath("a.gif");
      saveAs({gif});
      for (int i = 0; i < 10; ++i) w->core().replayLastPacket();
      QVERIFY(!window->recorder().recording());
      QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(gif), 5000);
      QImageReader reader(gif);
      QCOMPARE(reader.imageCount(), 10);
      QCOMPARE(reader.read().size(), size);
    }
  }

  void theStatWindowDrawsBarsOfItsOwnSection() {
    MemorySettings settings;
    auto w = test::windowWithDefaultPacket(settings);
    w->findChild<QAction*>("MeterStat")->trigger();
    auto* stat = w->findChild<Stat*>("Stat");
    QVERIFY(stat);
    QVERIFY(stat->view().style().on(StyleKey::Fill));
    QVERIFY(!stat->view().style().on(StyleKey::Line));
    child<QAction>(stat, "Line1")->trigger();
    QVERIFY(settings.getBool("Stat", "Line1"));
    QVERIFY(settings.getBool("Spectrum", "Line1"));  // the spectrum's own stays
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      stat->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".stat.png");
  }
};

QTEST_MAIN(AnalysisWindowsTest)
#include "analysis_windows_test.moc"
