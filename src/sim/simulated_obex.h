#pragma once
#include <QElapsedTimer>
#include <cstdint>
#include <functional>
#include <string>

#include "link/class_obex.h"
#include "sim/delivery_plan.h"
#include "sim/packet_builder.h"
#include "sim/signal_generator.h"
#include "sim/sim_config.h"
#include "sim/sim_device.h"

class QTimer;

namespace zorvik {

// The virtual instrument behind the link contract: a session handshake, registers that echo,
// properties, acquisitions paced like a USB device, and the faults of the configuration.
// Every answer is queued on the event loop; nothing is delivered from inside a call.
// A register the device does not have is answered under its name with an empty value. In the boot
// state only the loader answers: "F" and the firmware sectors; it has no registers, so every
// register is answered as unknown, and properties and acquisitions go unanswered.
//
// An acquisition takes its time: presamples, the wait for the trigger up to the time-out, the
// record. A packet leaves at the pacing interval or when its acquisition is over, whichever is
// later (with `rate=max` at once: the device's time then passes only in the signal). Long records
// with RS bit 1 under parallel transfer stream as roll events while they are taken.
class SimulatedObex : public ClassOBEX {
 public:
  explicit SimulatedObex(SimConfig config);
  ~SimulatedObex() override;
  SimulatedObex(const SimulatedObex&) = delete;
  SimulatedObex& operator=(const SimulatedObex&) = delete;

  void PrepareFirmwareLoad() override {}
  void OpenSession(bool& ok) override;
  void CloseSession() override;
  void GetLinkName(std::string& name) override { name = "Zorvik simulated link"; }
  void GetLinkVersion(std::string& version) override { version = "1.0.0"; }
  void GetOnline(bool& online) override { online = online_; }
  void GetUsbSerial(std::string& text) override { text = config_.VSN; }
  void GetUsbVersion(std::string& text) override { text = config_.usbVersion; }
  void GetUsbName(std::string& text) override { text = config_.usbName; }
  void ShowPortSetup(bool) override {}
  void GetPortIsAutomatic(bool& automatic) override { automatic = false; }
  void SetSettingsName(const std::string& name) override { settingsName_ = name; }
  void SetParallelTransfer(bool on) override { parallel_ = on; }
  void SetFirmwareTimeout(int32_t ms) override { firmwareTimeoutMs_ = ms; }
  void SetShowTime(int32_t ms) override { showTimeMs_ = ms; }
  void SendFirmwareSector(const std::string& name, const std::string& data, bool flagA, bool flagB) override;
  void SendCommand(const std::string& name, bool flagA, bool flagB) override;
  void GetSerialActive(bool& active) override { active = repeating(); }
  void SetRepeatCommand(bool enable, const std::string& name, bool flag) override;
  void SetPeriodicCommand(bool enable, const std::string& name, int32_t periodMs) override;
  void GetRegister(const std::string& name) override;
  void GetProperty(const std::string& name) override;
  void PutRegister1(const std::string& name, uint8_t value) override;
  void PutRegister2(const std::string& name, int32_t value) override;
  void PutRegister4(const std::string& name, int32_t value) override;
  void ResendLast() override;
  void StopRepeat(bool resume) override;

  // Acquisition packets sent ("D" headers, empty ones included, resends not).
  uint64_t packetsSent() const { return packetsSent_; }
  const SimConfig& config() const { return config_; }
  const SimDevice& device() const { return device_; }
  const std::string& settingsName() const { return settingsName_; }
  int32_t firmwareTimeoutMs() const { return firmwareTimeoutMs_; }
  int32_t showTimeMs() const { return showTimeMs_; }

  // Calibration holds the next packet back by this long; it sends nothing.
  static constexpr int kCalibrationMs = 50;
  // A search for a device that is not there gives up after this long.
  static constexpr int kSearchMs = 200;

 private:
  enum class Session { Closed, Searching, Boot, Starting, Open };

  bool repeating() const { return session_ == Session::Open && repeat_ && !held_; }
  bool acquisitionWanted() const { return session_ == Session::Open && (repeating() || singles_ > 0); }
  // Runs a state change in event order: after what was posted before, before what follows.
  void queueState(std::function<void()> change);
  void write(const std::string& name, uint32_t bits);
  void scheduleAcquisition();
  void acquire();
  // Sends what of the acquisition under way is due, and waits for the rest.
  void deliverDue();
  void finishAcquisition();
  void dropAcquisition();
  // Ends the acquisition under way, if the write changes what it would be, and starts anew.
  void restartAfterWrite(const std::string& name);
  double dueMs(double seconds) const;
  void calibrate();
  void endSession();

  SimConfig config_;
  SimDevice device_;
  SignalGenerator generator_;
  PacketBuilder builder_;

  QTimer* acquisitionTimer_;
  QTimer* deliveryTimer_;
  QTimer* searchTimer_;
  QTimer* periodicTimer_;

  Session session_ = Session::Closed;
  uint64_t sessionGeneration_ = 0;  // queued state changes of an ended session are dropped
  bool online_ = false;
  bool repeat_ = false;
  bool held_ = false;
  int singles_ = 0;  // single acquisitions asked for outside the repetition
  bool calibrationDue_ = false;
  bool parallel_ = false;
  double deviceTime_ = 0;  // seconds on the device's clock, kept within one signal period

  // The acquisition under way: its packet, what is still to be sent, and since when.
  bool acquiring_ = false;
  bool acquiringSingle_ = false;  // asked for by "D", not by the repetition
  std::string packet_;
  DeliveryPlan plan_;
  size_t nextItem_ = 0;
  double decidedMs_ = 0;  // until then the trigger is still awaited
  QElapsedTimer clock_;
  uint64_t packetsSent_ = 0;
  uint64_t sessionPackets_ = 0;
  std::string lastPacket_;
  bool hasLastPacket_ = false;
  std::string settingsName_;
  int32_t firmwareTimeoutMs_ = 0;
  int32_t showTimeMs_ = 0;
};

}  // namespace zorvik
