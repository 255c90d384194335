#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>
#include <QWheelEvent>
#include <QtTest>

#include "app/mainwin.h"
#include "display/memo_window.h"
#include "display/scope_display.h"
#include "display/scope_display_window.h"
#include "display/trigger_level_text.h"
#include "display/view_zoom.h"
#include "export/display_pictures.h"
#include "window_fixture.h"

using namespace zorvik;

// The zoom keys and scrolls beside the display, and the display's mouse tools, on the main window with
// the default packet on the screen.
class ZoomTest : public QObject {
  Q_OBJECT

 private:
  std::unique_ptr<mainwin> make() { return test::windowWithDefaultPacket(settings_); }
  static QPoint pixel(mainwin& w, int x, int y) {
    const DisplayGeometry& g = w.display().canvas().geometry();
    return {g.pixelX(x), g.pixelY(y)};
  }
  MemorySettings settings_;

 private slots:
  void horizontalKeysZoomTheViewAndTheScrollPlacesIt() {
    auto w = make();
    QVERIFY(!w->core().LastPacket().empty());
    auto* x5 = w->findChild<QToolButton*>("Hzoom5");
    auto* x2 = w->findChild<QToolButton*>("Hzoom2");
    auto* view = w->findChild<QScrollBar*>("HScrollView");
    QVERIFY(x5 && x2 && view);
    QVERIFY(!view->isEnabled());
    QCOMPARE(view->toolTip(), QString("Full view"));
    const float full = w->display().timeView().TimePerDiv;
    const QImage before = w->display().canvas().snapshot();

    x5->click();
    QVERIFY(x5->isChecked());
    QVERIFY(view->isEnabled());
    QCOMPARE(w->display().inputs().hZoom, 5);
    QCOMPARE(w->display().timeView().TimePerDiv, full / 5);
    QCOMPARE(settings_.GetSettingValue("Hor", "HorZoom", ""), std::string("5"));
    QVERIFY2(w->display().canvas().snapshot() != before, "the packet is drawn again, stretched");
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      w->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".h.png");

    x2->click();  // the other key of the axis goes off
    QVERIFY(!x5->isChecked());
    QCOMPARE(w->display().inputs().hZoom, 2);
    view->setValue(ViewZoom::kMax);  // the left end of the record
    QCOMPARE(w->display().inputs().hViewFrac, 1.0);
    QCOMPARE(settings_.GetSettingValue("Hor", "HorZoom 2Poz", ""), std::string("1000"));
    x2->click();
    QCOMPARE(w->display().inputs().hZoom, 1);
    QCOMPARE(settings_.GetSettingValue("Hor", "HorZoom", ""), std::string("1"));
    QCOMPARE(w->display().canvas().snapshot(), before);

