#pragma once
#include "firmware/firmware_update.h"
#include "session/control_hooks.h"
#include "control/trigger_control.h"
#include "session/run_control.h"

namespace zorvik {

// The session's named steps: run control, the trigger, and the controllers of the channel and time base.
class RoutedHooks : public ControlHooks {
 public:
  RoutedHooks(ControlHooks& control, RunControl& run, TriggerControl& trigger)
      : c_(control), run_(run), trig_(trigger) {}

  void PutGetRegisterO1() override { c_.PutGetRegisterO1(); }
  void PutGetRegisterM1() override { c_.PutGetRegisterM1(); }
  void PutGetRegisterT1() override { trig_.PutGetRegisterT1(); }
  void PutGetRegisterV1() override { c_.PutGetRegisterV1(); }
  void PutGetRegisterP1() override { c_.PutGetRegisterP1(); }
  void PutGetRegisterS1() override { trig_.PutGetRegisterS1(); }
  void PutGetRegisterRT() override { run_.PutGetRegisterRT(); }
  void PutGetRegisterAP() override { run_.PutGetRegisterAP(); }
  void PutGetRegisterAR() override { run_.PutGetRegisterAR(); }
  void PutGetRegisterTA() override { trig_.PutGetRegisterTA(); }
  void PutGetRegisterTW() override { trig_.PutGetRegisterTW(); }
  void PutGetRegisterTD() override { trig_.PutGetRegisterTD(); }
  void PutGetRegisterTC() override { c_.PutGetRegisterTC(); }
  void PutGetRegisterRS() override { c_.PutGetRegisterRS(); }
  void SetupTimeDiv() override { c_.SetupTimeDiv(); }

  void offsetRangeUpdate() override { c_.offsetRangeUpdate(); }
  void sampleLimitStep() override { c_.sampleLimitStep(); }
  void presampleLimitStep() override { c_.presampleLimitStep(); }
  void samplingUpdate() override { c_.samplingUpdate(); }
  void timeBaseUpdate() override { c_.timeBaseUpdate(); }
  void rsUpdate() override { c_.rsUpdate(); }
  void qsUpdate() override { c_.qsUpdate(); }
  void presampleUpdate() override { c_.presampleUpdate(); }
  void delayUpdate() override { trig_.tdEcho(); }
  void timeoutUpdate() override { trig_.timeoutEcho(); }
  void couplingUpdate() override { c_.couplingUpdate(); }
  void sensitivityUpdate() override { c_.sensitivityUpdate(); }
  void offsetUpdate() override { c_.offsetUpdate(); }
  void modeUpdate() override { c_.modeUpdate(); }
  void triggerUpdate() override { trig_.t1Echo(); }
  void levelUpdate() override { trig_.s1Echo(); }
  void averagesUpdate() override { run_.apEcho(); }
  void risAveragesUpdate() override { run_.arEcho(); }
  void runFlagsUpdate() override { run_.rtEcho(); }
  void applyRunMode() override {
    if (run_.model().WorkMode) run_.applyWorkMode();
  }

  // The firmware update, where the program has one.
  FirmwareUpdate* firmware = nullptr;
  bool firmwareLoadRunning() const override { return firmware ? firmware->Updating : c_.firmwareLoadRunning(); }
  void startFirmwareLoad() override {
    if (firmware)
      firmware->FirmWareUpdate();
    else
      c_.startFirmwareLoad();
  }
  void firmwareHeader(const std::string& name, const std::string& value) override {
    if (firmware)
      firmware->header(name, value);
    else
      c_.firmwareHeader(name, value);
  }
  void devDispHeader(const std::string& name) override { c_.devDispHeader(name); }

 private:
  ControlHooks& c_;
  RunControl& run_;
  TriggerControl& trig_;
};

}  // namespace zorvik
