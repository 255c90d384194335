#pragma once
#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "config/settings.h"
#include "core/messages.h"
#include "link/class_obex.h"
#include "link/device_cache.h"
#include "link/main_state.h"
#include "signal/process_packet.h"

namespace zorvik {

// The identity of a running instance, fixed at start-up.
struct InstanceIdentity {
  int instance = 1;
  std::string InstanceTitle = "ZORVIK 1";
  std::string SettingsName = "Zorvik DSO1";
  std::string caption;
};
InstanceIdentity makeIdentity(int instance);

// The scale of a record: what turns sample codes and indices into volts and seconds.
struct RecordScale {
  float SamplePeriod = 1e-6f;   // seconds per sample
  float FullScaleVolts = 1.6f;  // volts over the eight divisions of the screen's height
  float ZeroVolts = 0.0f;       // volts at mid code
  int SamplesPerDiv = 16;       // samples in one division of 32 pixels at horizontal zoom 1
};

// What the front-panel controllers, the files and the firmware update see of the session: the link, the
// register cache, the settings, the message sink, the window's state and the record's scale. The session
// (header dispatch, start-up, the packet entry) fills it; it lives above the controllers that use this.
class DeviceContext {
 public:
  DeviceContext(SettingsStore& settings, MessageSink& messages, MainView& view)
      : settings_(settings), messages_(messages), view_(view) {}
  virtual ~DeviceContext() = default;
  DeviceContext(const DeviceContext&) = delete;
  DeviceContext& operator=(const DeviceContext&) = delete;

  bool Online();
  ClassOBEX* link() { return link_; }
  const InstanceIdentity& identity() const { return identity_; }
  // Waits with the event loop running (events of the link run inside).
  static void Wait(int ms);
  virtual uint32_t tickMs();

  // The packet entry; every redraw is a replay through it.
  virtual PacketInfo ProcessPacket(const std::string& packet) = 0;
  virtual void replayLastPacket() = 0;
  // Stops a serial acquisition as the stop key does.
  virtual void stopRepeat() = 0;
  virtual int SampleCount() const = 0;

  const MainState& state() const { return state_; }
  SessionState sessionState() const { return session_; }
  DeviceCache& cache() { return cache_; }
  const DeviceCache& cache() const { return cache_; }
  SettingsStore& settings() { return settings_; }
  MessageSink& messages() { return messages_; }

  const std::string& LastPacket() const { return lastPacket_; }
  void setLastPacket(const std::string& packet) { lastPacket_ = packet; }
  int32_t PacketCount() const { return packetCount_; }
  // Every packet that came in this run of the program, never set back (PacketCount starts again with
  // the persistence).
  int64_t packetsReceived() const { return packetsReceived_; }
  void setPacketCount(int32_t count) { packetCount_ = count; }
  bool ReplotNeeded() const { return replotNeeded_; }
  void setReplotNeeded(bool on) { replotNeeded_ = on; }
  int32_t ShowTimeMs() const { return showTimeMs_; }
  void setShowTimeMs(int32_t ms) { showTimeMs_ = ms; }
  bool FirstCalibrationDone() const { return firstCalibrationDone_; }
  void setFirstCalibrationDone(bool on) { firstCalibrationDone_ = on; }
  bool NoTriggerMsg() const { return noTriggerMsg_; }
  void setNoTriggerMsg(bool on) { noTriggerMsg_ = on; }
  bool RisActive() const { return risActive_; }
  void setRisActive(bool on) { risActive_ = on; }
  int AveragesPeaks() const { return averagesPeaks_; }
  void setAveragesPeaks(int value) { averagesPeaks_ = value; }
  // Position of the present V/div in the list of the channel (-1 when unknown).
  void setVoltDivPosition(int position) { voltDivPosition_ = position; }
  bool limitFlag(const std::string& name) const;
  // Whether a meter window is open: the session start then asks for the device's status byte (L_B).
  std::function<bool()> unimeterOpen = [] { return false; };
  // The developer switch of the plot speed test.
  bool devMode = false;
  bool workModeSerial = true;  // "Progress"/"Stopped" are shown only for single acquisitions

  // Called when MainState changed.
  void changed() { view_.stateChanged(); }
  MainState& mutableState() { return state_; }

  // The scale of the record, kept by the channel and time-base controllers and read by every reader;
  // every change goes through the one setter.
  const RecordScale& scale() const { return scale_; }
  void setScale(const RecordScale& scale) { scale_ = scale; }

 protected:
  static constexpr const char* kLimitNames[7] = {"TOv", "TOl", "MCl", "MCh", "TMl", "TMh", "TPl"};

  SettingsStore& settings_;
  MessageSink& messages_;
  MainView& view_;
  ClassOBEX* link_ = nullptr;
  InstanceIdentity identity_;
  MainState state_;
  SessionState session_ = SessionState::NoSession;
  DeviceCache cache_;
  // The seven limits of the session: TOv, TOl, MCl, MCh, TMl, TMh, TPl.
  std::array<bool, 7> limitFlags_{};
  bool firstCalibrationDone_ = false;
  bool replotNeeded_ = false;
  bool noTriggerMsg_ = true;
  bool risActive_ = false;
  int averagesPeaks_ = 0;
  int voltDivPosition_ = -1;
  int32_t packetCount_ = 0;
  int64_t packetsReceived_ = 0;
  int32_t showTimeMs_ = 0;
  std::string lastPacket_;

 private:
  RecordScale scale_;
};

}  // namespace zorvik
