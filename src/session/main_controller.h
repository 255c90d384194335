#pragma once
#include <QTimer>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "link/device_context.h"
#include "session/register_table.h"
#include "signal/roll_stream.h"

namespace zorvik {

// The core of the main window: the link and its events, the session life cycle, the header dispatch and the
// packet entry. Widgets show MainState and forward the user's actions here.
class MainController : public DeviceContext, public ObexEvents, public PacketHost, private RollHost {
 public:
  MainController(SettingsStore& settings, MessageSink& messages, MainView& view);
  ~MainController() override;

  // Start-up steps that need the link: hand it over (the controller does not own it) and name the settings.
  void attachLink(ClassOBEX* link);
  void setIdentity(const InstanceIdentity& id);
  // Every register with its writer and echo, filled by whoever owns the controllers.
  RegisterTable& registers() { return registers_; }
  // KeyConnect and the menu entry LinkControl.
  void KeyConnect_Click();
  // The menu entry LinkSetup.
  void LinkSetup_Click();
  // Closing the window by any means: false cancels the close.
  // The window's part of the exit: the open meters and whether the spectrum and histogram stand; without
  // it (no windows) none are open.
  std::function<void()> storeWindowState;
  bool requestClose();
  // ObexEvents.
  void ObexLinkDLL1_NoZorvikFoundEvent() override;
  void ObexLinkDLL1_StartSessionMsgEvent(const std::string& message) override;
  void ObexLinkDLL1_StartSessionEvent() override;
  void ObexLinkDLL1_EndSessionEvent() override;
  void ObexLinkDLL1_HeaderEvent(const std::string& name, const std::string& value, bool parallel) override;
  void ObexLinkDLL1_rollevent(const std::string& chunk, int32_t total) override;

  // The packet entry; every redraw is a replay through it.
  PacketInfo ProcessPacket(const std::string& packet) override;
  void replayLastPacket() override;
  // The developer's plot speed test (key "T" with --dev): 20 synthetic packets, frames per second in the
  // title.
  void PlotSpeedTest();

  int SampleCount() const override { return processor_.SampleCount(); }
  void stopRepeat() override;

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
  // An empty "D": no trigger came.
  std::function<void()> onNoTrigger = [] {};
  const RollStream& roll() const { return *roll_; }

  // The stages after the header go to the display and the readers, once they are attached.
  void setStages(PacketStages* stages) { stages_ = stages ? stages : &noStages_; }
  bool selectRectVisible() const override { return stages_->selectRectVisible(); }
  void sampleCountChanged(int n) override { stages_->sampleCountChanged(n); }
  void SetModeLabel(uint32_t mode, bool multi, int n) override { stages_->SetModeLabel(mode, multi, n); }
  void PlotSamples(std::string_view s, int n, bool dec, bool two) override {
    stages_->PlotSamples(s, n, dec, two);
  }
  void PlotPeaks(std::string_view s, int n, bool half) override { stages_->PlotPeaks(s, n, half); }
  void measure(const SegmentData& s) override { stages_->measure(s); }
  void spectrum(const SegmentData& s) override { stages_->spectrum(s); }
  void stat(const SegmentData& s) override { stages_->stat(s); }
  void recordFrame(int ms) override { stages_->recordFrame(ms); }
  void wallpaper() override { stages_->wallpaper(); }

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

  PacketStages noStages_;
  PacketStages* stages_ = &noStages_;
  RegisterTable registers_;
  PacketProcessor processor_;
  QTimer firstTimeTimer_;
  bool sessionSetupDone_ = false;
  bool timeoutsWaitForClock_ = false;  // the clock of the second time-base rule is not echoed yet
  bool inShowWait_ = false;            // inside the wait of a packet of a parallel transfer
  int risRow_ = 0;
  RollCanvas noCanvas_;
  std::function<RollSettings()> rollSettings_;
  std::unique_ptr<RollStream> roll_;
};

}  // namespace zorvik
