#include "app/display_menus.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>
#include <utility>
#include <vector>

#include "app/trigger_marker.h"
#include "display/scope_display.h"
#include "display/scope_display_window.h"
#include "session/main_controller.h"

namespace zorvik {

namespace {

enum class Effect { Replot, Setup, Labels };

using Items = std::vector<std::pair<const char*, int>>;

const Items kColourItems = {{"Red", 1},     {"Green", 2}, {"Yellow", 3}, {"Blue", 4},
                            {"Magenta", 5}, {"Cyan", 6},  {"White", 7}};
const Items kBackItems = {
    {"Black", 0}, {"Dark blue", 0x400000}, {"Dark green", 0x004000}, {"Dark grey", 0x404040}};
const Items kSizeItems = {{"3", 3}, {"4", 4}, {"5", 5}, {"6", 6}, {"7", 7}, {"8", 8}, {"9", 9}};
const Items kWidthItems = {{"1", 1}, {"2", 2}, {"3", 3}, {"4", 4}};
// DispShowTime: the time a packet of a parallel transfer stays on the screen, in ms; 0 draws none.
const int kShowTimes[10] = {0, 1, 2, 5, 10, 20, 50, 100, 200, 500};

// Binds menu items to the display's settings and keeps their marks in step with them.
class DisplayMenus : public QObject {
 public:
  DisplayMenus(QObject* parent, ScopeDisplay& display, MainController& main, std::function<void()> geometry)
      : QObject(parent), d_(display), main_(main), geometry_(std::move(geometry)) {}

  void build(QMenu* plot, QMenu* memo, QMenu* view);
  void sync() {
    for (auto& s : syncs_) s();
  }

 private:
  DisplaySettings& s() { return d_.settings(); }
  void changed(const char* name, Effect effect);
  QAction* check(QMenu* menu, const char* caption, const char* object, bool DisplaySettings::*field,
                 const char* setting, Effect effect);
  QMenu* choice(QMenu* menu, const char* caption, const char* object, const Items& items,
                int DisplaySettings::*field, const char* setting, Effect effect);
  // A per-zoom value: the item of the present zoom.
  QMenu* zoomChoice(QMenu* menu, const char* caption, const char* object, const Items& items,
                    std::array<int, kZoomCount> DisplaySettings::*field, const char* setting);
  void emphasisMenu(QMenu* menu);
  void showTimeMenu(QMenu* menu);
  void zoomMenu(QMenu* menu);
  // The display on the window that holds the menus; none before it is built.
  ScopeDisplayWindow* displayWindow() const;
  void setFit(bool on);

