#pragma once
#include "link/key_map.h"
#include "link/main_controller.h"
#include "link/run_control.h"

namespace zorvik {

// The keys that run control answers; the window adds the rest.
class RunKeyActions : public KeyActions {
 public:
  RunKeyActions(MainController& main, RunControl& run) : main_(main), run_(run) {}
  void keyStart() override { run_.KeyStart_Click(); }
  void toggleWorkMode() override { run_.WorkMode_Click(!run_.model().WorkMode); }
  void toggleAutoWait() override { run_.AutoWait_Click(!run_.model().AutoWait); }
  void calibrate() override {
    if (main_.link() && main_.Online()) main_.link()->SendCommand("C", false, false);
    run_.recalibrate();
  }
  void plotSpeedTest() override { main_.PlotSpeedTest(); }
  void repaintDisplay() override { main_.replayLastPacket(); }

 protected:
  MainController& main_;
  RunControl& run_;
};

}  // namespace zorvik
