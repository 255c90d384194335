#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QtTest>
#include <cmath>
#include <fstream>
#include <sstream>

#include "app/display_menus.h"
#include "cli/render_command.h"
#include "core/recording_sink.h"
#include "display/display_host.h"
#include "display/scope_display_window.h"
#include "export/display_pictures.h"
#include "export/zrv_file.h"
#include "session/main_controller.h"

using namespace zorvik;

namespace {

class NoView : public MainView {};

std::string sinePacket(int samples, double period) {
  std::string p = {char(0x10), char(0), char(0x04), char(0)};
  for (int i = 0; i < samples; ++i)
    p += static_cast<char>(std::lround(128 + 80 * std::sin(2 * M_PI * i / period)));
  return p;
}

// The core as the window has it: controller, display stage, settings.
struct Rig {
  MemorySettings settings;
  RecordingSink sink;
  NoView view;
  MainController main{settings, sink, view};
  ControllerDisplayHost host{main};
  ScopeDisplay display{host, settings, 1000};
  Rig() { main.setStages(&display); }
  void packet(const std::string& p) {
    main.setPacketCount(main.PacketCount() + 1);
    main.ProcessPacket(p);
    main.setLastPacket(p);
  }
};

QAction* action(QMenuBar& bar, const char* menu, const QString& text) {
  for (QMenu* m : bar.findChildren<QMenu*>())
    if (m->objectName() == menu)
      for (QAction* a : m->actions())
        if (a->text() == text) return a;
  return nullptr;
}

int run(const std::vector<std::string>& args, std::string& err) {
  std::ostringstream out, e;
  const int rc = runRenderCommand(args, out, e);
  err = e.str();
  return rc;
}

}  // namespace

class DisplayWidgetTest : public QObject {
  Q_OBJECT

 private slots:
  void windowShowsTheSurfaceWithLabelsAndFollowsItsSize() {
    Rig rig;
    ScopeDisplayWindow w(rig.display);
    w.show();
    QCOMPARE(w.size(), QSize(341, 277));
    rig.packet(sinePacket(330, 40));
    MainState state;
    state.modeText = "Stopped";
    w.showState(state);
    const QImage shown = w.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QImage surface = rig.display.canvas().snapshot();
    // The trace is the surface's; the band over the top carries the texts drawn over it.
    int same = 0, band = 0;
    for (int y = 0; y < 277; ++y)
      for (int x = 0; x < 341; ++x) {
        same += shown.pixel(x, y) == surface.pixel(x, y);
        if (y > 10 && y < 24) band += shown.pixel(x, y) != surface.pixel(x, y);
      }
    QVERIFY(same > 341 * 277 * 9 / 10);
    QVERIFY(band > 50);
    rig.display.settings().zoom = 2;
    rig.display.settings().wide = true;
    rig.display.SetupDisplay();
    QCOMPARE(w.size(), QSize(981, 533));
  }

  void atTwiceThePixelsTheWindowKeepsItsSizeAndPicturesTheirs() {
    Rig rig;
    ScopeDisplayWindow w(rig.display);
    w.show();
    // As on a screen of device pixel ratio 2: the surface is drawn at twice the pixels.
    rig.display.canvas().setScreen(ScreenScale{2, 0, 0});
    rig.display.SetupDisplay();
    QCOMPARE(rig.display.canvas().width(), 681);
    QCOMPARE(w.size(), QSize(341, 277));
    rig.packet(sinePacket(330, 40));
    QCOMPARE(displayPicture(rig.display, rig.display.labels(), true).size(), QSize(341, 277));
    // The mouse reads window pixels into the same logical units.
    QCOMPARE(w.logicalAt(QPoint(170, 138)), QPoint(160, 128));
    QCOMPARE(w.logicalAt(QPoint(10, 10)), QPoint(0, 256));
    // Shown at ratio 1 the drawing is taken down into the same places as the zoom's own picture.
    const QImage shown = w.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QImage plain = displayPicture(rig.display, rig.display.labels(), false);
    int near = 0;
    for (int y = 30; y < 250; ++y)
      for (int x = 20; x < 320; ++x)
        near += std::abs(qGreen(shown.pixel(x, y)) - qGreen(plain.pixel(x, y))) < 96;
    QVERIFY(near > 300 * 220 * 9 / 10);
    // Back at ratio 1 the surface is the zoom's own picture again.
    rig.display.canvas().setScreen(ScreenScale{});
    rig.display.SetupDisplay();
    QCOMPARE(rig.display.canvas().width(), 341);
  }

