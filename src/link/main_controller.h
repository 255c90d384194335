#pragma once
#include <QTimer>
#include <array>
#include <functional>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "config/settings.h"
#include "link/class_obex.h"
#include "link/control_hooks.h"
#include "link/device_cache.h"
#include "link/main_state.h"
#include "signal/process_packet.h"
#include "signal/roll_stream.h"
#include "ui/messages.h"

namespace zorvik {

// The identity of a running instance, fixed at start-up.
struct InstanceIdentity {
  int instance = 1;
  std::string InstanceTitle = "ZORVIK 1";
  std::string SettingsName = "Zorvik DSO1";
  std::string caption;
};
InstanceIdentity makeIdentity(int instance);

// The core of the main window: the link and its events, the session life cycle, the header dispatch and the
// packet entry. Widgets show MainState and forward the user's actions here.
class MainController : public ObexEvents, public PacketHost, private RollHost {
 public:
  MainController(SettingsStore& settings, MessageSink& messages, MainView& view);
  ~MainController() override;

  // Start-up steps that need the link: hand it over (the controller does not own it) and name the settings.
  void attachLink(ClassOBEX* link);
  void setIdentity(const InstanceIdentity& id);
  void setHooks(ControlHooks* hooks) { hooks_ = hooks ? hooks : &noHooks_; }
  const InstanceIdentity& identity() const { return identity_; }

  bool Online();
  ClassOBEX* link() { return link_; }
  // KeyConnect and the menu entry LinkControl.
  void KeyConnect_Click();
  // The menu entry LinkSetup.
  void LinkSetup_Click();
  // Closing the window by any means: false cancels the close.
  // The window's part of the exit: the open meters and whether the spectrum and histogram stand; without
  // it (no windows) none are open.
  std::function<void()> storeWindowState;
  bool requestClose();
  // Waits with the event loop running (events of the link run inside).
  static void Wait(int ms);

  // ObexEvents.
  void ObexLinkDLL1_NoZorvikFoundEvent() override;
  void ObexLinkDLL1_StartSessionMsgEvent(const std::string& message) override;
  void ObexLinkDLL1_StartSessionEvent() override;
  void ObexLinkDLL1_EndSessionEvent() override;
  void ObexLinkDLL1_HeaderEvent(const std::string& name, const std::string& value, bool parallel) override;
  void ObexLinkDLL1_rollevent(const std::string& chunk, int32_t total) override;

  // The packet entry; every redraw is a replay through it.
  PacketInfo ProcessPacket(const std::string& packet);
  void replayLastPacket();
  // The developer's plot speed test (key "T" with --dev): 20 synthetic packets, frames per second in the title.
  void PlotSpeedTest();

  const MainState& state() const { return state_; }
  SessionState sessionState() const { return session_; }
  DeviceCache& cache() { return cache_; }
  const DeviceCache& cache() const { return cache_; }
  SettingsStore& settings() { return settings_; }
  MessageSink& messages() { return messages_; }

  const std::string& LastPacket() const { return lastPacket_; }
  void setLastPacket(const std::string& packet) { lastPacket_ = packet; }
  int32_t PacketCount() const { return packetCount_; }
  void setPacketCount(int32_t count) { packetCount_ = count; }
  int SampleCount() const { return processor_.SampleCount(); }
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
  bool unimeterOpen = false;
  // The developer switch of the plot speed test.
  bool devMode = false;

  // Called when MainState changed; also used by the hooks of later stages.
  void changed() { view_.stateChanged(); }
  MainState& mutableState() { return state_; }
  // Stops a serial acquisition as the stop key does.
  void stopRepeat();

