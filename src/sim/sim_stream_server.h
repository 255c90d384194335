#pragma once
#include <QObject>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "link/device_address.h"
#include "link/obex_events.h"
#include "link/wire_connection.h"
#include "sim/sim_config.h"
#include "sim/simulated_obex.h"

class QLocalServer;
class QTcpServer;
class QLocalSocket;
class QTcpSocket;

namespace zorvik {

// The simulated instrument served on a Unix socket or a TCP port, to one program at a time: its
// requests are the calls of the link contract, its events go back as messages. A program that
// connects while another is served is told so and closed. When the program goes away, its session
// ends, as a device's does when the cable is pulled. When the program reads more slowly than the
// instrument sends, the instrument holds its acquisitions until the backlog has gone out.
class SimStreamServer : private ObexEvents {
 public:
  explicit SimStreamServer(const SimConfig& config);
  ~SimStreamServer() override;
  SimStreamServer(const SimStreamServer&) = delete;
  SimStreamServer& operator=(const SimStreamServer&) = delete;

  // Starts listening; throws Fault when the address cannot be served. A Unix socket file left by a
  // server that is gone is replaced.
  void listen(const DeviceAddress& address);
  // Where it listens, with the port a TCP listener on port 0 was given.
  std::string address() const;
  SimulatedObex& device() { return sim_; }
  bool serving() const { return client_ != nullptr; }

  // One line for each connection, refusal and fault, for the operator.
  std::function<void(const std::string& line)> onLog;

  // Bytes waiting for the program beyond which acquisitions are held, and below which they go on.
  static constexpr int64_t kHoldBytes = 4 << 20;
  static constexpr int64_t kResumeBytes = 1 << 20;

 private:
  template <typename Socket>
  void accepted(Socket* socket);
  void adopt(std::unique_ptr<WireConnection> connection);
  void request(WireMessage&& m);
  void clientClosed(const std::string& error);
  void retire(std::unique_ptr<WireConnection> connection);
  void send(const WireMessage& m);
  void flowChanged();
  void applyHold();
  void log(const std::string& line);

  void ObexLinkDLL1_NoZorvikFoundEvent() override;
  void ObexLinkDLL1_StartSessionMsgEvent(const std::string& message) override;
  void ObexLinkDLL1_StartSessionEvent() override;
  void ObexLinkDLL1_EndSessionEvent() override;
  void ObexLinkDLL1_HeaderEvent(const std::string& name, const std::string& value, bool parallel) override;
  void ObexLinkDLL1_rollevent(const std::string& chunk, int32_t total) override;

  QObject context_;
  SimulatedObex sim_;
  DeviceAddress address_;
  std::unique_ptr<QLocalServer> localServer_;
  std::unique_ptr<QTcpServer> tcpServer_;
  std::unique_ptr<WireConnection> client_;
  std::deque<std::unique_ptr<WireConnection>> arriving_;  // accepted, not yet taken in
  std::vector<std::unique_ptr<WireConnection>> retired_;
  bool onlineSent_ = false;
  bool clientHeld_ = false;  // the program's StopRepeat
  bool flowHeld_ = false;    // the program's backlog
};

}  // namespace zorvik
