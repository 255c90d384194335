#pragma once
#include "control/channel_control.h"
#include "control/timebase_control.h"
#include "session/control_hooks.h"

namespace zorvik {

class MainController;
class RunControl;
class TriggerControl;

// The channel and time-base steps that the session and the header dispatch call by name. The writers of
// the trigger and run registers write their cached values here; their own controllers take them over
// where they are routed.
class BasicControl : public ControlHooks {
 public:
  explicit BasicControl(MainController& main);

  ChannelControl& channel() { return channel_; }
  TimebaseControl& timebase() { return timebase_; }
  // Run control asks whether RIS would run and whether the input is AC; the trigger's delay moves the
  // record's centre and follows the clock.
  void wire(RunControl& run, TriggerControl& trigger);

  void PutGetRegisterO1() override { channel_.PutGetRegisterO1(); }
  void PutGetRegisterM1() override { channel_.PutGetRegisterM1(); }
  void PutGetRegisterV1() override { channel_.PutGetRegisterV1(); }
  void PutGetRegisterP1() override { channel_.PutGetRegisterP1(); }
  void PutGetRegisterTC() override { timebase_.PutGetRegisterTC(); }
  void PutGetRegisterRS() override { timebase_.PutGetRegisterRS(); }
  void SetupTimeDiv() override { timebase_.SetupTimeDiv(); }
  void PutGetRegisterT1() override;
  void PutGetRegisterS1() override;
  void PutGetRegisterRT() override;
  void PutGetRegisterAP() override;
  void PutGetRegisterAR() override;
  void PutGetRegisterTA() override;
  void PutGetRegisterTW() override;
  void PutGetRegisterTD() override;

  void offsetRangeUpdate() override { channel_.offsetRangeUpdate(); }
  void sampleLimitStep() override { timebase_.sampleLimitStep(); }
  void presampleLimitStep() override { timebase_.presampleLimitStep(); }
  void samplingUpdate() override { timebase_.samplingUpdate(); }
  void timeBaseUpdate() override { timebase_.timeBaseUpdate(); }
  void rsUpdate() override { timebase_.rsUpdate(); }
  void qsUpdate() override { timebase_.qsUpdate(); }
  void presampleUpdate() override { timebase_.presampleUpdate(); }
  void couplingUpdate() override { channel_.couplingUpdate(); }
  void sensitivityUpdate() override { channel_.sensitivityUpdate(); }
  void offsetUpdate() override { channel_.offsetUpdate(); }
  void modeUpdate() override { channel_.modeUpdate(); }

 private:
  void put(int width, const char* name, int32_t value);
  MainController& main_;
  ChannelControl channel_;
  TimebaseControl timebase_;
};

}  // namespace zorvik
