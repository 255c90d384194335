#include "link/wire_connection.h"

#include <QFileInfo>
#include <QLocalSocket>
#include <QTcpSocket>
#include <QTimer>

#include "core/fault.h"

namespace zorvik {

namespace {

constexpr qint64 kReadChunk = 1 << 16;

}  // namespace

WireConnection::WireConnection() = default;

WireConnection::WireConnection(QLocalSocket* socket) : io_(socket), local_(socket) {
  watch(socket);
  wentUp();
}

WireConnection::WireConnection(QTcpSocket* socket) : io_(socket), tcp_(socket) {
  watch(socket);
  wentUp();
}

std::unique_ptr<WireConnection> WireConnection::connectTo(const DeviceAddress& address, int timeoutMs) {
  std::unique_ptr<WireConnection> c(new WireConnection());
  c->connectTimer_ = new QTimer(&c->context_);
  c->connectTimer_->setSingleShot(true);
  QObject::connect(c->connectTimer_, &QTimer::timeout, &c->context_, [c = c.get(), timeoutMs] {
    if (!c->connected_) c->finish("no connection within " + std::to_string(timeoutMs) + " ms");
  });
  c->connectTimer_->start(timeoutMs);
  if (address.kind == DeviceAddress::Kind::Unix) {
    c->local_ = new QLocalSocket();
    c->io_ = c->local_;
    c->watch(c->local_);
  } else {
    c->tcp_ = new QTcpSocket();
    c->io_ = c->tcp_;
    c->watch(c->tcp_);
  }
  // A Unix socket may connect or fail inside the call: it is made from the event loop, once the
  // caller has set the callbacks.
  QMetaObject::invokeMethod(
      &c->context_,
      [c = c.get(), address] {
        if (c->local_) {
          // A name without a slash would be looked for in the temporary folder: the path is taken as given.
          c->local_->connectToServer(QFileInfo(QString::fromStdString(address.path)).absoluteFilePath());
        } else {
          c->tcp_->connectToHost(QString::fromStdString(address.host), address.port);
        }
      },
      Qt::QueuedConnection);
  return c;
}

template <typename Socket>
void WireConnection::watch(Socket* socket) {
  socket->setReadBufferSize(kReadBufferBytes);
  QObject::connect(socket, &Socket::connected, &context_, [this] { wentUp(); });
  QObject::connect(socket, &Socket::readyRead, &context_, [this] { drain(); });
  QObject::connect(socket, &Socket::disconnected, &context_, [this] { peerClosed(); });
  QObject::connect(socket, &Socket::bytesWritten, &context_, [this] {
    if (onWritten) onWritten();
  });
  QObject::connect(socket, &Socket::errorOccurred, &context_, [this, socket] {
    // A connection that stood ends with `disconnected`, after its last bytes have been read.
    if (!connected_) finish(socket->errorString().toStdString());
  });
}

WireConnection::~WireConnection() {
  if (io_) {
    QObject::disconnect(io_, nullptr, &context_, nullptr);
    if (!closed_) disconnectSocket();
    delete io_;
  }
}

void WireConnection::wentUp() {
  const bool up = local_ ? local_->state() == QLocalSocket::ConnectedState
                         : tcp_->state() == QAbstractSocket::ConnectedState;
  if (connected_ || closed_ || !up) return;
  connected_ = true;
  if (connectTimer_) connectTimer_->stop();
  if (tcp_) tcp_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
  if (!outbox_.empty()) {
    io_->write(outbox_.data(), static_cast<qint64>(outbox_.size()));
    outbox_.clear();
  }
  if (onConnected) onConnected();
  drain();
}

void WireConnection::send(const WireMessage& message) {
  if (closed_) return;
  if (!connected_) {
    appendMessage(outbox_, message);
    return;
  }
  std::string bytes;
  appendMessage(bytes, message);
  io_->write(bytes.data(), static_cast<qint64>(bytes.size()));
}

int64_t WireConnection::bytesToWrite() const {
  return io_ ? io_->bytesToWrite() + static_cast<int64_t>(outbox_.size()) : 0;
}

void WireConnection::setPaused(bool paused) {
  if (paused_ == paused) return;
  paused_ = paused;
  if (!paused_) {
    // Bytes that came in while paused raise no new signal: take them now, from the event loop.
    QMetaObject::invokeMethod(
        &context_, [this] { drain(); }, Qt::QueuedConnection);
  }
}

void WireConnection::drain() {
  if (closed_ || !connected_) return;
  try {
    while (!paused_) {
      if (decoder_.next(frame_)) {
        WireMessage message = decodeMessage(frame_);
        if (onMessage) onMessage(std::move(message));
        if (closed_) return;
        continue;
      }
      if (io_->bytesAvailable() <= 0) break;
      const QByteArray chunk = io_->read(kReadChunk);
      if (chunk.isEmpty()) break;
      decoder_.feed(std::string_view(chunk.constData(), static_cast<size_t>(chunk.size())));
    }
  } catch (const Fault& e) {
    closeWithError(e.what());
    if (onClosed) onClosed(e.what(), true);
    return;
  }
  if (peerGone_ && !paused_) finish({});
}

void WireConnection::peerClosed() {
  if (closed_) return;
  peerGone_ = true;
  if (!connected_) {
    finish("the connection was closed");
    return;
  }
  drain();
}

void WireConnection::finish(const std::string& error) {
  if (closed_) return;
  closed_ = true;
  if (connectTimer_) connectTimer_->stop();
  const bool was = connected_;
  if (io_) io_->disconnect(&context_);
  if (io_ && !peerGone_) local_ ? local_->abort() : tcp_->abort();
  if (onClosed) onClosed(error, was);
}

void WireConnection::closeWithError(const std::string& text) {
  if (closed_) return;
  WireMessage m;
  m.type = WireType::Error;
  m.text = text;
  send(m);
  closed_ = true;
  if (io_) io_->disconnect(&context_);
  // The socket may be deleted before the event loop turns again: the reason goes out now, as far as
  // the peer takes it.
  if (local_) local_->flush();
  if (tcp_) tcp_->flush();
  disconnectSocket();
}

void WireConnection::abort() {
  if (closed_) return;
  closed_ = true;
  if (io_) {
    io_->disconnect(&context_);
    local_ ? local_->abort() : tcp_->abort();
  }
}

void WireConnection::disconnectSocket() {
  if (local_) {
    local_->disconnectFromServer();
  } else if (tcp_) {
    tcp_->disconnectFromHost();
  }
}

}  // namespace zorvik
