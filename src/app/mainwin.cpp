#include "app/mainwin.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDesktopServices>
#include <QFile>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QScreen>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include "app/calibration_page.h"
#include "app/clock_trigger_pages.h"
#include "app/delay_page.h"
#include "app/device_page.h"
#include "app/device_pages.h"
#include "app/device_setting_page.h"
#include "app/display_menus.h"
#include "app/horizontal_panel.h"
#include "app/meter_menu.h"
#include "app/packet_file_menu.h"
#include "app/picture_menu.h"
#include "app/trigger_marker.h"
#include "app/trigger_panel.h"
#include "app/vertical_panel.h"
#include "app/window_keys.h"
#include "config/cpu_speed.h"
#include "control/delay_control.h"
#include "control/plot_inputs_source.h"
#include "core/latin1_text.h"
#include "display/display_host.h"
#include "display/display_roll.h"
#include "display/memo_window.h"
#include "display/scope_display.h"
#include "display/scope_display_window.h"
#include "display/view_zoom.h"
#include "export/acquisition_hold.h"
#include "export/animation_recorder.h"
#include "export/animation_save.h"
#include "export/dialog_filter.h"
#include "export/display_pictures.h"
#include "export/file_dialogs.h"
#include "export/packet_files.h"
#include "export/picture_options.h"
#include "firmware/firmware_update.h"
#include "firmware/fw_update_window.h"
#include "link/class_obex.h"
#include "link/stream_obex.h"
#include "measure/measurement_pass.h"
#include "session/link_choice.h"
#include "spectrum/spectrum_stage.h"
#include "spectrum/spectrum_window.h"
#include "stat/stat_stage.h"
#include "stat/stat_window.h"
#include "ui/hot_key_dialog.h"
#include "ui/zoom_bar.h"