  // PacketHost.
  uint32_t tickMs() override;
  void showFrameRate(int fps) override;
  void setModeTextColor(uint32_t bgr) override;
  void setNoTriggerVisible(bool visible) override;
  void setRisIndicator(bool visible, const std::string& caption) override;
  std::string modeText() const override { return state_.modeText; }
  void setModeText(const std::string& text) override;
  void showCurSamples(int count) override;
  bool noTriggerMsgChecked() const override { return noTriggerMsg_; }
  bool risActive() const override { return risActive_; }
  int averagesPeaks() const override { return averagesPeaks_; }
  void unsupportedMode(const std::string& text) override;
  // Where the roll stream draws, and the settings it reads at the start of each packet.
  void setRollCanvas(RollCanvas* canvas, std::function<RollSettings()> settings);
  // A roll starts: the horizontal zoom goes off, since the stream draws one sample a column.
  std::function<void()> onRollZoomOff = [] {};
  bool workModeSerial = true;  // "Progress"/"Stopped" are shown only for single acquisitions
  const RollStream& roll() const { return *roll_; }

  // The stages after the header go to the display and the readers, once they are attached.
  void setStages(PacketStages* stages) { stages_ = stages ? stages : &noStages_; }
  bool selectRectVisible() const override { return stages_->selectRectVisible(); }
  void sampleCountChanged(int n) override { stages_->sampleCountChanged(n); }
  void SetModeLabel(uint32_t mode, bool multi, int n) override { stages_->SetModeLabel(mode, multi, n); }
  void PlotSamples(std::string_view s, int n, bool dec, bool two) override { stages_->PlotSamples(s, n, dec, two); }
  void PlotPeaks(std::string_view s, int n, bool half) override { stages_->PlotPeaks(s, n, half); }
  void measure(const SegmentData& s) override { stages_->measure(s); }
  void spectrum(const SegmentData& s) override { stages_->spectrum(s); }
  void stat(const SegmentData& s) override { stages_->stat(s); }
  void recordFrame(int ms) override { stages_->recordFrame(ms); }
  void wallpaper() override { stages_->wallpaper(); }

  // The scale of the record, kept by the channel and time-base controllers and read by every reader.
  float SamplePeriod = 1e-6f;   // seconds per sample
  float FullScaleVolts = 1.6f;  // volts over the eight divisions of the screen's height
  float ZeroVolts = 0.0f;       // volts at mid code
  int SamplesPerDiv = 16;       // samples in one division of 32 pixels at horizontal zoom 1

 private:
  void setConnectCaption(const std::string& caption);
  void setField(const std::string& name, const std::string& text);
  void clearCaches();
  void checkSetup();
  void firstTimeTimer();
  void dataHeader(const std::string& value, bool parallel);
  void risDiagnostic(const std::string& value);
  void limitHeader(const std::string& name, const std::string& value);
  bool registerHeader(const std::string& name, const std::string& value);

  // RollHost.
  RollSettings rollSettings() override { return rollSettings_ ? rollSettings_() : RollSettings{}; }
  void rollZoomOff() override { onRollZoomOff(); }
  void rollHeader(const PacketInfo& header) override;
  void rollSampleCount(int count) override;
  void rollProgress(bool finished) override;

  SettingsStore& settings_;
  MessageSink& messages_;
  MainView& view_;
  ControlHooks noHooks_;
  PacketStages noStages_;
  PacketStages* stages_ = &noStages_;
  ControlHooks* hooks_ = &noHooks_;
  ClassOBEX* link_ = nullptr;
  InstanceIdentity identity_;
  MainState state_;
  SessionState session_ = SessionState::NoSession;
  DeviceCache cache_;
  PacketProcessor processor_;
  QTimer firstTimeTimer_;

  // The seven limits of the session: TOv, TOl, MCl, MCh, TMl, TMh, TPl.
  std::array<bool, 7> limitFlags_{};
  bool sessionSetupDone_ = false;
  bool firstCalibrationDone_ = false;
  bool replotNeeded_ = false;
  bool noTriggerMsg_ = true;
  bool risActive_ = false;
  int averagesPeaks_ = 0;
  int voltDivPosition_ = -1;
  int32_t packetCount_ = 0;
  int32_t showTimeMs_ = 0;
  bool inShowWait_ = false;  // inside the wait of a packet of a parallel transfer
  std::string lastPacket_;
  int risRow_ = 0;
  RollCanvas noCanvas_;
  std::function<RollSettings()> rollSettings_;
  std::unique_ptr<RollStream> roll_;
};

}  // namespace zorvik
