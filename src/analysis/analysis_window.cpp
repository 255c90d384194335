#include "analysis/analysis_window.h"

#include <QActionGroup>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QDesktopServices>
#include <QFile>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTimer>
#include <QUrl>

#include "config/settings.h"
#include "core/latin1_text.h"
#include "display/memo_window.h"
#include "export/animation_save.h"
#include "export/display_pictures.h"
#include "link/device_context.h"
#include "ui/value_plot.h"
#include "ui/window_place_qt.h"
#include "ui/zoom_bar.h"

namespace zorvik {

namespace {
const char* const kColours[8] = {"Black", "Red", "Green", "Yellow", "Blue", "Magenta", "Cyan", "White"};
}  // namespace

AnalysisWindow::AnalysisWindow(SettingsStore& settings, DeviceContext& main, FileDialogs& dialogs,
                               const char* section, const char* saveSection, QWidget* parent)
    : QWidget(parent, Qt::Window),
      settings_(settings),
      main_(main),
      dialogs_(dialogs),
      view_(settings, section),
      pictureOptions_(settings, saveSection),
      section_(section),
      paced_(new PacedPaint(this, [this] { draw(frame()); })) {
  recorder_.ring = pictureOptions_.animatedGifRing();
  recorder_.capture = [this] { return picture(pictureOptions_.withLabels()); };
  // Saved once the acquisition's handler is done: the dialog must not stand inside it.
  recorder_.onComplete = [this](std::vector<AniGIF::Frame> frames) {
    QTimer::singleShot(0, this, [this, frames = std::move(frames)] {
      guarded([&] {
        const SavedAnimation saved = saveAnimationFrames(main_, dialogs_, frames, AniGIF::kNoTransparent);
        if (saved.view)
          QDesktopServices::openUrl(
              QUrl::fromLocalFile(QFile::decodeName(QByteArray::fromStdString(saved.path))));
      });
    });
  };
  view_.onChange = [this] { replot(); };
  sinceLast_.start();
}

AnalysisWindow::~AnalysisWindow() {
  view_.onChange = [] {};
  view_.onMemoKey = [] {};
}

void AnalysisWindow::buildFrame(QLayout* controls, QLayout* readouts) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(4, 4, 4, 4);
  menuBar_ = new QMenuBar(this);
  column->setMenuBar(menuBar_);
  buildMenus();
  memoKey_ = new QPushButton("Memo", this);
  memoKey_->setObjectName("MemoKey1");
  memoKey_->setCheckable(true);
  memoKey_->setToolTip("Memo (DPO) mode");
  memoKey_->setFocusPolicy(Qt::NoFocus);
  connect(memoKey_, &QPushButton::clicked, this,
          [this](bool on) { guarded([&] { view_.setStyle(StyleKey::Memory, on ? 1 : 0); }); });
  auto* full = new QPushButton("1:1", this);
  full->setObjectName("FullViewKey");
  full->setToolTip("Full view (zoom=1)");
  full->setFocusPolicy(Qt::NoFocus);
  connect(full, &QPushButton::clicked, this, [this] { guarded([this] { view_.fullView(); }); });
  interpolation_ = new QComboBox(this);
  interpolation_->setObjectName("Interpol1");
  for (const char* i : {"None", "Sin(x)/x", "Lanczos", "Lagrange"}) interpolation_->addItem(i);
  interpolation_->setToolTip("Interpolation between the points");
  connect(interpolation_, &QComboBox::activated, this,
          [this](int i) { guarded([&] { view_.setStyle(StyleKey::Interpolation, i); }); });
  controls->addWidget(interpolation_);
  controls->addWidget(memoKey_);
  controls->addWidget(full);
  column->addLayout(controls);

  auto* plotRow = new QHBoxLayout;
  plot_ = new ValuePlot(section_ == std::string("Stat") ? "StatWin" : "SpectrumDisplay",
                        QSize(PlotGeometry::imageWidth(), PlotGeometry::imageHeight()), this);
  plotRow->addWidget(plot_, 1);
  vBar_ = new ZoomBar(view_.vZoom(), this, "VScroll1");
  plotRow->addWidget(vBar_);
  column->addLayout(plotRow, 1);
  hBar_ = new ZoomBar(view_.hZoom(), this, "HScroll");
  column->addWidget(hBar_);
  column->addLayout(readouts);