namespace zorvik {

mainwin::mainwin(SettingsStore& settings, const InstanceIdentity& identity, std::unique_ptr<ClassOBEX> link,
                 const CommandLine& commandLine)
    : settings_(settings), sink_(settings, identity.InstanceTitle) {
  setObjectName("mainwin");
  sink_.setOwner(this);
  fwWindow_ = new FWupdate(this);
  // A device stream that is refused says why; the session has ended by then, as for a lost device.
  if (StreamObex* stream = streamLink(link.get())) {
    stream->onStreamError = [this, title = identity.InstanceTitle](const std::string& error) {
      sink_.show(BoxKind::Critical, title, error, "");
    };
  }
  session_ = std::make_unique<ScopeSession>(settings_, identity, std::move(link),
                                            SessionFrontEnd{*this, sink_, fileDialogs_, fwWindow_}, CpuMHz());
  bindSession();
  main_->devMode = commandLine.dev;
  keyActions_ = std::make_unique<WindowKeys>(*this, *session_);
  session_->setKeyActions(keyActions_.get());
  session_->keys().devMode = commandLine.dev;

  buildMenus();
  buildPanel();
  devicePage_ = new DevicePage(this);
  qApp->installEventFilter(this);
  guarded([this] { session_->restoreZoom(); });
  scaleChanged();
  guarded([this] { HotKey::SetKey(this, "Oscilloscope", settings_); });
  placeWindow();  // before the windows restored below, which open beside it
  guarded([this] { meterMenu_->restore(); });
  guarded([this] {
    if (settings_.getBool("Spectrum", "Visible")) MeterFFT_Click();
    if (settings_.getBool("Stat", "Visible")) MeterStat_Click();
  });
  refreshRunControls();
  stateChanged();
}

void mainwin::bindSession() {
  ScopeSession& s = *session_;
  main_ = &s.main();
  control_ = &s.control();
  run_ = &s.run();
  trigger_ = &s.trigger();
  delay_ = &s.delay();
  firmware_ = &s.firmware();
  files_ = &s.files();
  scope_ = &s.display();
  measure_ = &s.measurement();
  spectrumStage_ = &s.spectrum();
  statStage_ = &s.stat();
  recorder_ = &s.recorder();
  hZoom_ = &s.hZoom();
  vZoom_ = &s.vZoom();
  fwWindow_->attach(firmware_);
  spectrumStage_->visible = [this] { return spectrum_ && spectrum_->isVisible(); };
  statStage_->visible = [this] { return stat_ && stat_->isVisible(); };
  s.picturesWithLabels = [this] { return PictureOptions(settings_).withLabels(); };
  // Saved once the packet's handler is done: the dialog must not stand inside it.
  recorder_->onComplete = [this](std::vector<AniGIF::Frame> frames) {
    QTimer::singleShot(0, this, [this, frames = std::move(frames)]() mutable {
      guarded([&] { saveAnimation(std::move(frames)); });
    });
  };
  main_->storeWindowState = [this] {
    meterMenu_->saveOn();
    settings_.saveBool("Spectrum", "Visible", spectrum_ && spectrum_->isVisible());
    settings_.saveBool("Stat", "Visible", stat_ && stat_->isVisible());
  };
  s.onScaleView = [this] {
    if (verticalPanel_) verticalPanel_->refresh();
    if (horizontalPanel_) horizontalPanel_->refresh();
    if (triggerMarker_) triggerMarker_->refresh();
    if (delayPage_) delayPage_->refresh();
  };
  s.onTriggerView = [this] {
    if (triggerPanel_) triggerPanel_->refresh();
    if (delayPage_) delayPage_->refresh();
    if (triggerMarker_) triggerMarker_->refresh();
    if (display_) display_->update();
  };
  s.onHorZoomView = [this] {
    if (hZoomBar_) hZoomBar_->refresh();
    if (display_) display_->hideMouseTools();
  };
  s.onVertZoomView = [this] {
    if (vZoomBar_) vZoomBar_->refresh();
    if (display_) display_->hideMouseTools();
  };
  s.onLayoutView = [this] { displayGeometryChanged(); };
  run_->onChange = [this] { refreshRunControls(); };
}

mainwin::~mainwin() {
  // These children reach into the stages, which go before the widgets do.
  delete spectrum_;
  spectrum_ = nullptr;
  delete stat_;
  stat_ = nullptr;
  delete meterMenu_;
  meterMenu_ = nullptr;
  session_.reset();
}

void mainwin::buildMenus() {
  QMenu* linkMenu = menuBar()->addMenu("&Link");
  LinkControl = linkMenu->addAction("Connect", [this] { main_->KeyConnect_Click(); });
  LinkControl->setObjectName("LinkControl");
  QAction* setup = linkMenu->addAction("Port setup", [this] { main_->LinkSetup_Click(); });
  setup->setObjectName("LinkSetup");
  QAction* hotKey = linkMenu->addAction("Hot key", [this] {
    guarded([this] { (new HotKey(settings_, this))->SetupDisplay(this, "Oscilloscope"); });
  });
  hotKey->setObjectName("SetupHotKey");
  linkMenu->addSeparator();
  QMenu* fileMenu = menuBar()->addMenu("&File");
  addPacketFileMenu(fileMenu, *main_, fileDialogs_);
  addPictureMenu(fileMenu, *main_, fileDialogs_, settings_, *scope_, [this](const std::string& text) {
    sink_.show(BoxKind::Critical, main_->identity().InstanceTitle, text, "");
  });
  buildAnimationMenu(fileMenu);
  if (QMenu* pictures = fileMenu->findChild<QMenu*>("SaveToBMPGIFJPG")) {
    QAction* open = pictures->addAction("show in new window", [this] {
      guarded([this] {
        showMemo(displayPicture(*scope_, scope_->labels(), PictureOptions(settings_).withLabels()));
      });
    });
    open->setObjectName("OpenBitmapInNewWin");
  }
  QAction* exitAction = linkMenu->addAction("Exit", [this] { close(); });
  exitAction->setObjectName("Exit");

  buildDisplayMenus(menuBar(), *scope_, *main_, [this] { displayGeometryChanged(); });
  if (QMenu* view = menuBar()->findChild<QMenu*>("DisplayMenu")) {
    QAction* msg = view->addAction("No trigger msg");
    msg->setObjectName("NoTriggerMsg");
    msg->setCheckable(true);
    msg->setChecked(main_->NoTriggerMsg());
    connect(msg, &QAction::triggered, this, [this](bool on) {
      scope_->settings().noTrigMsg = on;
      main_->setNoTriggerMsg(on);
      displaySettingChanged("NoTrigMsg", false);
    });
  }

  QMenu* meters = menuBar()->addMenu("&Meters");
  meters->setObjectName("Meters");
  meterMenu_ = new MeterMenu(
      meters, settings_, *measure_, this, [this] { main_->replayLastPacket(); },
      [this](const std::string& text) {
        sink_.show(BoxKind::Critical, main_->identity().InstanceTitle, text, "");
      });
  meters->addSeparator();
  MeterFFT = meters->addAction("Spectral", [this] { guarded([this] { MeterFFT_Click(); }); });
  MeterFFT->setObjectName("MeterFFT");
  MeterFFT->setCheckable(true);
  MeterStat = meters->addAction("Staistic", [this] { guarded([this] { MeterStat_Click(); }); });
  MeterStat->setObjectName("MeterStat");
  MeterStat->setCheckable(true);

  buildRegistryMenu();
  registryMenu_->setEnabled(false);

  QMenu* device = menuBar()->addMenu("&Device");
  device->setObjectName("DeviceInternals");
  device->addAction("Calibration", [this] {
    if (!calibrationPage_) calibrationPage_ = new CalibrationPage(settings_, *run_, this);
    calibrationPage_->show();
    calibrationPage_->raise();
  });
  device->addAction("Version", [this] {
    devicePage_->refresh(main_->state());
    devicePage_->show();
    devicePage_->raise();
  });
  QAction* fw =
      device->addAction("Firmware update", [this] { guarded([this] { firmware_->FirmWareUpdate(); }); });
  fw->setObjectName("FWupdateKey");
  device->addAction("Clock setting", [this] {
    showDevicePage(clockPage_,
                   [this] { return makeClockPage(settings_, *main_, control_->timebase(), this); });
  });
  device->addAction("Trigger setting", [this] {
    showDevicePage(trigPage_, [this] { return makeTriggerPage(settings_, *trigger_, this); });
  });
  device->addAction("Memory setting", [this] {
    showDevicePage(memoryPage_, [this] { return makeMemoryPage(settings_, control_->timebase(), this); });
  });
  device->addAction("Sampling setting", [this] {
    showDevicePage(samplingPage_,
                   [this] { return makeSamplingPage(settings_, *main_, control_->timebase(), this); });
  });
  device->addAction("CH1 setting", [this] {
    showDevicePage(ch1Page_,
                   [this] { return makeCh1Page(settings_, *main_, control_->channel(), *trigger_, this); });
  });
}

void mainwin::MeterFFT_Click() {
  if (spectrum_ && spectrum_->isVisible()) {
    spectrum_->close();  // its close stores the place and "Visible" false
    return;
  }
  if (!spectrum_) {
    spectrum_ =
        new Spectrum(settings_, *spectrumStage_, *files_, *main_, fileDialogs_, &control_->timebase(), this);
    spectrum_->onFault = [this](const std::string& text) {
      sink_.show(BoxKind::Critical, main_->identity().InstanceTitle, text, "");
    };
    spectrum_->onClosed = [this] {
      guarded([this] { settings_.saveBool("Spectrum", "Visible", false); });
      MeterFFT->setChecked(false);
    };
  }
  spectrum_->show();
  MeterFFT->setChecked(true);
  settings_.saveBool("Spectrum", "Visible", true);
  main_->replayLastPacket();
}

void mainwin::MeterStat_Click() {
  if (stat_ && stat_->isVisible()) {
    stat_->close();
    return;
  }
  if (!stat_) {
    stat_ = new Stat(settings_, *statStage_, *files_, *main_, fileDialogs_, this);
    stat_->onFault = [this](const std::string& text) {
      sink_.show(BoxKind::Critical, main_->identity().InstanceTitle, text, "");
    };
    stat_->onClosed = [this] {
      guarded([this] { settings_.saveBool("Stat", "Visible", false); });
      MeterStat->setChecked(false);
    };
  }
  stat_->show();
  MeterStat->setChecked(true);
  settings_.saveBool("Stat", "Visible", true);
  main_->replayLastPacket();
}

void mainwin::showDevicePage(DeviceSettingPage*& page, const std::function<DeviceSettingPage*()>& make) {
  guarded([&] {
    if (!page) {
      page = make();
      page->onFault = [this](const std::string& text) {
        sink_.show(BoxKind::Critical, main_->identity().InstanceTitle, text, "");
      };
    }
    page->refresh(main_->state());
    page->show();
    page->raise();
  });
}

void mainwin::buildPanel() {
  auto* central = new QWidget(this);
  auto* row = new QHBoxLayout(central);
  // As on a bench instrument: the screen with the horizontal controls below it, the vertical ones beside.
  auto* screenColumn = new QVBoxLayout;
  display_ = new ScopeDisplayWindow(*scope_, central);
  triggerMarker_ = new TriggerMarker(*trigger_, *scope_, central);
  auto* screenRow = new QHBoxLayout;
  screenRow->setSpacing(0);
  screenRow->addWidget(display_, 0, Qt::AlignTop);
  screenRow->addWidget(triggerMarker_, 0, Qt::AlignTop);
  vZoomBar_ = new ZoomBar(*vZoom_, central);
  vZoomBar_->setFixedHeight(display_->sizeHint().height());
  screenRow->addWidget(vZoomBar_, 0, Qt::AlignTop);
  screenRow->addStretch(1);
  screenColumn->addLayout(screenRow);
  hZoomBar_ = new ZoomBar(*hZoom_, central);
  hZoomBar_->setFixedWidth(display_->sizeHint().width());
  screenColumn->addWidget(hZoomBar_);
  display_->onSelection = [this](const DisplayMouse::Selection&, QPoint at) { selectionMenu(at); };
  horizontalPanel_ = new HorizontalPanel(control_->timebase(), central);
  screenColumn->addWidget(horizontalPanel_);
  screenColumn->addStretch(1);
  row->addLayout(screenColumn);
  verticalPanel_ = new VerticalPanel(control_->channel(), central);
  row->addWidget(verticalPanel_, 0, Qt::AlignTop);

  auto* panel = new QVBoxLayout;
  KeyConnect = new QPushButton("Connect");
  KeyConnect->setObjectName("KeyConnect");
  connect(KeyConnect, &QPushButton::clicked, this, [this] { main_->KeyConnect_Click(); });
  panel->addWidget(KeyConnect);

  FrameMode = new QGroupBox;
  FrameMode->setObjectName("FrameMode");
  auto* modeBox = new QVBoxLayout(FrameMode);
  frameModeCaption_ = new QLabel;
  frameModeCaption_->setWordWrap(true);
  modeBox->addWidget(frameModeCaption_);
  KeyStart = new QPushButton("Start");
  KeyStart->setObjectName("KeyStart");
  KeyStart->setToolTip("Press to force single \r\nacquisition");
  {
    // Hidden during serial acquisition, it keeps its room: the controls under the mouse stay put.
    QSizePolicy keep = KeyStart->sizePolicy();
    keep.setRetainSizeWhenHidden(true);
    KeyStart->setSizePolicy(keep);
  }
  connect(KeyStart, &QPushButton::clicked, this, [this] { guarded([this] { run_->KeyStart_Click(); }); });
  WorkMode = new QCheckBox("Serial");
  WorkMode->setObjectName("WorkMode");
  WorkMode->setAttribute(Qt::WA_Hover);
  WorkMode->installEventFilter(this);
  connect(WorkMode, &QCheckBox::clicked, this,
          [this](bool on) { guarded([&] { run_->WorkMode_Click(on); }); });
  AutoWait = new QCheckBox("AutoRun mode");
  AutoWait->setObjectName("AutoWait");
  connect(AutoWait, &QCheckBox::clicked, this,
          [this](bool on) { guarded([&] { run_->AutoWait_Click(on); }); });
  AveragesPeaks = new QComboBox;
  AveragesPeaks->setObjectName("AveragesPeaks");
  AveragesPeaks->setToolTip("number of waveforms to average in device");
  RisAveragesPeaks = new QComboBox;
  RisAveragesPeaks->setObjectName("RisAveragesPeaks");
  RisAveragesPeaks->setToolTip("number of waveforms to average in device (RIS)");
  for (const std::string& e : averagesList()) AveragesPeaks->addItem(latin1Text(e));
  for (const std::string& e : risAveragesList()) RisAveragesPeaks->addItem(latin1Text(e));
  connect(AveragesPeaks, &QComboBox::activated, this,
          [this](int i) { guarded([&] { run_->AveragesPeaks_Click(i); }); });
  connect(RisAveragesPeaks, &QComboBox::activated, this,
          [this](int i) { guarded([&] { run_->RisAveragesPeaks_Click(i); }); });
  auto* averages = new QFormLayout;
  averages->addRow("Averages", AveragesPeaks);
  averages->addRow("RIS averages", RisAveragesPeaks);
  modeBox->addWidget(KeyStart);
  modeBox->addWidget(WorkMode);
  modeBox->addWidget(AutoWait);
  modeBox->addLayout(averages);
  FrameMode->setMaximumWidth(220);
  panel->addWidget(FrameMode);
  auto* trigBox = new QGroupBox("Trigger");
  auto* trigLayout = new QVBoxLayout(trigBox);
  triggerPanel_ = new TriggerPanel(*trigger_, [this] {
    if (!delayPage_) delayPage_ = new DelayPage(*delay_, *trigger_, main_->state(), this);
    delayPage_->show();
    delayPage_->raise();
  });
  trigLayout->addWidget(triggerPanel_);
  trigBox->setMaximumWidth(220);
  panel->addWidget(trigBox);
  panel->addStretch(1);
  row->addLayout(panel);
  setCentralWidget(central);

  FPSlabel = new QLabel;
  FPSlabel->setObjectName("FPSlabel");
  sessionLabel_ = new QLabel;
  statusBar()->addWidget(sessionLabel_);
  recorderLabel_ = new QLabel;
  recorderLabel_->setObjectName("RecorderProgress");
  statusBar()->addWidget(recorderLabel_);
  statusBar()->addPermanentWidget(FPSlabel);
}

void mainwin::placeWindow() {
  resize(sizeHint().expandedTo(QSize(800, 600)));
  QRect screen = QGuiApplication::primaryScreen() ? QGuiApplication::primaryScreen()->availableGeometry()
                                                  : QRect(0, 0, 1024, 768);
  int left = settings_.getInt("Startup Position", "ZorvikWin Left", (screen.width() - width()) / 2);
  int top = settings_.getInt("Startup Position", "ZorvikWin Top", (screen.height() - height()) / 2);
  // Pulled back onto the screen, a margin short of its right and bottom edges.
  left = std::max(0, std::min(left, screen.width() - 67));
  top = std::max(0, std::min(top, screen.height() - 67));
  move(left, top);
}

void mainwin::stateChanged() {
  if (!KeyConnect) return;  // the core speaks before the panel is built
  const MainState& s = main_->state();
  setWindowTitle(latin1Text(s.caption));
  KeyConnect->setText(latin1Text(s.connectCaption));
  LinkControl->setText(latin1Text(s.connectCaption));
  KeyConnect->setVisible(s.connectVisible);
  KeyStart->setEnabled(s.startEnabled);
  WorkMode->setEnabled(s.startEnabled);
  display_->showState(s);
  FPSlabel->setText(s.fps > 0 ? QString("%1 fps").arg(s.fps) : QString());
  sessionLabel_->setText(QString("Session: %1").arg(sessionStateName(main_->sessionState())));
  recorderLabel_->setText(QString::fromStdString(session_->recorder().progressText()));
  for (DeviceSettingPage* page : {ch1Page_, samplingPage_, memoryPage_, clockPage_, trigPage_})
    if (page && page->isVisible()) page->refresh(s);
  if (devicePage_) {
    devicePage_->refresh(s);
    if (s.devicePageVisible && isVisible() && !devicePage_->isVisible()) devicePage_->show();
    if (!s.devicePageVisible && devicePage_->isVisible()) devicePage_->hide();
  }
}

void mainwin::restoreDefaultPacket(const std::string& namedFile) {
  zorvik::restoreDefaultPacket(*main_, namedFile);
}

void mainwin::clearDisplay() {
  display_->clear();
}

// The display drew the packet as its stage; nothing is left to do here.
void mainwin::packetShown(const std::string&) {}

void mainwin::scaleChanged() {
  guarded([this] { session_->refreshScale(); });
}

void mainwin::selectionMenu(QPoint at) {
  QMenu menu(this);
  menu.setObjectName("SelRectMenu");
  menu.setTitle("SelRect");
  QAction* zoom = menu.addAction("change zoom to", [this] { guarded([this] { zoomToSelection(); }); });
  zoom->setObjectName("SelRectOperation0");
  const char* copies[] = {"show in new window", "magn x2 to new window", "magn x3 to new window",
                          "magn x4 to new window", "magn x5 to new window"};
  for (int i = 0; i < 5; ++i) {
    QAction* a =
        menu.addAction(copies[i], [this, i] { guarded([&] { copySelection(i == 0 ? 1 : i + 1); }); });
    a->setObjectName(QString("SelRectOperation%1").arg(i + 1));
  }
  menu.exec(at);
}

void mainwin::copySelection(int magnification) {
  const DisplayMouse::Selection s = display_->mouse().selection();
  if (!s.visible) return;
  // The pixels as the screen shows them, labels included.
  const QImage shown = displayPicture(*scope_, scope_->labels(), true);
  const DisplayGeometry& g = scope_->canvas().zoomGeometry();  // the saved picture is laid out at the zoom
  const QRect r =
      QRect(QPoint(g.pixelX(s.left()), g.pixelY(s.top())), QPoint(g.pixelX(s.right()), g.pixelY(s.bottom())))
          .intersected(shown.rect());
  if (r.isEmpty()) return;
  QImage copy = shown.copy(r);
  if (magnification > 1)
    copy = copy.scaled(r.size() * magnification, Qt::IgnoreAspectRatio, Qt::FastTransformation);
  showMemo(copy);
}

void mainwin::buildAnimationMenu(QMenu* file) {
  QMenu* menu = file->addMenu("Record animation");
  menu->setObjectName("StartAnimatedRec");
  const char* entries[] = {"Frames:", "5", "10", "20", "50", "100", "200"};
  for (int i = 0; i < 7; ++i) {
    QAction* a = menu->addAction(entries[i], [this, i, entries] {
      int frames = i == 0 ? 0 : std::atoi(entries[i]);
      if (i == 0) {
        bool ok = false;
        frames = QInputDialog::getInt(this, latin1Text(main_->identity().InstanceTitle),
                                      "Input frames number for record", 10, 0, 10000, 1, &ok);
        if (!ok) return;
      }
      recorder_->start(frames);
      stateChanged();  // the status bar shows the frames to come
    });
    a->setObjectName(QString("StartAnimatedRec_%1").arg(i));
  }
  menu->addSeparator();
  QAction* ring = menu->addAction("Ring mode");
  ring->setObjectName("RingAnimatedGIF");
  ring->setCheckable(true);
  ring->setChecked(settings_.getBool("Save", "AnimatedGIFring"));
  recorder_->ring = ring->isChecked();
  connect(ring, &QAction::toggled, this, [this](bool on) {
    recorder_->ring = on;
    guarded([&] { settings_.saveBool("Save", "AnimatedGIFring", on); });
  });
}

void mainwin::saveAnimation(std::vector<AniGIF::Frame> frames) {
  const uint32_t colour = PictureOptions(settings_).transparentGif()
                              ? static_cast<uint32_t>(scope_->settings().backColor) & 0xFFFFFF
                              : AniGIF::kNoTransparent;
  const SavedAnimation saved = saveAnimationFrames(*main_, fileDialogs_, frames, colour);
  if (saved.view)
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFile::decodeName(QByteArray::fromStdString(saved.path))));
}

