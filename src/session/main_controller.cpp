#include "session/main_controller.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QThread>
#include <cmath>
#include <random>

namespace zorvik {

namespace {
const char* const kCrLf = "\r\n";
}  // namespace

MainController::MainController(SettingsStore& settings, MessageSink& messages, MainView& view)
    : DeviceContext(settings, messages, view), processor_(*this) {
  roll_ = std::make_unique<RollStream>(static_cast<RollHost&>(*this), noCanvas_);
  identity_ = makeIdentity(1);
  state_.caption = identity_.caption;
  firstTimeTimer_.setSingleShot(true);
  firstTimeTimer_.setInterval(300);
  QObject::connect(&firstTimeTimer_, &QTimer::timeout, [this] { firstTimeTimer(); });
}

MainController::~MainController() {
  if (link_) link_->setEventSink(nullptr);
}

void MainController::attachLink(ClassOBEX* link) {
  if (link_) link_->setEventSink(nullptr);
  link_ = link;
  if (link_) {
    link_->setEventSink(this);
    link_->SetSettingsName(identity_.SettingsName);
  }
}

void MainController::setIdentity(const InstanceIdentity& id) {
  identity_ = id;
  state_.caption = id.caption;
  changed();
}

uint32_t MainController::tickMs() {
  return DeviceContext::tickMs();
}

void MainController::setConnectCaption(const std::string& caption) {
  state_.connectCaption = caption;
  changed();
}

void MainController::setField(const std::string& name, const std::string& text) {
  state_.fields[name] = text;
  changed();
}

void MainController::clearCaches() {
  cache_.clearSession();
  limitFlags_ = {};
}

// --- connect, session, exit ---------------------------------------------------------------------------

void MainController::KeyConnect_Click() {
  if (!link_) return;
  if (Online()) {
    link_->CloseSession();
    return;
  }
  bool ok = false;
  link_->OpenSession(ok);
  if (ok) {
    session_ = SessionState::Opening;
    return;
  }
  if (messages_.show(BoxKind::Question, "PortSetup", "Port unaccessible! Setup?") == kAnswerYes)
    link_->ShowPortSetup(true);
}

void MainController::LinkSetup_Click() {
  if (link_) link_->ShowPortSetup(true);
}

void MainController::ObexLinkDLL1_NoZorvikFoundEvent() {
  session_ = SessionState::NoSession;
  bool automatic = false;
  link_->GetPortIsAutomatic(automatic);
  if (automatic) return;
  std::string text =
      std::string("No answer. Check device power and cable.") + kCrLf + "Setup another port number?";
  if (messages_.show(BoxKind::Question, "PortSetup", text) == kAnswerYes) link_->ShowPortSetup(true);
}

void MainController::ObexLinkDLL1_StartSessionMsgEvent(const std::string& message) {
  setConnectCaption("Disconnect");
  if (message == "BOOT") {
    session_ = SessionState::Boot;
    if (registers_.firmwareLoadRunning()) return;
    std::string text = "Device state:  " + message + kCrLf + "You must upload firmware. Process?";
    if (messages_.show(BoxKind::OkCancel, identity_.InstanceTitle, text) == kAnswerOk)
      registers_.startFirmwareLoad();
    else
      link_->CloseSession();
    return;
  }
  messages_.show(BoxKind::InfoBox, identity_.InstanceTitle, std::string("Device message: ") + kCrLf + message,
                 identity_.InstanceTitle);
}

void MainController::ObexLinkDLL1_StartSessionEvent() {
  setConnectCaption("Disconnect");
  if (!view_.isWindowVisible()) return;
  session_ = SessionState::SettingUp;
  clearCaches();
  firstCalibrationDone_ = false;
  state_.devicePageVisible = true;
  changed();
  for (const char* p : {"VNM", "VSN", "VHW", "VSW", "MCl", "MCh", "MCd", "TOv", "TOl", "TMl", "TMh", "TPl"})
    link_->GetProperty(p);
  if (unimeterOpen()) link_->GetProperty("L_B");
  // The stored settings go out in this order; T1 again after S1, on purpose.
  for (const char* r :
       {"O1", "M1", "T1", "V1", "P1", "S1", "T1", "RT", "AP", "AR", "TA", "TW", "TD", "TC", "RS"})
    registers_.write(r);
  sessionSetupDone_ = true;
  checkSetup();
}

void MainController::checkSetup() {
  for (bool f : limitFlags_)
    if (!f) return;
  if (!sessionSetupDone_) return;
  cache_.TS = 0;  // forces the first write of the sampling period
  registers_.SetupTimeDiv();
  sessionSetupDone_ = false;
  firstTimeTimer_.start();
}

void MainController::firstTimeTimer() {
  firstTimeTimer_.stop();
  if (!Online()) return;
  // By now the memory limits of the mode are known, so the rule can use them.
  registers_.SetupTimeDiv();
  timeoutsWaitForClock_ = true;
  state_.devicePageVisible = false;
  state_.startEnabled = true;
  state_.connectVisible = false;
  session_ = SessionState::Ready;
  changed();
  registers_.applyRunMode();
}

void MainController::ObexLinkDLL1_EndSessionEvent() {
  firstTimeTimer_.stop();
  timeoutsWaitForClock_ = false;
  session_ = SessionState::NoSession;
  state_.fps = 0;  // the rate of a session that is over would mislead
  setConnectCaption("Connect");
  clearCaches();
  state_.startEnabled = false;
  changed();
  Wait(300);
  state_.connectVisible = true;
  changed();
}

bool MainController::requestClose() {
  if (storeWindowState) {
    storeWindowState();
  } else {
    settings_.SaveSettingValue("Meters", "On", "");
    settings_.saveBool("Spectrum", "Visible", false);
    settings_.saveBool("Stat", "Visible", false);
  }
  if (Online()) {
    std::string text = std::string("You must close session") + kCrLf + " before exit. Disconnect?";
    if (messages_.show(BoxKind::Question, identity_.InstanceTitle, text) != kAnswerYes) return false;
    link_->CloseSession();
    for (int i = 0; i < 40 && !state_.connectVisible; ++i) Wait(50);
  }
  return true;
}

void MainController::stopRepeat() {
  if (link_) link_->SetRepeatCommand(false, "", false);
}

// --- packets --------------------------------------------------------------------------------------------

PacketInfo MainController::ProcessPacket(const std::string& packet) {
  PacketInfo info = processor_.ProcessPacket(packet);
  if (!info.ignored) view_.packetShown(packet);
  return info;
}

void MainController::replayLastPacket() {
  ProcessPacket(lastPacket_);
}

void MainController::showFrameRate(int fps) {
  state_.fps = fps;
  changed();
}

void MainController::setModeTextColor(uint32_t bgr) {
  state_.modeColor = bgr;
}

void MainController::setNoTriggerVisible(bool visible) {
  state_.noTriggerVisible = visible;
}

void MainController::setRisIndicator(bool visible, const std::string& caption) {
  state_.risVisible = visible;
  state_.risCaption = caption;
}

void MainController::setModeText(const std::string& text) {
  state_.modeText = text;
  changed();
}

void MainController::showCurSamples(int count) {
  state_.curSamples = count;
  setField("DeviceMemPage.OknoCurSamples", std::to_string(count));
}

void MainController::unsupportedMode(const std::string& text) {
  messages_.show(BoxKind::Critical, identity_.InstanceTitle, text);
  stopRepeat();
}

void MainController::PlotSpeedTest() {
  cache_.TOv = 10000;
  cache_.TOl = 1000;
  cache_.TMl = 2000;
  cache_.TMh = -16;
  registers_.SetupTimeDiv();
  registers_.SetupTimeDiv();
  packetCount_ = 0;
  std::mt19937 rng(static_cast<uint32_t>(tickMs()));
  std::uniform_real_distribution<double> rnd(0.0, 1.0);
  QElapsedTimer timer;
  timer.start();
  std::string packet;
  for (int i = 0; i < 20; ++i) {
    double r = rnd(rng);
    packet.assign({char(16), char(0), char(0), char(0)});
    for (int k = 5; k <= 334; ++k)
      packet += static_cast<char>(static_cast<int>(std::lround(80 * std::sin((r / 3 + 10) * k / 50) + 127)));
    ++packetCount_;
    ProcessPacket(packet);
  }
  qint64 elapsed = std::max<qint64>(1, timer.elapsed());
  state_.caption = std::to_string(20000 / elapsed);
  changed();
}

// --- roll stream ----------------------------------------------------------------------------------------

void MainController::setRollCanvas(RollCanvas* canvas, std::function<RollSettings()> settings) {
  roll_ = std::make_unique<RollStream>(static_cast<RollHost&>(*this), canvas ? *canvas : noCanvas_);
  rollSettings_ = std::move(settings);
}

void MainController::rollHeader(const PacketInfo& header) {
  state_.modeColor = header.triggered ? kColorWhite : kColorRed;
  state_.noTriggerVisible = noTriggerMsg_ && !header.triggered;
  for (int n = 1; n <= header.segments; ++n)
    SetModeLabel(segmentMode(header.segmentWords[n - 1]), averagesPeaks_ != 0 && header.triggered, n);
  changed();
}

void MainController::rollSampleCount(int count) {
  processor_.setSampleCount(count);
}

void MainController::rollProgress(bool finished) {
  if (workModeSerial) return;
  state_.modeColor = kColorWhite;
  setModeText(finished ? "Stopped" : "Progress");
}

}  // namespace zorvik