  plot_->onPress = [this](double x, double y) { guarded([&] { view_.markerDown(frame(), x, y); }); };
  plot_->onDrag = [this](double x, double y) { guarded([&] { view_.markerMove(frame(), x, y); }); };
  plot_->onHover = [this](double x, double y) {
    const PlotFrame f = frame();
    if (!f.valid) return;
    const PlotRange r = view_.range(f);
    showCursor(f.origin + axisX(r, x), axisY(r, y));
  };
  refreshControls();
}

void AnalysisWindow::buildMenus() {
  file_ = menuBar_->addMenu("File");
  file_->setObjectName("FileMenu");
  buildPictureMenu(file_->addMenu("Save picture"));
  buildAnimationMenu(file_->addMenu("Record animation"));

  QMenu* viewMenu = menuBar_->addMenu("View");
  viewMenu->setObjectName("ViewMenu");
  auto check = [this](QMenu* menu, const char* caption, const char* object, std::function<bool()> get,
                      std::function<void(bool)> set) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(object);
    a->setCheckable(true);
    connect(a, &QAction::triggered, this, [this, set](bool on) { guarded([&] { set(on); }); });
    refreshers_.push_back([a, get] {
      const QSignalBlocker b(a);
      a->setChecked(get());
    });
  };
  check(
      viewMenu, "Grid", "Grid", [this] { return view_.grid(); }, [this](bool on) { view_.setGrid(on); });
  check(
      viewMenu, "Labels", "Labels", [this] { return view_.labels(); },
      [this](bool on) { view_.setLabels(on); });
  viewMenu->addAction("Full view", this, [this] { guarded([this] { view_.fullView(); }); })
      ->setObjectName("FullView");
  buildStyleMenu(menuBar_->addMenu("Plot"));
  buildMemoryMenu(menuBar_->addMenu("Memo"));
}

void AnalysisWindow::addStyleToggle(QMenu* menu, const char* caption, const char* object, StyleKey key) {
  QAction* a = menu->addAction(caption);
  a->setObjectName(object);
  a->setCheckable(true);
  connect(a, &QAction::triggered, this,
          [this, key](bool on) { guarded([&] { view_.setStyle(key, on ? 1 : 0); }); });
  refreshers_.push_back([this, a, key] {
    const QSignalBlocker b(a);
    a->setChecked(view_.style().on(key));
  });
}

void AnalysisWindow::addStyleChoices(QMenu* menu, const char* object, StyleKey key,
                                     const std::vector<QString>& captions, int first) {
  auto* group = new QActionGroup(menu);
  std::vector<QAction*> actions;
  for (size_t i = 0; i < captions.size(); ++i) {
    QAction* a = menu->addAction(captions[i]);
    a->setObjectName(QString("%1_%2").arg(object).arg(i));
    a->setCheckable(true);
    group->addAction(a);
    const int value = first + static_cast<int>(i);
    connect(a, &QAction::triggered, this,
            [this, key, value] { guarded([&] { view_.setStyle(key, value); }); });
    actions.push_back(a);
  }
  refreshers_.push_back([this, actions, key, first] {
    const int index = view_.style()[key] - first;
    for (size_t i = 0; i < actions.size(); ++i) {
      const QSignalBlocker b(actions[i]);
      actions[i]->setChecked(static_cast<int>(i) == index);
    }
  });
}

void AnalysisWindow::buildStyleMenu(QMenu* menu) {
  menu->setObjectName("PlotMenu");
  addStyleToggle(menu, "Line", "Line1", StyleKey::Line);
  addStyleToggle(menu, "Pixel", "Pixel1", StyleKey::Pixel);
  addStyleToggle(menu, "Fill", "Fill1", StyleKey::Fill);
  const std::vector<QString> colours(std::begin(kColours), std::end(kColours));
  addStyleChoices(menu->addMenu("Line colour"), "Line1Color", StyleKey::LineColor, colours, 0);
  addStyleChoices(menu->addMenu("Pixel colour"), "Pixel1Color", StyleKey::PixelColor, colours, 0);
  addStyleChoices(menu->addMenu("Fill colour"), "Fill1Color", StyleKey::FillColor, colours, 0);
  addStyleChoices(menu->addMenu("Line width"), "Line1Width", StyleKey::LineWidth, {"1", "2", "3", "4", "5"},
                  1);
  menu->addSeparator();
  std::vector<QString> points;
  for (int n = 1; n <= 8; ++n) points.push_back(QString::number(1 << n));
  addStyleChoices(menu->addMenu("Interpolation points"), "InterpolationPoints1",
                  StyleKey::InterpolationPoints, points, 1);
  addStyleToggle(menu, "Interpolated points", "InterpPixel1", StyleKey::InterpPixel);
  addStyleChoices(menu->addMenu("Speed"), "Speed1", StyleKey::Speed, {"0", "1", "2", "3"}, 0);
}

