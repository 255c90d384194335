#include "app/mainwin.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QSignalBlocker>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QVBoxLayout>

#include "app/delay_page.h"
#include "app/device_page.h"
#include "app/packet_file_menu.h"
#include "export/packet_files.h"
#include "app/trigger_panel.h"
#include "control/delay_control.h"
#include "app/trace_placeholder.h"
#include "link/class_obex.h"

namespace zorvik {

namespace {
QString q(const std::string& s) { return QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size())); }

QString colorStyle(uint32_t bgr) {
  QColor c(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
  return QString("color: %1; background: transparent; font-weight: bold;").arg(c.name());
}
}  // namespace

mainwin::mainwin(SettingsStore& settings, const InstanceIdentity& identity, std::unique_ptr<ClassOBEX> link,
                 const CommandLine& commandLine)
    : settings_(settings), sink_(settings, identity.InstanceTitle), link_(std::move(link)) {
  setObjectName("mainwin");
  sink_.setOwner(this);
  main_ = std::make_unique<MainController>(settings_, sink_, static_cast<MainView&>(*this));
  main_->setIdentity(identity);
  control_ = std::make_unique<BasicControl>(*main_);
  run_ = std::make_unique<RunControl>(*main_);
  trigger_ = std::make_unique<TriggerControl>(*main_);
  delay_ = std::make_unique<DelayControl>(*main_, *trigger_);
  hooks_ = std::make_unique<RoutedHooks>(*control_, *run_, *trigger_);
  main_->setHooks(hooks_.get());
  main_->attachLink(link_.get());
  main_->devMode = commandLine.dev;

  // The window's own keys on top of those of run control.
  struct WindowKeys : RunKeyActions {
    WindowKeys(mainwin& w, MainController& m, RunControl& r, TriggerControl& t) : RunKeyActions(m, r, t), w_(w) {}
    void closeProgram() override { w_.close(); }
    mainwin& w_;
  };
  keyActions_ = std::make_unique<WindowKeys>(*this, *main_, *run_, *trigger_);
  keys_ = std::make_unique<KeyMap>(*keyActions_);
  keys_->devMode = commandLine.dev;

  buildMenus();
  buildPanel();
  devicePage_ = new DevicePage(this);
  placeWindow();
  refreshRunControls();
  stateChanged();
}

mainwin::~mainwin() {
  main_->attachLink(nullptr);
  main_->setHooks(nullptr);
}

void mainwin::buildMenus() {
  QMenu* linkMenu = menuBar()->addMenu("&Link");
  LinkControl = linkMenu->addAction("Connect", [this] { main_->KeyConnect_Click(); });
  LinkControl->setObjectName("LinkControl");
  QAction* setup = linkMenu->addAction("Port setup", [this] { main_->LinkSetup_Click(); });
  setup->setObjectName("LinkSetup");
  linkMenu->addSeparator();
  QMenu* fileMenu = menuBar()->addMenu("&File");
  addPacketFileMenu(fileMenu, *main_, fileDialogs_);
  QAction* exitAction = linkMenu->addAction("Exit", [this] { close(); });
  exitAction->setObjectName("Exit");

  buildRegistryMenu();
  registryMenu_->setEnabled(false);

  QMenu* device = menuBar()->addMenu("&Device");
  device->setObjectName("DeviceInternals");
  device->addAction("Version", [this] {
    devicePage_->refresh(main_->state());
    devicePage_->show();
    devicePage_->raise();
  });
}