  ScopeDisplay& d_;
  MainController& main_;
  std::function<void()> geometry_;
  std::vector<std::function<void()>> syncs_;
};

void DisplayMenus::changed(const char* name, Effect effect) {
  if (name) d_.saveSetting(name);
  if (effect == Effect::Setup) {
    d_.SetupDisplay();
    if (geometry_) geometry_();
  }
  if (effect == Effect::Labels) {
    if (d_.onPainted) d_.onPainted();
    sync();
    return;
  }
  // A setting that changes the picture starts the persistence again and draws the last packet anew.
  d_.ClearIntensity();
  main_.setReplotNeeded(true);
  main_.replayLastPacket();
  sync();
}

QAction* DisplayMenus::check(QMenu* menu, const char* caption, const char* object,
                             bool DisplaySettings::*field, const char* setting, Effect effect) {
  QAction* a = menu->addAction(caption);
  a->setObjectName(object);
  a->setCheckable(true);
  connect(a, &QAction::triggered, this, [this, field, setting, effect](bool on) {
    s().*field = on;
    changed(setting, effect);
  });
  syncs_.push_back([this, a, field] { a->setChecked(s().*field); });
  return a;
}

QMenu* DisplayMenus::choice(QMenu* menu, const char* caption, const char* object, const Items& items,
                            int DisplaySettings::*field, const char* setting, Effect effect) {
  QMenu* sub = menu->addMenu(caption);
  sub->setObjectName(object);
  auto* group = new QActionGroup(sub);
  for (const auto& [text, value] : items) {
    QAction* a = sub->addAction(text);
    a->setCheckable(true);
    group->addAction(a);
    const int v = value;
    connect(a, &QAction::triggered, this, [this, field, v, setting, effect] {
      s().*field = v;
      changed(setting, effect);
    });
    syncs_.push_back([this, a, field, v] { a->setChecked(s().*field == v); });
  }
  return sub;
}

QMenu* DisplayMenus::zoomChoice(QMenu* menu, const char* caption, const char* object, const Items& items,
                                std::array<int, kZoomCount> DisplaySettings::*field, const char* setting) {
  QMenu* sub = menu->addMenu(caption);
  sub->setObjectName(object);
  auto* group = new QActionGroup(sub);
  for (const auto& [text, value] : items) {
    QAction* a = sub->addAction(text);
    a->setCheckable(true);
    group->addAction(a);
    const int v = value;
    connect(a, &QAction::triggered, this, [this, field, v, setting] {
      (s().*field)[static_cast<size_t>(normalizeZoomIndex(s().zoom))] = v;
      changed(setting, Effect::Replot);
    });
    syncs_.push_back([this, a, field, v] {
      a->setChecked((s().*field)[static_cast<size_t>(normalizeZoomIndex(s().zoom))] == v);
    });
  }
  return sub;
}

void DisplayMenus::emphasisMenu(QMenu* menu) {
  // Emphasize1 is kept per grading: "Emphasize Intens" with Intencity, "Emphasize Color" with Color.
  QMenu* sub = menu->addMenu("Emphasize");
  sub->setObjectName("Emphasize1");
  auto* group = new QActionGroup(sub);
  for (int e = 0; e <= 5; ++e) {
    QAction* a = sub->addAction(QString("%1%").arg(e * 20));
    a->setCheckable(true);
    group->addAction(a);
    connect(a, &QAction::triggered, this, [this, e] {
      const bool intens = s().memoMode == 1;
      (intens ? s().emphasizeIntens : s().emphasizeColor) = e;
      changed(intens ? "Emphasize Intens" : "Emphasize Color", Effect::Replot);
    });
    syncs_.push_back([this, a, e] { a->setChecked(s().emphasis() == e); });
  }
}

void DisplayMenus::showTimeMenu(QMenu* menu) {
  QMenu* sub = menu->addMenu("Show time");
  sub->setObjectName("DispShowTime");
  auto* group = new QActionGroup(sub);
  for (int i = 0; i < 10; ++i) {
    QAction* a = sub->addAction(i == 0 ? QString("No plot") : QString("%1 ms").arg(kShowTimes[i]));
    a->setCheckable(true);
    group->addAction(a);
    connect(a, &QAction::triggered, this, [this, i] {
      s().showTime = i;
      d_.saveSetting("ShowTime");
      main_.setShowTimeMs(kShowTimes[i]);
      if (main_.link()) main_.link()->SetShowTime(kShowTimes[i]);
      sync();
    });
    syncs_.push_back([this, a, i] { a->setChecked(s().showTime == i); });
  }
}

ScopeDisplayWindow* DisplayMenus::displayWindow() const {
  auto* owner = qobject_cast<QWidget*>(parent());
  return owner ? owner->window()->findChild<ScopeDisplayWindow*>() : nullptr;
}

void DisplayMenus::setFit(bool on) {
  ScopeDisplayWindow* w = displayWindow();
  if (!w) return;
  // Laid out anew for the room, the display draws the last packet again as after any new size, and the
  // strips beside it follow its size (the window keeps the size the user gave it).
  w->onRescaled = [this, w] {
    d_.ClearIntensity();
    main_.setReplotNeeded(true);
    main_.replayLastPacket();
    QWidget* top = w->window();
    if (auto* marker = top->findChild<TriggerMarker*>()) marker->refresh();
    // At most the display's size, so that they never hold the window at the display's present size.
    if (auto* bar = top->findChild<QWidget*>("HorZoomBar")) {
      bar->setMinimumWidth(w->minimumSizeHint().width());
      bar->setMaximumWidth(w->sizeHint().width());
    }
    if (auto* bar = top->findChild<QWidget*>("VertZoomBar")) {
      bar->setSizePolicy(bar->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);  // up to its maximum
      bar->setMinimumHeight(w->minimumSizeHint().height());
      bar->setMaximumHeight(w->sizeHint().height());
    }
  };
  w->setFitToWindow(on);
}

void DisplayMenus::zoomMenu(QMenu* menu) {
  // The stored zooms, and "Fit to window", which keeps the stored zoom for the saved pictures.
  QMenu* sub = menu->addMenu("Zoom");
  sub->setObjectName("Zoom");
  auto* group = new QActionGroup(sub);
  const Items zooms = {{"x0.5", 0}, {"x1", 1}, {"x2", 2}, {"x3", 3}};
  for (const auto& [text, value] : zooms) {
    QAction* a = sub->addAction(text);
    a->setCheckable(true);
    group->addAction(a);
    const int v = value;
    connect(a, &QAction::triggered, this, [this, v] {
      setFit(false);
      s().zoom = v;
      changed("Zoom", Effect::Setup);
    });
    syncs_.push_back([this, a, v] {
      const ScopeDisplayWindow* w = displayWindow();
      a->setChecked(s().zoom == v && !(w && w->fitToWindow()));
    });
  }
  sub->addSeparator();
  QAction* fit = sub->addAction("Fit to window");
  fit->setObjectName("FitToWindow");
  fit->setCheckable(true);
  group->addAction(fit);
  connect(fit, &QAction::triggered, this, [this] {
    setFit(true);
    if (geometry_) geometry_();
    sync();
  });
  syncs_.push_back([this, fit] {
    const ScopeDisplayWindow* w = displayWindow();
    fit->setChecked(w && w->fitToWindow());
  });
}

void DisplayMenus::build(QMenu* plot, QMenu* memo, QMenu* view) {
  using S = DisplaySettings;
  check(plot, "Line", "linePlot1", &S::linePlot, "Line", Effect::Replot);
  check(plot, "Points", "PsetPlot1", &S::psetPlot, "Pixel", Effect::Replot);
  check(plot, "Variable brightness", "VarBrightLine1", &S::varBright, "VarBrght", Effect::Replot);
  check(plot, "RIS rainbow", "RISrainbow", &S::risRainbow, nullptr, Effect::Replot);
  choice(plot, "Line color", "ColorLine1", kColourItems, &S::lineColor, "LineColor", Effect::Replot);
  choice(plot, "Point color", "ColorPset1", kColourItems, &S::pixelColor, "PixelColor", Effect::Replot);
  choice(plot, "Peak color", "ColorPeak1", kColourItems, &S::peakColor, "PeakColor", Effect::Replot);
  zoomChoice(plot, "Line width", "LineWidth1", kWidthItems, &S::lineWidth, "LineWidth");
  zoomChoice(plot, "Peak width", "PeakWidth1", kWidthItems, &S::peakWidth, "PeakWidth");
  plot->addSeparator();
  choice(plot, "Interpolation", "Interpol1",
         {{"None", 0}, {"Line", 1}, {"Sin(x)/x", 2}, {"Lanczos", 3}, {"Lagrange", 4}}, &S::interpolation,
         "Interpolation", Effect::Replot);
  choice(plot, "Interpolation points", "InterPoint1",
         {{"2", 1}, {"4", 2}, {"8", 3}, {"16", 4}, {"32", 5}, {"64", 6}, {"128", 7}, {"256", 8}},
         &S::interpolationPoints, "InterpolationPoints", Effect::Replot);
  check(plot, "Peak decimation", "PeakDecimation1", &S::peakDecimation, "PeakDecimation", Effect::Replot);
  choice(plot, "Peak interpolation", "Pinterpol1", {{"CopyMin", 0}, {"LineMax", 1}}, &S::peakInterpolation,
         "PeakInterpolation", Effect::Replot);
  zoomChoice(plot, "Plot speed", "PlotSpeed1",
             {{kPlotSpeedItems[1], 1}, {kPlotSpeedItems[2], 2}, {kPlotSpeedItems[3], 3}}, &S::speed, "Speed");

  QAction* memoKey = memo->addAction("Memory on");
  memoKey->setObjectName("MemoKey1");
  memoKey->setCheckable(true);
  connect(memoKey, &QAction::triggered, this, [this](bool on) {
    s().memory = on ? 1 : 0;
    changed("Memory", Effect::Replot);
  });
  syncs_.push_back([this, memoKey] { memoKey->setChecked(s().memory == 1); });
  // Intencity and Color exclude each other; unchecking the one that is on leaves no grading.
  const std::pair<const char*, const char*> gradings[2] = {{"Intencity", "Brightness1"},
                                                           {"Color", "Rainbow1"}};
  for (int mode = 1; mode <= 2; ++mode) {
    QAction* a = memo->addAction(gradings[mode - 1].first);
    a->setObjectName(gradings[mode - 1].second);
    a->setCheckable(true);
    connect(a, &QAction::triggered, this, [this, mode](bool on) {
      s().memoMode = on ? mode : 0;
      changed("MemoMode", Effect::Replot);
    });
    syncs_.push_back([this, a, mode] { a->setChecked(s().memoMode == mode); });
  }
  choice(memo, "Depth", "MemoDepth1", {{"Infinite", 0}, {"128", 1}, {"32", 2}, {"8 (fast)", 3}},
         &S::memoryDepth, "Memory Depth", Effect::Replot);
  choice(memo, "Acquisitions per plot", "AcqPerPlot1", {{"each acq", 0}, {"/2", 1}, {"/5", 2}, {"/10", 3}},
         &S::acqPerPlot, "AcqPerPlot", Effect::Replot);
  emphasisMenu(memo);
  check(memo, "Invert colors", "InvertColorIntenc1", &S::emphasizeInvert, "Emphasize invert", Effect::Replot);
  QAction* leave =
      check(memo, "Leave single", "LeaveSingle1", &S::leaveSingle, "Leave Single", Effect::Replot);
  syncs_.push_back([this, leave] { leave->setEnabled(s().leaveSingleEnabled()); });
  check(memo, "By bitmap", "BitmapPlot1", &S::byBitmap, "By bitmap", Effect::Replot);

  zoomMenu(view);
  check(view, "Wide", "Wide", &S::wide, "Wide", Effect::Setup);
  check(view, "Grid", "GridVisible", &S::gridVisible, "GridVisible", Effect::Setup);
  check(view, "Grid in front", "GridFore", &S::gridFore, "GridFore", Effect::Setup);
  choice(view, "Background", "DispBackColor", kBackItems, &S::backColor, "Color", Effect::Setup);
  view->addSeparator();
  check(view, "Vertical labels", "VertLabels", &S::vertLabels, "Vert.labels", Effect::Labels);
  choice(view, "Vertical label size", "VertLabelSize", kSizeItems, &S::vertLabelSize, "Vert.lab.font size ",
         Effect::Labels);
  check(view, "Horizontal labels", "HorLabels", &S::horLabels, "Hor.labels", Effect::Labels);
  choice(view, "Horizontal label size", "HorLabelSize", kSizeItems, &S::horLabelSize, "Hor.lab.font size ",
         Effect::Labels);
  check(view, "Null line", "NullLine", &S::nullLine, "NulLevelLine", Effect::Labels);
  check(view, "Trigger level line", "SyncroLine", &S::syncroLine, "TrigLevelLine", Effect::Labels);
  showTimeMenu(view);

  for (QMenu* m : {plot, memo, view}) connect(m, &QMenu::aboutToShow, this, [this] { sync(); });
  sync();
}

template <typename Parent>
void buildInto(Parent* parent, ScopeDisplay& display, MainController& main, std::function<void()> geometry) {
  QMenu* plot = parent->addMenu("&Plot");
  plot->setObjectName("PlotMenu");
  QMenu* memo = parent->addMenu("Memo (DPO) mode:");
  memo->setObjectName("MemoMenu");
  QMenu* view = parent->addMenu("Di&splay");
  view->setObjectName("DisplayMenu");
  auto* menus = new DisplayMenus(parent, display, main, std::move(geometry));
  menus->build(plot, memo, view);
}

}  // namespace

void buildDisplayMenus(QMenuBar* bar, ScopeDisplay& display, MainController& main,
                       std::function<void()> geometryChanged) {
  buildInto(bar, display, main, std::move(geometryChanged));
}

void buildDisplayMenus(QMenu* parent, ScopeDisplay& display, MainController& main,
                       std::function<void()> geometryChanged) {
  buildInto(parent, display, main, std::move(geometryChanged));
}

}  // namespace zorvik