    // A position faster than real sampling without RIS stands on the keys, and leaves them on the way up.
    w->control().timebase().EnableRIS_Click(false);
    w->control().timebase().ScrollTimeDiv_Change(5);
    QVERIFY(x5->isChecked());
    QCOMPARE(w->display().inputs().hZoom, 5);
    w->control().timebase().ScrollTimeDiv_Change(8);
    QVERIFY(!x5->isChecked());
    QCOMPARE(w->display().inputs().hZoom, 1);
    QCOMPARE(settings_.GetSettingValue("Hor", "HorZoom", ""), std::string("1"));
  }

  void verticalKeysScaleTheChannelAndTheMarkerFollows() {
    auto w = make();
    const float full = w->control().channel().model().ZoomVoltPerDiv;
    auto* x2 = w->findChild<QToolButton*>("x2Vzoom1");
    QVERIFY(x2);
    QCOMPARE(x2->toolTip(), QString("two times vert expand"));
    x2->click();
    QCOMPARE(w->control().channel().model().ZoomVoltPerDiv, full / 2);
    QCOMPARE(w->display().inputs().vZoom, 2.0f);
    QCOMPARE(settings_.GetSettingValue("Ch1", "VertZoom", ""), std::string("2"));
    x2->click();
    QCOMPARE(w->control().channel().model().ZoomVoltPerDiv, full);
  }

  void mouseMarkersAndTheSelectionsZoom() {
    auto w = make();
    auto* display = w->findChild<ScopeDisplayWindow*>("Display");
    QVERIFY(display);
    QTest::mousePress(display, Qt::LeftButton, {}, pixel(*w, 100, 128));
    QTest::mouseMove(display, pixel(*w, 164, 128));
    QVERIFY(display->mouse().vertical().visible);
    QVERIFY(!display->mouse().horizontal().visible);
    QTest::mouseRelease(display, Qt::LeftButton, {}, pixel(*w, 164, 128));

    // A selection a sixth of the width and half the height, right of the middle and in the top half.
    bool offered = false;
    QTimer::singleShot(50, [&] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (!menu) return;
      offered = menu->objectName() == "SelRectMenu";
      for (QAction* a : menu->actions())
        if (a->objectName() == "SelRectOperation0") a->trigger();
      menu->close();
    });
    QTest::mousePress(display, Qt::RightButton, {}, pixel(*w, 180, 250));
    QTest::mouseMove(display, pixel(*w, 200, 200));
    QTest::mouseMove(display, pixel(*w, 233, 122));
    QTest::mouseRelease(display, Qt::RightButton, {}, pixel(*w, 233, 122));
    QVERIFY(offered);
    QCOMPARE(w->display().inputs().hZoom, 5);  // 320 / 53 reaches 5
    QCOMPARE(w->display().inputs().vZoom, 2.0f);
    QVERIFY(w->display().inputs().hViewFrac < 0);  // right of the middle
    QVERIFY(w->display().inputs().vViewFrac > 0);  // above it
    QVERIFY(!display->mouse().selection().visible);
    QTest::mousePress(display, Qt::LeftButton, {}, pixel(*w, 100, 100));
    QTest::mouseMove(display, pixel(*w, 200, 60));
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      w->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT"));
  }

  void selectionCopiesGoToMemoWindows() {
    auto w = make();
    auto* display = w->findChild<ScopeDisplayWindow*>("Display");
    QTimer::singleShot(50, [&] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (!menu) return;
      for (QAction* a : menu->actions())
        if (a->objectName() == "SelRectOperation2") a->trigger();  // magn x2
      menu->close();
    });
    QTest::mousePress(display, Qt::RightButton, {}, pixel(*w, 100, 200));
    QTest::mouseMove(display, pixel(*w, 140, 150));
    QTest::mouseRelease(display, Qt::RightButton, {}, pixel(*w, 140, 150));
    auto memos = w->findChildren<memowin*>("memowin");
    QCOMPARE(memos.size(), 1);
    // 40 units by 50 rows are 40 x 50 pixels at zoom 1 (and one more of the edge), doubled.
    QCOMPARE(memos[0]->picture().size(), QSize(82, 102));

    w->findChild<QAction*>("OpenBitmapInNewWin")->trigger();
    memos = w->findChildren<memowin*>("memowin");
    QCOMPARE(memos.size(), 2);
    memowin* whole = memos[1]->picture().width() == 341 ? memos[1] : memos[0];
    QCOMPARE(whole->picture().size(), QSize(341, 277));
    QCOMPARE(whole->pictureToSave().size(), QSize(341, 277));  // no comment shown
    whole->AddComment_Click();
    QVERIFY(whole->commentShown());
    whole->findChild<QLineEdit*>("PictureComment")->setText("ringing at the edge");
    QVERIFY(whole->pictureToSave().height() > 277);
    whole->AddComment_Click();
    QCOMPARE(whole->pictureToSave().size(), QSize(341, 277));
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      memos[0]->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".memo.png");
  }

  void wheelStepsTheZoomKeysAndScrollsTheView() {
    auto w = make();
    auto* display = w->findChild<ScopeDisplayWindow*>("Display");
    auto* view = w->findChild<QScrollBar*>("HScrollView");
    QVERIFY(display && view);
    const QPointF at = pixel(*w, 160, 128);
    auto wheel = [&](int delta, Qt::KeyboardModifiers modifiers = {}) {
      QWheelEvent e(at, display->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, modifiers,
                    Qt::NoScrollPhase, false);
      QApplication::sendEvent(display, &e);
    };
    for (auto* key : w->findChildren<QToolButton*>())  // from no zoom, whatever an earlier test left
      if (key->isChecked() && key->objectName().contains("zoom")) key->click();
    QCOMPARE(w->display().inputs().hZoom, 1);
    wheel(120);
    QCOMPARE(w->display().inputs().hZoom, 2);
    QVERIFY(w->findChild<QToolButton*>("Hzoom2")->isChecked());
    QCOMPARE(settings_.GetSettingValue("Hor", "HorZoom", ""), std::string("2"));
    wheel(60);  // half a notch waits for the other half
    QCOMPARE(w->display().inputs().hZoom, 2);
    wheel(60);
    QCOMPARE(w->display().inputs().hZoom, 4);
    wheel(5 * 120);  // stops at the largest key
    QCOMPARE(w->display().inputs().hZoom, 10);

    // With Control the zoomed view moves, towards later times away from the user.
    QVERIFY(view->isEnabled());
    const int before = view->value();
    wheel(120, Qt::ControlModifier);
    QVERIFY(view->value() < before);
    QCOMPARE(w->display().inputs().hViewFrac, static_cast<double>(view->value()) / ViewZoom::kMax);

    // With Shift the vertical keys; turning back past the smallest key leaves no zoom.
    wheel(120, Qt::ShiftModifier);
    QCOMPARE(w->display().inputs().vZoom, 2.0f);
    QVERIFY(w->findChild<QToolButton*>("x2Vzoom1")->isChecked());
    wheel(-240, Qt::ShiftModifier);
    QCOMPARE(w->display().inputs().vZoom, 1.0f);
    QVERIFY(!w->findChild<QToolButton*>("x2Vzoom1")->isChecked());
    wheel(-10 * 120);
    QCOMPARE(w->display().inputs().hZoom, 1);
    QVERIFY(!view->isEnabled());
    wheel(-120, Qt::ControlModifier);  // nothing to scroll without a zoom
    QCOMPARE(w->display().inputs().hZoom, 1);
  }

  void fitToWindowGrowsWithTheWindowAndSavesTheZoomsSize() {
    auto w = make();
    auto* display = w->findChild<ScopeDisplayWindow*>("Display");
    auto* fit = w->findChild<QAction*>("FitToWindow");
    QVERIFY(display && fit);
    QVERIFY(!fit->isChecked());
    fit->trigger();
    QVERIFY(display->fitToWindow());
    QCOMPARE(w->display().canvas().geometry().halfScale(), 2);  // nothing to grow into yet

    w->resize(w->size() + QSize(700, 560));
    QTRY_VERIFY(w->display().canvas().geometry().halfScale() >= 4);
    const DisplayGeometry& g = w->display().canvas().geometry();
    QCOMPARE(display->sizeHint(), QSize(g.pictureWidth(), g.pictureHeight()));
    QTRY_COMPARE(display->size(), display->sizeHint());
    QCOMPARE(w->findChild<QWidget*>("TrigInd1")->height(), g.pictureHeight());
    // The last packet is drawn again at the new size, and the labels' font grew with it.
    QVERIFY(w->display().canvas().snapshot() != w->display().canvas().picture());
    // Saved and shown pictures keep the stored zoom's size.
    QCOMPARE(settings_.GetSettingValue("Startup Position", "Zoom", "1"), std::string("1"));
    QCOMPARE(displayPicture(w->display(), w->display().labels(), true).size(), QSize(341, 277));
    // The mouse reads the same logical units at the fitted scale.
    QCOMPARE(display->logicalAt(QPoint(g.pixelX(100), g.pixelY(64))), QPoint(100, 64));
    if (!qEnvironmentVariableIsEmpty("ZORVIK_SCREENSHOT"))
      w->grab().save(qEnvironmentVariable("ZORVIK_SCREENSHOT") + ".fit.png");

    // Smaller again, the display gives the room back.
    w->resize(w->size() - QSize(500, 400));
    QTRY_VERIFY(w->display().canvas().geometry().halfScale() < 4);

    // A stored zoom ends fitting: the display takes that zoom's size at once.
    for (QMenu* m : w->findChildren<QMenu*>())
      if (m->objectName() == "Zoom")
        for (QAction* a : m->actions())
          if (a->text() == "x2") a->trigger();
    QVERIFY(!display->fitToWindow());
    QVERIFY(!fit->isChecked());
    QCOMPARE(display->size(), QSize(661, 533));
    QCOMPARE(w->display().canvas().geometry().zoomIndex, 2);
  }

  void triggerLevelReadsInVoltsBesideItsMarker() {
    auto w = make();
    auto* display = w->findChild<ScopeDisplayWindow*>("Display");
    const int row = w->display().inputs().triggerLevelRow;
    QVERIFY(row >= 0 && row <= kTraceRows);
    QVERIFY(!triggerLevelText(w->display().inputs()).empty());
    // Yellow text against the right edge near the level's line, on the screen only.
    const QImage shown = display->grab().toImage();
    const DisplayGeometry& g = w->display().canvas().geometry();
    const int y = g.pixelY(row);
    int yellow = 0;
    for (int x = g.pixelX(w->display().plotWidth()) - 60; x < g.pixelX(w->display().plotWidth()); ++x)
      for (int dy = -16; dy <= 16; ++dy)
        if (y + dy > g.pixelY(kTraceRows) && y + dy < g.pixelY(0) && dy != 0) {
          const QRgb c = shown.pixel(x, y + dy);
          yellow += qRed(c) > 150 && qGreen(c) > 150 && qBlue(c) < 80;
        }
    QVERIFY(yellow > 10);
    const QImage saved = displayPicture(w->display(), w->display().labels(), true);
    int savedYellow = 0;
    for (int x = g.pixelX(w->display().plotWidth()) - 60; x < g.pixelX(w->display().plotWidth()); ++x)
      for (int dy = -16; dy <= 16; ++dy)
        if (y + dy > g.pixelY(kTraceRows) && y + dy < g.pixelY(0) && dy != 0) {
          const QRgb c = saved.pixel(x, y + dy);
          savedYellow += qRed(c) > 150 && qGreen(c) > 150 && qBlue(c) < 80;
        }
    QCOMPARE(savedYellow, 0);
  }
};

QTEST_MAIN(ZoomTest)
#include "zoom_test.moc"