  void menusStoreTheirSettingAndRedrawByReplay() {
    Rig rig;
    QMenuBar bar;
    int fits = 0;
    buildDisplayMenus(&bar, rig.display, rig.main, [&] { ++fits; });
    rig.packet(sinePacket(330, 40));
    rig.main.setPacketCount(7);

    QAction* wide = action(bar, "DisplayMenu", "Wide");
    QVERIFY(wide);
    wide->trigger();
    QCOMPARE(rig.settings.GetSettingValue("Startup Position", "Wide", ""), std::string("True"));
    QCOMPARE(rig.display.canvas().width(), 501);
    QCOMPARE(fits, 1);
    // The replay drew the last packet on the new surface, the persistence starting again.
    QCOMPARE(rig.main.PacketCount(), 0);
    QVERIFY(!rig.main.ReplotNeeded());
    QVERIFY(rig.display.canvas().snapshot() != rig.display.canvas().picture());

    QAction* lanczos = action(bar, "PlotMenu", "Lanczos");
    QVERIFY(!lanczos);  // inside the Interpolation submenu
    for (QMenu* m : bar.findChildren<QMenu*>())
      if (m->objectName() == "Interpol1")
        for (QAction* a : m->actions())
          if (a->text() == "None") a->trigger();
    QCOMPARE(rig.settings.GetSettingValue("Plot1", "Interpolation", ""), std::string("0"));
    QCOMPARE(rig.display.labels().Ch1InterpTransparant, std::string("None"));

    // Leave single is offered only with a finite depth.
    QMenu* memo = bar.findChild<QMenu*>("MemoMenu");
    QVERIFY(memo);
    for (QMenu* m : bar.findChildren<QMenu*>())
      if (m->objectName() == "MemoDepth1") m->actions().at(0)->trigger();
    QAction* leave = action(bar, "MemoMenu", "Leave single");
    QVERIFY(leave && !leave->isEnabled());
    QCOMPARE(rig.settings.GetSettingValue("Plot1", "Memory Depth", ""), std::string("0"));
  }

  void renderWritesTheSurfaceAsAPicture() {
    QTemporaryDir dir;
    const std::string zrv = dir.filePath("p.zrv").toStdString(), png = dir.filePath("p.png").toStdString();
    const std::string packet = sinePacket(330, 40);
    std::ofstream(zrv, std::ios::binary) << makeZrv(packet, 16);
    std::string err;
    QCOMPARE(
        run({zrv, "--png", png, "--interp", "sinx", "--taps", "32", "--set", "View/GridFore=False"}, err), 0);
    QImage picture(QString::fromStdString(png));
    QCOMPARE(picture.size(), QSize(341, 277));
    // The same picture as the display draws behind the window.
    Rig rig;
    rig.display.settings().interpolation = 2;
    rig.display.settings().gridFore = false;
    rig.display.SetupDisplay();
    {
      RecordScale scale = rig.main.scale();
      scale.SamplesPerDiv = 16;
      rig.main.setScale(scale);
    }
    rig.packet(packet);
    QCOMPARE(picture.convertToFormat(QImage::Format_RGB32), rig.display.canvas().snapshot());

    QCOMPARE(run({zrv, zrv, "--png", png, "--wide", "--zoom", "0", "--persist", "color", "--depth", "8",
                  "--repeat", "3", "--labels", "--hzoom", "2", "--vzoom", "5"},
                 err),
             0);
    QCOMPARE(QImage(QString::fromStdString(png)).size(), QSize(261, 149));

    for (const std::vector<std::string>& bad : {std::vector<std::string>{zrv, "--png", png, "--taps", "48"},
                                                {zrv, "--png", png, "--zoom", "4"},
                                                {zrv, "--png", png, "--interp", "cubic"},
                                                {zrv},
                                                {"/no/such/file", "--png", png},
                                                {zrv, "--png", png, "--set", "Plot1/NoSuch=1"},
                                                {zrv, "--png", png, "--bogus"}}) {
      QCOMPARE(run(bad, err), 2);
      QCOMPARE(std::count(err.begin(), err.end(), '\n'), 1L);
    }
  }
};

QTEST_MAIN(DisplayWidgetTest)
#include "display_test.moc"