void AnalysisWindow::buildMemoryMenu(QMenu* menu) {
  menu->setObjectName("MemoMenu");
  addStyleToggle(menu, "Memory", "Memory", StyleKey::Memory);
  addStyleChoices(menu->addMenu("Memo (DPO) mode:"), "MemoMode", StyleKey::MemoMode,
                  {"None", "Intencity", "Color"}, 0);
  addStyleChoices(menu->addMenu("Depth"), "MemoDepth1", StyleKey::MemoryDepth,
                  {"Infinite", "128", "32", "8 (fast)"}, 0);
  addStyleChoices(menu->addMenu("Acquisitions a plot"), "AcqPerPlot1", StyleKey::AcqPerPlot,
                  {"each acq", "/2", "/5", "/10"}, 0);
  const std::vector<QString> percent = {"0%", "20%", "40%", "60%", "80%", "100%"};
  addStyleChoices(menu->addMenu("Emphasize color"), "EmphasizeColor1", StyleKey::EmphasizeColor, percent, 0);
  addStyleChoices(menu->addMenu("Emphasize intensity"), "EmphasizeIntens1", StyleKey::EmphasizeIntens,
                  percent, 0);
  addStyleToggle(menu, "Emphasize invert", "InvertColorIntenc1", StyleKey::EmphasizeInvert);
  addStyleToggle(menu, "Leave single", "LeaveSingle1", StyleKey::LeaveSingle);
  addStyleToggle(menu, "By bitmap", "BitmapPlot1", StyleKey::ByBitmap);
}

void AnalysisWindow::addCsvAction(std::function<void()> save) {
  auto* a = new QAction("Save to CSV-file", file_);
  a->setObjectName("SaveToCSV");
  connect(a, &QAction::triggered, this, std::move(save));
  file_->insertAction(file_->actions().value(0), a);
}

void AnalysisWindow::buildPictureMenu(QMenu* menu) {
  menu->setObjectName("SaveToBMPGIFJPG");
  struct Item {
    const char* caption;
    PictureTarget target;
  };
  const Item items[] = {{"to BMP file", PictureTarget::Bmp},
                        {"to GIF file", PictureTarget::Gif},
                        {"to JPG file", PictureTarget::Jpeg},
                        {"to clipboard", PictureTarget::Clipboard}};
  for (const Item& it : items) {
    const PictureTarget target = it.target;
    menu->addAction(it.caption, this,
                    [this, target] {
                      guarded([&] {
                        DisplayPictures pictures(main_, dialogs_);
                        pictures.setGifTransparency(pictureOptions_.transparentGif(), 0);
                        pictures.SaveToBMPGIFJPG(
                            target, [this] { return picture(pictureOptions_.withLabels()); },
                            [](const QImage& image) { QGuiApplication::clipboard()->setImage(image); }, false,
                            main_.tickMs());
                      });
                    })
        ->setObjectName(QString("SaveToBMPGIFJPG_%1").arg(static_cast<int>(target)));
  }
  menu->addAction("show in new window", this,
                  [this] {
                    auto* m = new memowin(picture(pictureOptions_.withLabels()), main_, dialogs_, this);
                    m->setAttribute(Qt::WA_DeleteOnClose);
                    m->show();
                  })
      ->setObjectName("OpenBitmapInNewWin");
  menu->addSeparator();
  auto option = [this, menu](const char* caption, const char* object, PictureOptions::Option o) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(object);
    a->setCheckable(true);
    a->setChecked(pictureOptions_.on(o));
    connect(a, &QAction::toggled, this, [this, a, o](bool on) {
      try {
        pictureOptions_.set(o, on);
      } catch (const std::exception& e) {
        const QSignalBlocker b(a);
        a->setChecked(pictureOptions_.on(o));
        onFault(e.what());
      }
    });
  };
  option("with labels", "SaveWithLabels", PictureOptions::WithLabels);
  option("transparent GIF", "transparentGIF", PictureOptions::TransparentGif);
}