void mainwin::showMemo(const QImage& picture) {
  auto* m = new memowin(picture, *main_, fileDialogs_, this);
  m->onFault = [this](const std::string& text) {
    sink_.show(BoxKind::Critical, main_->identity().InstanceTitle, text, "");
  };
  m->show();
}

void mainwin::zoomToSelection() {
  const DisplayMouse::Selection s = display_->mouse().selection();
  if (!s.visible) return;
  const int width = scope_->plotWidth();
  const int hOld = hZoom_->factor(), vOld = vZoom_->factor();
  const int hNew = horizontalZoomForSelection(hOld, static_cast<double>(width) / (s.right() - s.left()));
  const int vNew = verticalZoomForSelection(vOld, static_cast<double>(kTraceRows) / (s.top() - s.bottom()));
  const int hValue = viewValueCentring(ZoomAxis::Horizontal, hOld, hZoom_->value(),
                                       (s.left() + s.right()) / 2.0 / width, hNew);
  const int vValue = viewValueCentring(ZoomAxis::Vertical, vOld, vZoom_->value(),
                                       (s.bottom() + s.top()) / 2.0 / kTraceRows, vNew);
  if (hNew != hOld) hZoom_->keyClicked(hNew, true);
  if (hNew > 1) hZoom_->setValue(hValue);
  if (vNew != vOld) vZoom_->keyClicked(vNew, true);
  if (vNew > 1) vZoom_->setValue(vValue);
}

