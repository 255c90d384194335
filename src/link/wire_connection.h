#pragma once
#include <QObject>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "link/device_address.h"
#include "link/wire_frame.h"
#include "link/wire_message.h"

class QIODevice;
class QLocalSocket;
class QTcpSocket;
class QTimer;

namespace zorvik {

// One connection of the device stream, either end, on a Unix or a TCP socket: writes messages as
// frames and hands on each whole message read. Everything runs on the event loop: no thread, no
// blocking wait. A stream that breaks the framing is refused: the reason goes to the peer as an
// ERROR message, the connection closes and onClosed tells it. The owner must not delete the
// connection from inside one of its callbacks: the socket may be inside its own signal then.
class WireConnection {
 public:
  // Starts connecting; onConnected or onClosed follows from the event loop.
  static std::unique_ptr<WireConnection> connectTo(const DeviceAddress& address, int timeoutMs);
  // Takes over a socket that a server accepted.
  explicit WireConnection(QLocalSocket* socket);
  explicit WireConnection(QTcpSocket* socket);
  ~WireConnection();
  WireConnection(const WireConnection&) = delete;
  WireConnection& operator=(const WireConnection&) = delete;

  // Queued behind what was sent before; held until the connection stands, dropped once it is closed.
  void send(const WireMessage& message);
  // Sends ERROR with the text, then closes (what was written still goes out). onClosed is not called.
  void closeWithError(const std::string& text);
  // Closes at once, without a word; onClosed is not called.
  void abort();
  // While paused no message is handed on; the bytes wait in the socket, and once its buffer is full
  // the peer's writes wait too.
  void setPaused(bool paused);

  bool connected() const { return connected_ && !closed_; }
  int64_t bytesToWrite() const;
  // Bytes of a frame begun but not whole.
  size_t partialBytes() const { return decoder_.partialBytes(); }

  std::function<void()> onConnected;
  std::function<void(WireMessage&& message)> onMessage;
  // Called once when the connection ends by itself: `error` is empty when the peer closed it (a frame
  // it left unfinished is dropped), else what went wrong (no connection could be made, a bad frame).
  // `wasConnected` tells a connection that stood from one that never did.
  std::function<void(const std::string& error, bool wasConnected)> onClosed;
  // Written bytes have left for the peer.
  std::function<void()> onWritten;

  // The read buffer of the socket, beyond which the peer must wait.
  static constexpr int64_t kReadBufferBytes = 1 << 20;

 private:
  WireConnection();
  template <typename Socket>
  void watch(Socket* socket);
  void wentUp();
  void drain();
  void peerClosed();
  void finish(const std::string& error);
  void disconnectSocket();

  QObject context_;
  QIODevice* io_ = nullptr;  // the socket, owned
  QLocalSocket* local_ = nullptr;
  QTcpSocket* tcp_ = nullptr;
  QTimer* connectTimer_ = nullptr;
  FrameDecoder decoder_;
  WireFrame frame_;
  std::string outbox_;  // written before the connection stood
  bool connected_ = false;
  bool paused_ = false;
  bool peerGone_ = false;
  bool closed_ = false;
};

}  // namespace zorvik
