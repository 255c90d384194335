#include "sim/sim_stream_server.h"

#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTcpServer>
#include <QTcpSocket>

#include "core/fault.h"

namespace zorvik {

namespace {

WireMessage message(WireType type) {
  WireMessage m;
  m.type = type;
  return m;
}

}  // namespace

SimStreamServer::SimStreamServer(const SimConfig& config) : sim_(config) {
  sim_.setEventSink(this);
}

SimStreamServer::~SimStreamServer() {
  sim_.setEventSink(nullptr);
  if (client_) client_->abort();
}

void SimStreamServer::listen(const DeviceAddress& address) {
  address_ = address;
  if (address.kind == DeviceAddress::Kind::Unix) {
    address_.path = QFileInfo(QString::fromStdString(address.path)).absoluteFilePath().toStdString();
    localServer_ = std::make_unique<QLocalServer>();
    const QString path = QString::fromStdString(address_.path);
    QLocalServer::removeServer(path);
    if (!localServer_->listen(path))
      throw Fault("cannot listen on " + address_.text() + ": " + localServer_->errorString().toStdString());
    QObject::connect(localServer_.get(), &QLocalServer::newConnection, &context_, [this] {
      while (QLocalSocket* s = localServer_->nextPendingConnection()) accepted(s);
    });
    return;
  }
  QHostAddress host;
  if (address.host == "localhost") {
    host = QHostAddress::LocalHost;
  } else if (!host.setAddress(QString::fromStdString(address.host))) {
    throw Fault("cannot listen on " + address.text() + ": the host must be an IP address or localhost");
  }
  tcpServer_ = std::make_unique<QTcpServer>();
  if (!tcpServer_->listen(host, address.port))
    throw Fault("cannot listen on " + address.text() + ": " + tcpServer_->errorString().toStdString());
  address_.port = tcpServer_->serverPort();
  QObject::connect(tcpServer_.get(), &QTcpServer::newConnection, &context_, [this] {
    while (QTcpSocket* s = tcpServer_->nextPendingConnection()) accepted(s);
  });
}

std::string SimStreamServer::address() const {
  return address_.text();
}

void SimStreamServer::log(const std::string& line) {
  if (onLog) onLog(line);
}

template <typename Socket>
void SimStreamServer::accepted(Socket* socket) {
  socket->setParent(nullptr);
  auto connection = std::make_unique<WireConnection>(socket);
  connection->setPaused(true);
  // Taken in from the event loop: the end of the session of a program that has just gone is queued
  // before, and must not reach the next one.
  arriving_.push_back(std::move(connection));
  QMetaObject::invokeMethod(
      &context_,
      [this] {
        std::unique_ptr<WireConnection> next = std::move(arriving_.front());
        arriving_.pop_front();
        adopt(std::move(next));
      },
      Qt::QueuedConnection);
}

void SimStreamServer::adopt(std::unique_ptr<WireConnection> connection) {
  if (client_) {
    log("refused a second program: one is served");
    connection->closeWithError("the instrument is in use by another program");
    retire(std::move(connection));
    return;
  }
  client_ = std::move(connection);
  client_->onMessage = [this](WireMessage&& m) { request(std::move(m)); };
  client_->onClosed = [this](const std::string& error, bool) { clientClosed(error); };
  client_->onWritten = [this] { flowChanged(); };
  client_->setPaused(false);
  onlineSent_ = false;
  clientHeld_ = flowHeld_ = false;
  WireMessage hello = message(WireType::Hello);
  hello.number = kWireProtocolVersion;
  sim_.GetUsbSerial(hello.name);
  sim_.GetUsbVersion(hello.data);
  sim_.GetUsbName(hello.text);
  client_->send(hello);
  log("a program connected");
}

void SimStreamServer::retire(std::unique_ptr<WireConnection> connection) {
  retired_.push_back(std::move(connection));
  QMetaObject::invokeMethod(
      &context_, [this] { retired_.clear(); }, Qt::QueuedConnection);
}

void SimStreamServer::clientClosed(const std::string& error) {
  log(error.empty() ? "the program went away" : "closed the connection: " + error);
  if (!client_) return;
  client_->abort();
  retire(std::move(client_));
  // The cable is pulled: the session ends, and its end reaches no one.
  sim_.CloseSession();
  if (clientHeld_ || flowHeld_) sim_.StopRepeat(true);
  clientHeld_ = flowHeld_ = false;
}

void SimStreamServer::request(WireMessage&& m) {
  switch (m.type) {
    case WireType::OpenSession: {
      bool ok = false;
      sim_.OpenSession(ok);
      if (!ok) send(message(WireType::Refused));
      return;
    }
    case WireType::CloseSession:
      sim_.CloseSession();
      return;
    case WireType::SettingsName:
      sim_.SetSettingsName(m.name);
      return;
    case WireType::ParallelTransfer:
      sim_.SetParallelTransfer(m.flagA);
      return;
    case WireType::FirmwareTimeout:
      sim_.SetFirmwareTimeout(m.number);
      return;
    case WireType::ShowTime:
      sim_.SetShowTime(m.number);
      return;
    case WireType::FirmwareSector:
      sim_.SendFirmwareSector(m.name, m.data, m.flagA, m.flagB);
      return;
    case WireType::Command:
      sim_.SendCommand(m.name, m.flagA, m.flagB);
      return;
    case WireType::RepeatCommand:
      sim_.SetRepeatCommand(m.flagA, m.name, m.flagB);
      clientHeld_ = false;  // a new repetition is not held
      if (flowHeld_) sim_.StopRepeat(false);
      return;
    case WireType::PeriodicCommand:
      sim_.SetPeriodicCommand(m.flagA, m.name, m.number);
      return;
    case WireType::GetRegister:
      sim_.GetRegister(m.name);
      return;
    case WireType::GetProperty:
      sim_.GetProperty(m.name);
      return;
    case WireType::PutRegister1:
      sim_.PutRegister1(m.name, static_cast<uint8_t>(m.number));
      return;
    case WireType::PutRegister2:
      sim_.PutRegister2(m.name, m.number);
      return;
    case WireType::PutRegister4:
      sim_.PutRegister4(m.name, m.number);
      return;
    case WireType::ResendLast:
      sim_.ResendLast();
      return;
    case WireType::StopRepeat:
      clientHeld_ = !m.flagA;
      applyHold();
      return;
    case WireType::PrepareFirmwareLoad:
      sim_.PrepareFirmwareLoad();
      return;
    case WireType::Error:
      clientClosed("the program closed the connection: " + m.text);
      return;
    default: {
      const std::string error = "the program sent an event (" + std::string(wireTypeName(m.type)) + ")";
      client_->closeWithError(error);
      clientClosed(error);
      return;
    }
  }
}

void SimStreamServer::applyHold() {
  sim_.StopRepeat(!(clientHeld_ || flowHeld_));
}

void SimStreamServer::send(const WireMessage& m) {
  if (!client_) return;
  bool online = false;
  sim_.GetOnline(online);
  if (online != onlineSent_) {
    onlineSent_ = online;
    WireMessage state = message(WireType::Online);
    state.flagA = online;
    client_->send(state);
  }
  client_->send(m);
  flowChanged();
}

void SimStreamServer::flowChanged() {
  if (!client_) return;
  const int64_t waiting = client_->bytesToWrite();
  if (!flowHeld_ && waiting > kHoldBytes) {
    flowHeld_ = true;
    applyHold();
  } else if (flowHeld_ && waiting < kResumeBytes) {
    flowHeld_ = false;
    applyHold();
  }
}

void SimStreamServer::ObexLinkDLL1_NoZorvikFoundEvent() {
  send(message(WireType::NoDevice));
}

void SimStreamServer::ObexLinkDLL1_StartSessionMsgEvent(const std::string& text) {
  WireMessage m = message(WireType::SessionMessage);
  m.data = text;
  send(m);
}

void SimStreamServer::ObexLinkDLL1_StartSessionEvent() {
  send(message(WireType::SessionStart));
}

void SimStreamServer::ObexLinkDLL1_EndSessionEvent() {
  send(message(WireType::SessionEnd));
}

void SimStreamServer::ObexLinkDLL1_HeaderEvent(const std::string& name, const std::string& value,
                                               bool parallel) {
  WireMessage m = message(WireType::Header);
  m.name = name;
  m.data = value;
  m.flagA = parallel;
  send(m);
}

void SimStreamServer::ObexLinkDLL1_rollevent(const std::string& chunk, int32_t total) {
  WireMessage m = message(WireType::Roll);
  m.data = chunk;
  m.number = total;
  send(m);
}

}  // namespace zorvik
