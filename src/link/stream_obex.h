#pragma once
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "link/class_obex.h"
#include "link/device_address.h"
#include "link/wire_connection.h"

namespace zorvik {

// The link contract over a byte stream to an instrument served elsewhere (zorvik-sim, or a device
// server): every call becomes a request message, every message of the instrument an event, queued
// on the event loop in the order the instrument sent them. A connection is made at OpenSession and
// given up when the session ends.
//
// The faults of a wire: a connection that cannot be made, or an instrument that refuses the session,
// is "no device found"; a peer that goes away during a session is the device lost (the session
// ends); a frame it left unfinished is dropped. A frame that breaks the framing ends the connection
// the same way, and its reason goes to onStreamError.
class StreamObex : public ClassOBEX {
 public:
  explicit StreamObex(DeviceAddress address);
  ~StreamObex() override;
  StreamObex(const StreamObex&) = delete;
  StreamObex& operator=(const StreamObex&) = delete;

  void PrepareFirmwareLoad() override;
  void OpenSession(bool& ok) override;
  void CloseSession() override;
  void GetLinkName(std::string& name) override { name = "Zorvik stream link"; }
  void GetLinkVersion(std::string& version) override { version = "1.0.0"; }
  void GetOnline(bool& online) override { online = online_; }
  void GetUsbSerial(std::string& text) override { text = usbSerial_; }
  void GetUsbVersion(std::string& text) override { text = usbVersion_; }
  void GetUsbName(std::string& text) override { text = usbName_; }
  void ShowPortSetup(bool) override {}
  void GetPortIsAutomatic(bool& automatic) override { automatic = false; }
  void SetSettingsName(const std::string& name) override;
  void SetParallelTransfer(bool on) override;
  void SetFirmwareTimeout(int32_t ms) override;
  void SetShowTime(int32_t ms) override;
  void SendFirmwareSector(const std::string& name, const std::string& data, bool flagA, bool flagB) override;
  void SendCommand(const std::string& name, bool flagA, bool flagB) override;
  void GetSerialActive(bool& active) override { active = online_ && repeat_ && !held_; }
  void SetRepeatCommand(bool enable, const std::string& name, bool flag) override;
  void SetPeriodicCommand(bool enable, const std::string& name, int32_t periodMs) override;
  void GetRegister(const std::string& name) override;
  void GetProperty(const std::string& name) override;
  void PutRegister1(const std::string& name, uint8_t value) override;
  void PutRegister2(const std::string& name, int32_t value) override;
  void PutRegister4(const std::string& name, int32_t value) override;
  void ResendLast() override;
  void StopRepeat(bool resume) override;

  const DeviceAddress& address() const { return address_; }
  // Why the stream was refused, queued in order with the events (the session has ended by then).
  std::function<void(const std::string& error)> onStreamError;
  // Bytes of an unfinished frame held at this moment (0 without a connection).
  size_t partialBytes() const { return connection_ ? connection_->partialBytes() : 0; }

  // How long a connection may take to stand.
  static constexpr int kConnectMs = 3000;
  // Steps queued but not yet run beyond which reading waits: a program slower than the
  // instrument holds the instrument back, as a full USB buffer would.
  static constexpr int kMaxQueued = 64;

 private:
  void send(WireMessage message);
  void sendName(WireType type, const std::string& name);
  void received(WireMessage&& message);
  void closed(const std::string& error, bool wasConnected);
  // Runs in event order, after what was queued before. The steps wait in one list, run by one queued
  // call, so that a read full of packets costs one turn of the event loop, not one a packet.
  void queue(std::function<void()> step);
  void deliver(std::function<void(ObexEvents&)> event);
  void runSteps();
  // Drops the connection; it is deleted from the event loop, never inside one of its callbacks.
  void retire();
  void refuse(const std::string& error);

  DeviceAddress address_;
  std::unique_ptr<WireConnection> connection_;
  std::vector<std::unique_ptr<WireConnection>> retired_;
  bool opening_ = false;    // OpenSession asked, no session message yet
  bool sessionUp_ = false;  // the instrument has begun a session on this connection
  bool online_ = false;
  bool repeat_ = false;
  bool held_ = false;
  std::deque<std::function<void()>> steps_;
  bool runPosted_ = false;
  std::string settingsName_;
  bool parallel_ = false;
  int32_t firmwareTimeoutMs_ = 0;
  int32_t showTimeMs_ = 0;
  std::string usbSerial_, usbVersion_, usbName_;
};

}  // namespace zorvik
