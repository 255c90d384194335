#include "link/stream_obex.h"

namespace zorvik {

namespace {

WireMessage message(WireType type) {
  WireMessage m;
  m.type = type;
  return m;
}

bool isRequest(WireType type) {
  return static_cast<uint8_t>(type) < 0x80;
}

}  // namespace

StreamObex::StreamObex(DeviceAddress address) : address_(std::move(address)) {}

StreamObex::~StreamObex() {
  if (connection_) connection_->abort();
}

void StreamObex::queue(std::function<void()> step) {
  steps_.push_back(std::move(step));
  if (steps_.size() >= static_cast<size_t>(kMaxQueued) && connection_) connection_->setPaused(true);
  if (runPosted_) return;
  runPosted_ = true;
  QMetaObject::invokeMethod(
      &context(), [this] { runSteps(); }, Qt::QueuedConnection);
}

void StreamObex::runSteps() {
  runPosted_ = false;
  // A step may wait and turn the event loop, and steps queued meanwhile run inside it: each is taken
  // from the front, so the order holds however the runs nest.
  while (!steps_.empty()) {
    std::function<void()> step = std::move(steps_.front());
    steps_.pop_front();
    if (steps_.size() <= static_cast<size_t>(kMaxQueued / 2) && connection_) connection_->setPaused(false);
    step();
  }
}

void StreamObex::deliver(std::function<void(ObexEvents&)> event) {
  queue([this, event = std::move(event)] {
    if (ObexEvents* sink = eventSink()) event(*sink);
  });
}

void StreamObex::retire() {
  if (!connection_) return;
  connection_->abort();
  retired_.push_back(std::move(connection_));
  queue([this] { retired_.clear(); });
}

void StreamObex::send(WireMessage m) {
  if (connection_) connection_->send(m);
}

void StreamObex::sendName(WireType type, const std::string& name) {
  WireMessage m = message(type);
  m.name = name;
  send(std::move(m));
}

void StreamObex::OpenSession(bool& ok) {
  ok = true;
  if (connection_) return;  // a session stands or is on the way
  connection_ = WireConnection::connectTo(address_, kConnectMs);
  connection_->onMessage = [this](WireMessage&& m) { received(std::move(m)); };
  connection_->onClosed = [this](const std::string& error, bool wasConnected) {
    closed(error, wasConnected);
  };
  opening_ = true;
  sessionUp_ = false;
  // The instrument learns what the program has set so far, then the request.
  SetSettingsName(settingsName_);
  SetParallelTransfer(parallel_);
  SetFirmwareTimeout(firmwareTimeoutMs_);
  SetShowTime(showTimeMs_);
  send(message(WireType::OpenSession));
}

void StreamObex::CloseSession() {
  if (!connection_) return;
  if (!sessionUp_ && !online_) {
    // No session stood, so there is none to end.
    opening_ = false;
    retire();
    return;
  }
  send(message(WireType::CloseSession));
}

void StreamObex::refuse(const std::string& error) {
  if (connection_) connection_->closeWithError(error);
  closed(error, true);
}

void StreamObex::received(WireMessage&& m) {
  switch (m.type) {
    case WireType::Hello:
      if (m.number != kWireProtocolVersion) {
        refuse("the instrument speaks protocol version " + std::to_string(m.number) + ", this program " +
               std::to_string(kWireProtocolVersion));
        return;
      }
      usbSerial_ = m.name;
      usbVersion_ = m.data;
      usbName_ = m.text;
      return;
    case WireType::NoDevice:
    case WireType::Refused:
      opening_ = false;
      retire();
      deliver([](ObexEvents& e) { e.ObexLinkDLL1_NoZorvikFoundEvent(); });
      return;
    case WireType::SessionMessage:
      opening_ = false;
      sessionUp_ = true;
      deliver([text = std::move(m.data)](ObexEvents& e) { e.ObexLinkDLL1_StartSessionMsgEvent(text); });
      return;
    case WireType::SessionStart:
      opening_ = false;
      sessionUp_ = true;
      deliver([](ObexEvents& e) { e.ObexLinkDLL1_StartSessionEvent(); });
      return;
    case WireType::SessionEnd:
      // The instrument is free for another program: the connection goes with the session.
      sessionUp_ = false;
      retire();
      queue([this] {
        online_ = false;
        repeat_ = held_ = false;
      });
      deliver([](ObexEvents& e) { e.ObexLinkDLL1_EndSessionEvent(); });
      return;
    case WireType::Header:
      deliver([name = std::move(m.name), value = std::move(m.data), parallel = m.flagA](ObexEvents& e) {
        e.ObexLinkDLL1_HeaderEvent(name, value, parallel);
      });
      return;
    case WireType::Roll:
      deliver([chunk = std::move(m.data), total = m.number](ObexEvents& e) {
        e.ObexLinkDLL1_rollevent(chunk, total);
      });
      return;
    case WireType::Online:
      queue([this, on = m.flagA] {
        online_ = on;
        if (!on) repeat_ = held_ = false;
      });
      return;
    case WireType::Error:
      closed("the instrument closed the connection: " + m.text, true);
      return;
    default:
      if (isRequest(m.type))
        refuse("the instrument sent a request (" + std::string(wireTypeName(m.type)) + ")");
      return;
  }
}

void StreamObex::closed(const std::string& error, bool wasConnected) {
  if (!connection_) return;
  retire();
  if (!error.empty() && wasConnected) {
    queue([this, error] {
      if (onStreamError) onStreamError(error);
    });
  }
  if (sessionUp_ || online_) {
    // The device is lost: the session ends as if it had been closed.
    sessionUp_ = false;
    queue([this] {
      online_ = false;
      repeat_ = held_ = false;
    });
    deliver([](ObexEvents& e) { e.ObexLinkDLL1_EndSessionEvent(); });
  } else if (opening_) {
    opening_ = false;
    deliver([](ObexEvents& e) { e.ObexLinkDLL1_NoZorvikFoundEvent(); });
  }
}

void StreamObex::PrepareFirmwareLoad() {
  send(message(WireType::PrepareFirmwareLoad));
}

void StreamObex::SetSettingsName(const std::string& name) {
  settingsName_ = name;
  sendName(WireType::SettingsName, name);
}

void StreamObex::SetParallelTransfer(bool on) {
  parallel_ = on;
  WireMessage m = message(WireType::ParallelTransfer);
  m.flagA = on;
  send(std::move(m));
}

void StreamObex::SetFirmwareTimeout(int32_t ms) {
  firmwareTimeoutMs_ = ms;
  WireMessage m = message(WireType::FirmwareTimeout);
  m.number = ms;
  send(std::move(m));
}

void StreamObex::SetShowTime(int32_t ms) {
  showTimeMs_ = ms;
  WireMessage m = message(WireType::ShowTime);
  m.number = ms;
  send(std::move(m));
}

void StreamObex::SendFirmwareSector(const std::string& name, const std::string& data, bool flagA,
                                    bool flagB) {
  WireMessage m = message(WireType::FirmwareSector);
  m.name = name;
  m.data = data;
  m.flagA = flagA;
  m.flagB = flagB;
  send(std::move(m));
}

void StreamObex::SendCommand(const std::string& name, bool flagA, bool flagB) {
  WireMessage m = message(WireType::Command);
  m.name = name;
  m.flagA = flagA;
  m.flagB = flagB;
  send(std::move(m));
}

void StreamObex::SetRepeatCommand(bool enable, const std::string& name, bool flag) {
  if (enable) {
    if (!online_ || name != "D") return;
    repeat_ = true;
    held_ = false;
  } else {
    repeat_ = held_ = false;
  }
  WireMessage m = message(WireType::RepeatCommand);
  m.flagA = enable;
  m.name = name;
  m.flagB = flag;
  send(std::move(m));
}

void StreamObex::SetPeriodicCommand(bool enable, const std::string& name, int32_t periodMs) {
  WireMessage m = message(WireType::PeriodicCommand);
  m.flagA = enable;
  m.name = name;
  m.number = periodMs;
  send(std::move(m));
}

void StreamObex::GetRegister(const std::string& name) {
  sendName(WireType::GetRegister, name);
}

void StreamObex::GetProperty(const std::string& name) {
  sendName(WireType::GetProperty, name);
}

void StreamObex::PutRegister1(const std::string& name, uint8_t value) {
  WireMessage m = message(WireType::PutRegister1);
  m.name = name;
  m.number = value;
  send(std::move(m));
}

void StreamObex::PutRegister2(const std::string& name, int32_t value) {
  WireMessage m = message(WireType::PutRegister2);
  m.name = name;
  m.number = value;
  send(std::move(m));
}

void StreamObex::PutRegister4(const std::string& name, int32_t value) {
  WireMessage m = message(WireType::PutRegister4);
  m.name = name;
  m.number = value;
  send(std::move(m));
}

void StreamObex::ResendLast() {
  send(message(WireType::ResendLast));
}

void StreamObex::StopRepeat(bool resume) {
  held_ = !resume;
  WireMessage m = message(WireType::StopRepeat);
  m.flagA = resume;
  send(std::move(m));
}

}  // namespace zorvik