void AnalysisWindow::buildAnimationMenu(QMenu* menu) {
  menu->setObjectName("StartAnimatedRec");
  static const char* const entries[] = {"Frames:", "5", "10", "20", "50", "100", "200"};
  for (int i = 0; i < 7; ++i) {
    menu->addAction(entries[i], this,
                    [this, i] {
                      int frames = i == 0 ? 0 : std::atoi(entries[i]);
                      if (i == 0) {
                        bool ok = false;
                        frames = QInputDialog::getInt(this, latin1Text(main_.identity().InstanceTitle),
                                                      "Input frames number for record", 10, 0, 10000, 1, &ok);
                        if (!ok) return;
                      }
                      recorder_.start(frames);
                    })
        ->setObjectName(QString("StartAnimatedRec_%1").arg(i));
  }
  menu->addSeparator();
  QAction* ring = menu->addAction("Ring mode");
  ring->setObjectName("RingAnimatedGIF");
  ring->setCheckable(true);
  ring->setChecked(pictureOptions_.animatedGifRing());
  connect(ring, &QAction::toggled, this, [this, ring](bool on) {
    try {
      pictureOptions_.set(PictureOptions::AnimatedGifRing, on);
      recorder_.ring = on;
    } catch (const std::exception& e) {
      const QSignalBlocker b(ring);
      ring->setChecked(pictureOptions_.animatedGifRing());
      onFault(e.what());
    }
  });
  // The main window stops its ring with the run key; here the recording is stopped from its menu.
  menu->addAction("Stop recording", this, [this] { recorder_.stop(); })->setObjectName("StopAnimatedRec");
}

QImage AnalysisWindow::picture(bool withLabels) const {
  return view_.picture(frame(), texts(), withLabels);
}

void AnalysisWindow::replot() {
  paced_->now();
}

void AnalysisWindow::draw(const PlotFrame& frame) {
  if (!plot_) return;
  // At the screen's whole scale, as the main display is drawn.
  const int scale = std::max(1, static_cast<int>(plot_->devicePixelRatioF()));
  plot_->setPicture(view_.picture(frame, texts(), true, scale));
  refreshControls();
  showReadouts(frame);
}

void AnalysisWindow::acquired() {
  // The memory takes every acquisition; the picture is drawn at the screen's rate at most, from the
  // latest acquisition.
  if (view_.acquire(view_.takesFrames() ? frame() : PlotFrame{})) paced_->request();
  if (recorder_.recording()) {
    recorder_.recordFrame(static_cast<int>(sinceLast_.restart()));
  } else {
    sinceLast_.restart();
  }
}

void AnalysisWindow::refreshControls() {
  for (auto& r : refreshers_) r();
  if (memoKey_) {
    const QSignalBlocker b(memoKey_);
    memoKey_->setChecked(view_.style().on(StyleKey::Memory));
  }
  if (interpolation_) {
    const QSignalBlocker b(interpolation_);
    interpolation_->setCurrentIndex(view_.style()[StyleKey::Interpolation]);
  }
  if (hBar_) hBar_->refresh();
  if (vBar_) vBar_->refresh();
}

void AnalysisWindow::store(const char* name, long long value) {
  guarded([&] { settings_.saveInt(section_, name, value); });
}

void AnalysisWindow::restoreGeometry() {
  const int left = settings_.getInt(section_, "Left", -1), top = settings_.getInt(section_, "Top", -1);
  const int width = settings_.getInt(section_, "Width", -1),
            height = settings_.getInt(section_, "Height", -1);
  // A size from a damaged store is kept within what a screen can hold.
  if (width > 0 && height > 0)
    resize(std::clamp(width, minimumSizeHint().width(), 4096),
           std::clamp(height, minimumSizeHint().height(), 4096));
  placeOpenedWindow(this, left >= 0 && top >= 0 ? std::optional<QPoint>(QPoint(left, top)) : std::nullopt);
}

void AnalysisWindow::closeEvent(QCloseEvent* event) {
  store("Left", x());
  store("Top", y());
  store("Width", width());
  store("Height", height());
  event->accept();
  onClosed();
}

}  // namespace zorvik