void mainwin::displaySettingChanged(const char* name, bool setup) {
  guarded([&] { session_->displaySettingChanged(name, setup); });
}

void mainwin::displayGeometryChanged() {
  if (!display_) return;
  if (triggerMarker_) triggerMarker_->refresh();
  if (hZoomBar_) hZoomBar_->setFixedWidth(display_->sizeHint().width());
  if (vZoomBar_) vZoomBar_->setFixedHeight(display_->sizeHint().height());
  if (centralWidget() && centralWidget()->layout()) centralWidget()->layout()->activate();
  adjustSize();
  checkScreenFor(this, sink_, main_->identity().InstanceTitle);
}

void mainwin::refreshRunControls() {
  if (!FrameMode) return;
  const RunModel& m = run_->model();
  QSignalBlocker b1(WorkMode), b2(AutoWait), b3(AveragesPeaks), b4(RisAveragesPeaks);
  AveragesPeaks->setCurrentIndex(m.averagesIndex);
  RisAveragesPeaks->setCurrentIndex(m.risAveragesIndex);
  WorkMode->setChecked(m.WorkMode);
  WorkMode->setToolTip(latin1Text(m.workModeToolTip));
  AutoWait->setChecked(m.AutoWait);
  AutoWait->setToolTip(latin1Text(m.autoWaitToolTip));
  KeyStart->setVisible(m.keyStartVisible);
  frameModeCaption_->setText(latin1Text(m.frameModeCaption));
}

