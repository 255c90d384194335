#pragma once
#include <functional>
#include <memory>

#include "config/settings.h"
#include "core/messages.h"
#include "firmware/firmware_update.h"
#include "link/class_obex.h"
#include "link/device_context.h"
#include "session/main_controller.h"

namespace zorvik {

class ChannelControl;
class TimebaseControl;
class TriggerControl;
class DelayControl;
class RunControl;
class ScopeDisplay;
class ControllerDisplayHost;
class DisplayRollCanvas;
class ViewZoom;
class MeasurementPass;
class SpectrumStage;
class StatStage;
class AnimationRecorder;
class PacketFiles;
class FileDialogs;
class KeyActions;
class KeyMap;
class BasicControl;

// What a front end lends the session: where the state is shown, where boxes go, who answers file
// dialogs, and where the firmware update shows itself (none: the update runs unseen).
struct SessionFrontEnd {
  MainView& view;
  MessageSink& messages;
  FileDialogs& dialogs;
  FirmwareView* firmwareView = nullptr;
};

// The one core of the program, held alike by the window and by zorvik-cli: the link, the session's
// controller with its header dispatch, the front-panel controllers, run control, the firmware update,
// the registers' table, and the packet's stage chain (display -> measurement pass -> spectrum ->
// histogram -> recorder).
class ScopeSession {
 public:
  ScopeSession(SettingsStore& settings, const InstanceIdentity& identity, std::unique_ptr<ClassOBEX> link,
               const SessionFrontEnd& frontEnd, int cpuMHz);
  ~ScopeSession();
  ScopeSession(const ScopeSession&) = delete;
  ScopeSession& operator=(const ScopeSession&) = delete;

  MainController& main() { return *main_; }
  ClassOBEX* link() { return link_.get(); }
  SettingsStore& settings() { return settings_; }
  BasicControl& control() { return *control_; }
  ChannelControl& channel();
  TimebaseControl& timebase();
  TriggerControl& trigger() { return *trigger_; }
  DelayControl& delay() { return *delay_; }
  RunControl& run() { return *run_; }
  FirmwareUpdate& firmware() { return *firmware_; }
  PacketFiles& files() { return *files_; }

  // The stages, in the order a packet runs through them.
  ScopeDisplay& display() { return *display_; }
  MeasurementPass& measurement() { return *measure_; }
  SpectrumStage& spectrum() { return *spectrum_; }
  StatStage& stat() { return *stat_; }
  AnimationRecorder& recorder() { return *recorder_; }
  ViewZoom& hZoom() { return *hZoom_; }
  ViewZoom& vZoom() { return *vZoom_; }

  // The keyboard: the session's own keys, or a front end's fuller set built on them.
  KeyMap& keys() { return *keys_; }
  void setKeyActions(KeyActions* actions);

  // The hooks a front end fills to follow the core; each runs before the last packet is drawn again.
  std::function<void()> onScaleView = [] {};    // the controllers' scale changed
  std::function<void()> onTriggerView = [] {};  // the trigger's model changed
  std::function<void()> onHorZoomView = [] {};  // the horizontal view zoom changed
  std::function<void()> onVertZoomView = [] {};
  std::function<void()> onLayoutView = [] {};  // the display was laid out anew (its size may change)
  // Pictures of the display carry the labels.
  std::function<bool()> picturesWithLabels = [] { return false; };

  // A display setting changed: stored, laid out anew when `setup`, and the last packet drawn again.
  void displaySettingChanged(const char* name, bool setup);
  // The controllers' scale reaches the display's inputs and the front end, and the last packet is drawn
  // again.
  void refreshScale();
  // The zoom of the stored positions; a fast time base without RIS stands on its own zoom.
  void restoreZoom();

 private:
  void horZoomChanged();
  void vertZoomChanged();
  void refreshPlotInputs();

  SettingsStore& settings_;
  std::unique_ptr<ClassOBEX> link_;
  std::unique_ptr<FirmwareView> silentFirmwareView_;
  std::unique_ptr<MainController> main_;
  std::unique_ptr<BasicControl> control_;
  std::unique_ptr<RunControl> run_;
  std::unique_ptr<TriggerControl> trigger_;
  std::unique_ptr<DelayControl> delay_;
  std::unique_ptr<FirmwareUpdate> firmware_;
  std::unique_ptr<PacketFiles> files_;
  std::unique_ptr<ControllerDisplayHost> displayHost_;
  std::unique_ptr<ScopeDisplay> display_;
  std::unique_ptr<MeasurementPass> measure_;
  std::unique_ptr<SpectrumStage> spectrum_;
  std::unique_ptr<StatStage> stat_;
  std::unique_ptr<AnimationRecorder> recorder_;
  std::unique_ptr<DisplayRollCanvas> rollCanvas_;
  std::unique_ptr<ViewZoom> hZoom_, vZoom_;
  std::unique_ptr<KeyActions> runKeys_;
  std::unique_ptr<KeyMap> keys_;
  bool rollStarting_ = false;
};

}  // namespace zorvik
