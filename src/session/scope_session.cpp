#include "session/scope_session.h"

#include <string_view>

#include "control/delay_control.h"
#include "control/plot_inputs_source.h"
#include "control/trigger_control.h"
#include "display/display_host.h"
#include "display/display_roll.h"
#include "display/scope_display.h"
#include "display/view_zoom.h"
#include "export/animation_recorder.h"
#include "export/display_pictures.h"
#include "export/packet_files.h"
#include "measure/measurement_pass.h"
#include "session/basic_control.h"
#include "session/key_map.h"
#include "session/run_control.h"
#include "session/session_keys.h"
#include "spectrum/spectrum_stage.h"
#include "stat/stat_stage.h"

namespace zorvik {

namespace {

// DispShowTime entries in ms.
constexpr int kShowTimes[10] = {0, 1, 2, 5, 10, 20, 50, 100, 200, 500};

// Where no window shows the update, it runs unseen.
class SilentFirmwareView : public FirmwareView {
 public:
  void showWindow() override {}
  void closeWindow() override {}
  void enableOtherWindows(bool) override {}
  void showImage(const ZfwImage&) override {}
  void showDevice(const DeviceIdentityFields&) override {}
  void enableStart(bool) override {}
  void showInProgress() override {}
  void showSectors(int) override {}
  void setSector(int, bool) override {}
};

}  // namespace

ScopeSession::ScopeSession(SettingsStore& settings, const InstanceIdentity& identity,
                           std::unique_ptr<ClassOBEX> link, const SessionFrontEnd& fe, int cpuMHz)
    : settings_(settings), link_(std::move(link)) {
  main_ = std::make_unique<MainController>(settings_, fe.messages, fe.view);
  main_->setIdentity(identity);
  control_ = std::make_unique<BasicControl>(*main_);
  run_ = std::make_unique<RunControl>(*main_);
  trigger_ = std::make_unique<TriggerControl>(*main_);
  delay_ = std::make_unique<DelayControl>(*main_, *trigger_);
  control_->wire(*run_, *trigger_);
  FirmwareView* firmwareView = fe.firmwareView;
  if (!firmwareView) {
    silentFirmwareView_ = std::make_unique<SilentFirmwareView>();
    firmwareView = silentFirmwareView_.get();
  }
  firmware_ = std::make_unique<FirmwareUpdate>(*main_, fe.dialogs, *firmwareView);
  control_->fillRegisters(main_->registers(), trigger_.get(), run_.get(), firmware_.get());
  files_ = std::make_unique<PacketFiles>(*main_, fe.dialogs);

  // The stage chain: display -> measurement pass -> spectrum -> histogram -> recorder.
  displayHost_ = std::make_unique<ControllerDisplayHost>(*main_);
  display_ = std::make_unique<ScopeDisplay>(*displayHost_, settings_, cpuMHz);
  measure_ = std::make_unique<MeasurementPass>([this] {
    MeasureInputs in;
    measure_->options.fill(in);
    const RecordScale& s = main_->scale();
    in.FullScaleVolts = s.FullScaleVolts;
    in.ZeroVolts = s.ZeroVolts;
    in.SamplePeriod = s.SamplePeriod;
    in.autoLevel = trigger_->model().AutoTrig1;
    in.triggerByte = trigger_->model().level;
    return in;
  });
  measure_->options = loadMeasureOptions(settings_);
  main_->unimeterOpen = [this] { return !measure_->open.empty(); };
  // While the display's selection stands the pass reads its cut.
  measure_->selectionVisible = [this] { return display_->mouse().selection().visible; };
  measure_->onAutoLevel = [this](int level) {
    if (level != trigger_->model().level) trigger_->setLevel(level);
  };
  spectrum_ = std::make_unique<SpectrumStage>([this] {
    const RecordScale& s = main_->scale();
    return SpectrumStage::Scale{s.SamplePeriod, s.FullScaleVolts, s.ZeroVolts};
  });
  stat_ = std::make_unique<StatStage>([this] {
    const RecordScale& s = main_->scale();
    return StatStage::Scale{s.FullScaleVolts, s.ZeroVolts};
  });
  recorder_ = std::make_unique<AnimationRecorder>();
  recorder_->capture = [this] { return displayPicture(*display_, display_->labels(), picturesWithLabels()); };
  display_->setNext(measure_.get());
  measure_->setNext(spectrum_.get());
  spectrum_->setNext(stat_.get());
  stat_->setNext(recorder_.get());
  main_->setStages(display_.get());
  // Stopping the acquisitions ends a recording, whichever control stopped them; it is saved.
  run_->onSerialStopped = [this] { recorder_->stop(); };

  // The roll stream draws on the display's surface.
  rollCanvas_ = std::make_unique<DisplayRollCanvas>(*display_);
  main_->setRollCanvas(rollCanvas_.get(),
                       [this] { return rollSettingsOf(*display_, main_->scale().SamplesPerDiv); });
  main_->setNoTriggerMsg(display_->settings().noTrigMsg);
  main_->onNoTrigger = [this] { display_->ClearIntensity(); };

  hZoom_ = std::make_unique<ViewZoom>(settings_, ZoomAxis::Horizontal);
  vZoom_ = std::make_unique<ViewZoom>(settings_, ZoomAxis::Vertical);
  hZoom_->onChange = [this] { horZoomChanged(); };
  vZoom_->onChange = [this] { vertZoomChanged(); };
  main_->onRollZoomOff = [this] {
    // The roll draws its own trace: the zoom goes off without a replay of the last packet.
    rollStarting_ = true;
    hZoom_->switchOff();
    rollStarting_ = false;
  };
  // The fast positions without RIS press the same keys as the user.
  timebase().onHorZoom = [this](int z) {
    if (z > 1)
      hZoom_->keyClicked(z, true);
    else
      hZoom_->switchOff();
  };
  const int showTime = display_->settings().showTime;
  main_->setShowTimeMs(kShowTimes[showTime >= 0 && showTime < 10 ? showTime : 0]);
  timebase().acqWidthPixels = [this] { return display_->plotWidth(); };
  channel().onScale.add([this] { refreshScale(); });
  timebase().onScale.add([this] { refreshScale(); });
  trigger_->onChange = [this] {
    // The level line and the trigger's place in time follow without a redraw of the trace.
    onTriggerView();
    refreshPlotInputs();
  };

  runKeys_ = std::make_unique<SessionKeys>(*this);
  keys_ = std::make_unique<KeyMap>(*runKeys_);

  if (link_) {
    main_->attachLink(link_.get());
    link_->SetShowTime(main_->ShowTimeMs());
  }
}

ScopeSession::~ScopeSession() {
  main_->attachLink(nullptr);
  main_->registers().clear();
  main_->setRollCanvas(nullptr, {});
  main_->setStages(nullptr);
}

ChannelControl& ScopeSession::channel() {
  return control_->channel();
}
TimebaseControl& ScopeSession::timebase() {
  return control_->timebase();
}

void ScopeSession::setKeyActions(KeyActions* actions) {
  keys_ = std::make_unique<KeyMap>(actions ? *actions : static_cast<KeyActions&>(*runKeys_));
}

void ScopeSession::refreshPlotInputs() {
  fillPlotInputs(display_->inputs(), channel().model(), timebase().model(), trigger_->model());
  display_->refreshTimeBase();
  display_->refreshVertical();
}

void ScopeSession::refreshScale() {
  refreshPlotInputs();
  onScaleView();
  main_->replayLastPacket();
}

void ScopeSession::restoreZoom() {
  hZoom_->restore();
  const int standIn = timebase().model().horZoom;
  if (standIn > 1 && standIn != hZoom_->factor()) hZoom_->keyClicked(standIn, true);
  vZoom_->restore();
}

void ScopeSession::horZoomChanged() {
  timebase().noteHorZoom(hZoom_->factor());
  display_->inputs().hZoom = hZoom_->factor();
  display_->inputs().hViewFrac = hZoom_->frac();
  display_->refreshTimeBase();
  onHorZoomView();
  if (rollStarting_) return;
  display_->ClearIntensity();
  main_->setReplotNeeded(true);
  main_->replayLastPacket();
}

void ScopeSession::vertZoomChanged() {
  display_->inputs().vZoom = static_cast<float>(vZoom_->factor());
  display_->inputs().vViewFrac = vZoom_->frac();
  onVertZoomView();
  display_->ClearIntensity();
  // The channel's zoom scale moves the labels; its scale change replays the packet.
  channel().setVertZoom(vZoom_->factor(), vZoom_->value(), ViewZoom::kMin, ViewZoom::kMax);
}

void ScopeSession::displaySettingChanged(const char* name, bool setup) {
  display_->saveSetting(name);
  if (setup) {
    display_->SetupDisplay();
    onLayoutView();
  }
  // The record's length follows the screen's width: the time base asks for it now.
  if (std::string_view(name) == "Wide") main_->registers().SetupTimeDiv();
  display_->ClearIntensity();
  main_->setReplotNeeded(true);
  main_->replayLastPacket();
}

}  // namespace zorvik