bool mainwin::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && isFirstDeliveryHere(watched)) {
    auto* key = static_cast<QKeyEvent*>(event);
    if (watched == KeyStart && key->key() == Qt::Key_R) {
      run_->ResendLast();
      return true;
    }
    if (takeKey(key)) return true;
  }
  if (watched == WorkMode && event->type() == QEvent::HoverMove)
    run_->mouseOverWorkMode(QDateTime::currentMSecsSinceEpoch());
  return QMainWindow::eventFilter(watched, event);
}

namespace {
// The name of a key as the key map knows it; empty for keys it has no use for.
std::string keyName(const QKeyEvent* e) {
  switch (e->key()) {
    case Qt::Key_Escape:
      return "Esc";
    case Qt::Key_Left:
      return "Left";
    case Qt::Key_Right:
      return "Right";
    case Qt::Key_Up:
      return "Up";
    case Qt::Key_Down:
      return "Down";
    case Qt::Key_Home:
      return "Home";
    case Qt::Key_End:
      return "End";
    case Qt::Key_PageUp:
      return "PageUp";
    case Qt::Key_PageDown:
      return "PageDown";
    case Qt::Key_Backspace:
      return "Backspace";
    default:
      break;
  }
  QString t = e->text();
  if (t.size() == 1 && t[0].unicode() >= 32 && t[0].unicode() < 127) return t.toStdString();
  return {};
}
}  // namespace

