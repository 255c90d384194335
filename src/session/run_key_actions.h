#pragma once
#include "control/trigger_control.h"
#include "session/key_map.h"
#include "session/main_controller.h"
#include "session/run_control.h"

namespace zorvik {

// The keys that run control and the trigger answer; the window adds the rest.
class RunKeyActions : public KeyActions {
 public:
  RunKeyActions(MainController& main, RunControl& run, TriggerControl& trigger)
      : main_(main), run_(run), trig_(trigger) {}
  // Start and Serial are keys for controls that stay disabled until the session is ready: the keys pass
  // the same gate.
  void keyStart() override {
    if (main_.state().startEnabled) run_.KeyStart_Click();
  }
  void toggleWorkMode() override {
    if (main_.state().startEnabled) run_.WorkMode_Click(!run_.model().WorkMode);
  }
  void toggleAutoWait() override { run_.AutoWait_Click(!run_.model().AutoWait); }
  void calibrate() override {
    if (main_.link() && main_.Online()) main_.link()->SendCommand("C", false, false);
    run_.recalibrate();
  }
  void plotSpeedTest() override { main_.PlotSpeedTest(); }
  void repaintDisplay() override { main_.replayLastPacket(); }
  void stepTrigLevel(int step) override { trig_.stepLevel(step); }

 protected:
  MainController& main_;
  RunControl& run_;
  TriggerControl& trig_;
};

}  // namespace zorvik