void mainwin::buildPanel() {
  auto* central = new QWidget(this);
  auto* row = new QHBoxLayout(central);
  display_ = new TracePlaceholder(central);
  row->addWidget(display_, 1);

  // Status texts stand over the top of the trace, as on the instrument.
  ModeTransparant = new QLabel("Ready", display_);
  ModeTransparant->setObjectName("ModeTransparant");
  ModeTransparant->move(8, 6);
  RISmodeTransparant = new QLabel("RIS", display_);
  RISmodeTransparant->setObjectName("RISmodeTransparant");
  RISmodeTransparant->setStyleSheet(colorStyle(0x00FFFF));
  RISmodeTransparant->move(90, 6);
  NoTriggerTransparant = new QLabel("NO TRIGGER!", display_);
  NoTriggerTransparant->setObjectName("NoTriggerTransparant");
  NoTriggerTransparant->setStyleSheet(colorStyle(0x0000FF));
  NoTriggerTransparant->move(150, 6);

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
  KeyStart->installEventFilter(this);
  connect(KeyStart, &QPushButton::clicked, this, [this] { guarded([this] { run_->KeyStart_Click(); }); });
  WorkMode = new QCheckBox("Serial");
  WorkMode->setObjectName("WorkMode");
  WorkMode->setAttribute(Qt::WA_Hover);
  WorkMode->installEventFilter(this);
  connect(WorkMode, &QCheckBox::clicked, this, [this](bool on) { guarded([&] { run_->WorkMode_Click(on); }); });
  AutoWait = new QCheckBox("AutoRun mode");
  AutoWait->setObjectName("AutoWait");
  connect(AutoWait, &QCheckBox::clicked, this, [this](bool on) { guarded([&] { run_->AutoWait_Click(on); }); });
  modeBox->addWidget(KeyStart);
  modeBox->addWidget(WorkMode);
  modeBox->addWidget(AutoWait);
  FrameMode->setMaximumWidth(220);
  panel->addWidget(FrameMode);
  run_->onChange = [this] { refreshRunControls(); };

  auto* trigBox = new QGroupBox("Trigger");
  auto* trigLayout = new QVBoxLayout(trigBox);
  triggerPanel_ = new TriggerPanel(*trigger_, [this] {
    if (!delayPage_) delayPage_ = new DelayPage(*delay_, *trigger_, 0, this);
    delayPage_->show();
    delayPage_->raise();
  });
  trigLayout->addWidget(triggerPanel_);
  trigBox->setMaximumWidth(220);
  panel->addWidget(trigBox);
  trigger_->onChange = [this] {
    if (triggerPanel_) triggerPanel_->refresh();
    if (delayPage_) delayPage_->refresh(0);
  };
  panel->addStretch(1);
  row->addLayout(panel);
  setCentralWidget(central);

  FPSlabel = new QLabel;
  FPSlabel->setObjectName("FPSlabel");
  sessionLabel_ = new QLabel;
  statusBar()->addWidget(sessionLabel_);
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
  setWindowTitle(q(s.caption));
  KeyConnect->setText(q(s.connectCaption));
  LinkControl->setText(q(s.connectCaption));
  KeyConnect->setVisible(s.connectVisible);
  KeyStart->setEnabled(s.startEnabled);
  WorkMode->setEnabled(s.startEnabled);
  ModeTransparant->setText(q(s.modeText));
  ModeTransparant->setStyleSheet(colorStyle(s.modeColor));
  ModeTransparant->adjustSize();
  NoTriggerTransparant->setVisible(s.noTriggerVisible);
  RISmodeTransparant->setText(q(s.risCaption));
  RISmodeTransparant->setVisible(s.risVisible);
  FPSlabel->setText(s.fps > 0 ? QString("%1 fps").arg(s.fps) : QString());
  sessionLabel_->setText(QString("Session: %1").arg(sessionStateName(main_->sessionState())));
  if (devicePage_) {
    devicePage_->refresh(s);
    if (s.devicePageVisible && isVisible() && !devicePage_->isVisible()) devicePage_->show();
    if (!s.devicePageVisible && devicePage_->isVisible()) devicePage_->hide();
  }
}

void mainwin::restoreDefaultPacket() { zorvik::restoreDefaultPacket(*main_); }

void mainwin::clearDisplay() { display_->clear(); }

void mainwin::packetShown(const std::string& packet) { display_->showPacket(packet); }

void mainwin::refreshRunControls() {
  if (!FrameMode) return;
  const RunModel& m = run_->model();
  QSignalBlocker b1(WorkMode), b2(AutoWait);
  WorkMode->setChecked(m.WorkMode);
  WorkMode->setToolTip(q(m.workModeToolTip));
  AutoWait->setChecked(m.AutoWait);
  AutoWait->setToolTip(q(m.autoWaitToolTip));
  KeyStart->setVisible(m.keyStartVisible);
  frameModeCaption_->setText(q(m.frameModeCaption));
}

bool mainwin::eventFilter(QObject* watched, QEvent* event) {
  if (watched == KeyStart && event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_R) {
    run_->ResendLast();
    return true;
  }
  if (watched == WorkMode && event->type() == QEvent::HoverMove)
    run_->mouseOverWorkMode(QDateTime::currentMSecsSinceEpoch());
  return QMainWindow::eventFilter(watched, event);
}

namespace {
// The name of a key as the key map knows it; empty for keys it has no use for.
std::string keyName(const QKeyEvent* e) {
  switch (e->key()) {
    case Qt::Key_Escape: return "Esc";
    case Qt::Key_Left: return "Left";
    case Qt::Key_Right: return "Right";
    case Qt::Key_Up: return "Up";
    case Qt::Key_Down: return "Down";
    case Qt::Key_Home: return "Home";
    case Qt::Key_End: return "End";
    case Qt::Key_PageUp: return "PageUp";
    case Qt::Key_PageDown: return "PageDown";
    case Qt::Key_Backspace: return "Backspace";
    default: break;
  }
  QString t = e->text();
  if (t.size() == 1 && t[0].unicode() >= 32 && t[0].unicode() < 127) return t.toStdString();
  return {};
}
}  // namespace

void mainwin::keyPressEvent(QKeyEvent* event) {
  std::string key = keyName(event);
  bool taken = false;
  guarded([&] {
    taken = !key.empty() && keys_->press(key, QDateTime::currentMSecsSinceEpoch(),
                                         event->modifiers() & Qt::ShiftModifier, event->modifiers() & Qt::AltModifier);
  });
  if (!taken) QMainWindow::keyPressEvent(event);
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
  guarded([&] {
    settings_.saveInt("Startup Position", "ZorvikWin Left", x());
    settings_.saveInt("Startup Position", "ZorvikWin Top", y());
  });
  event->accept();
}

}  // namespace zorvik