// The keyboard table acts whatever control of this window has the focus, so a key is looked at where it
// is first delivered: the focused widget, or the window itself when nothing has the focus. Text inputs
// keep their keys.
bool mainwin::isFirstDeliveryHere(QObject* watched) const {
  auto* widget = qobject_cast<QWidget*>(watched);
  if (!widget || widget->window() != this) return false;
  QWidget* focus = QApplication::focusWidget();
  if (focus && (qobject_cast<QLineEdit*>(focus) || qobject_cast<QAbstractSpinBox*>(focus))) return false;
  return widget == (focus ? focus : this);
}

bool mainwin::takeKey(QKeyEvent* event) {
  std::string key = keyName(event);
  bool taken = false;
  guarded([&] {
    taken = !key.empty() && session_->keys().press(key, QDateTime::currentMSecsSinceEpoch(),
                                                   event->modifiers() & Qt::ShiftModifier,
                                                   event->modifiers() & Qt::AltModifier);
  });
  return taken;
}

void mainwin::closeEvent(QCloseEvent* event) {
  bool close = true;
  // A store that fails to write must not keep the program from closing: the failure becomes a box.
  guarded([&] { close = main_->requestClose(); });
  if (!close) {
    event->ignore();
    return;
  }
  if (devicePage_) devicePage_->close();
  guarded([&] { meterMenu_->closeAll(); });
  if (spectrum_ && spectrum_->isVisible()) {
    // Closed with the program, it opens again at the next start.
    spectrum_->onClosed = [] {};
    spectrum_->close();
  }
  if (stat_ && stat_->isVisible()) {
    stat_->onClosed = [] {};
    stat_->close();
  }
  guarded([&] {
    settings_.saveInt("Startup Position", "ZorvikWin Left", x());
    settings_.saveInt("Startup Position", "ZorvikWin Top", y());
  });
  event->accept();
}

}  // namespace zorvik
