#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "config/settings.h"
#include "core/recording_sink.h"
#include "export/scripted_file_dialogs.h"
#include "link/recording_obex.h"
#include "session/basic_control.h"
#include "session/key_map.h"
#include "session/main_controller.h"
#include "session/run_control.h"
#include "session/scope_session.h"

namespace zorvik {

struct SessionOptions {
  std::vector<std::string> simOptions;
  std::string device;  // unix:PATH or tcp:HOST:PORT: the instrument served there instead of the simulated one
  int packets = 1;
  bool single = false;  // N presses of Start instead of a serial acquisition
  double timeoutSeconds = 10;
  // Keys of the keyboard pressed in order once the session is ready ("Comma" stands for ",").
  std::vector<std::string> keys;
};

// One "D" header as the program took it.
struct PacketRecord {
  size_t length = 0;  // 0: the empty answer of Norm mode when no trigger came
  bool triggered = false;
  bool parallel = false;
  std::string statusText;  // the mode text right after the program took it
};

struct SessionResult {
  bool readyReached = false;
  int packets = 0;
  std::string error;      // empty on success
  std::string linkError;  // why the device stream was refused, if it was
  // The device as the session knew it before the disconnect cleared the session's caches.
  DeviceCache device;
  std::string statusText;
  bool noTriggerVisible = false;
  // Every "D" header in order of arrival, the first kMaxPacketLog of them.
  std::vector<PacketRecord> packetLog;
  static constexpr size_t kMaxPacketLog = 10000;
};

// The program without widgets against the simulated instrument (or one served on a socket): the same session
// core as the window (controllers, registers, the packet's stages), driven through start-up, connect,
// acquisitions and disconnect. Every box is recorded; the window counts as visible.
class HeadlessSession : private MainView {
 public:
  HeadlessSession(SettingsStore& settings, const std::vector<std::string>& simOptions, int cpuMHz = 200);
  // `device` non-empty: the instrument served at that address (see makeLink).
  HeadlessSession(SettingsStore& settings, const std::vector<std::string>& simOptions,
                  const std::string& device, int cpuMHz = 200);
  ~HeadlessSession() override;

  SessionResult run(const SessionOptions& options);

  ScopeSession& session() { return *session_; }
  MainController& main() { return session_->main(); }
  RecordingObex& link() { return *recorder_; }
  // The device end of the link, behind the recorder.
  ClassOBEX& device() { return *device_; }
  RecordingSink& messages() { return sink_; }
  RunControl& run() { return session_->run(); }
  TriggerControl& trigger() { return session_->trigger(); }
  BasicControl& control() { return session_->control(); }
  // Every "D" header so far (see SessionResult::packetLog).
  const std::vector<PacketRecord>& packetLog() const { return log_; }
  // Runs the event loop until the predicate holds or the time is up.
  static bool spinUntil(const std::function<bool()>& done, int timeoutMs);

 private:
  void dataHeader(const std::string& packet, bool parallel, bool handled);

  // Packets with samples taken since the run began.
  int taken() const { return static_cast<int>(packetsTaken_ - firstPacket_); }

  std::string linkError_;
  int wanted_ = 0;
  uint64_t packetsTaken_ = 0, firstPacket_ = 0;
  uint64_t dataHeaders_ = 0;  // "D" headers taken, empty ones included
  std::vector<PacketRecord> log_;
  std::vector<size_t> open_;  // entries of the log whose packet is being taken (waits may nest)
  RecordingSink sink_{kAnswerNo};
  ScriptedFileDialogs dialogs_;
  std::unique_ptr<ClassOBEX> device_;
  RecordingObex* recorder_ = nullptr;  // owned by the session, in front of the device
  std::unique_ptr<ScopeSession> session_;
};

}  // namespace zorvik
