#pragma once
#include <string>

namespace zorvik {

// The steps of the channel, time base, trigger, run-mode and firmware controllers that the session and the
// header dispatch call by name. The controllers fill them; the defaults do nothing.
class ControlHooks {
 public:
  virtual ~ControlHooks() = default;

  // Writers of the stored settings at session start, in the order the session calls them.
  virtual void PutGetRegisterO1() {}
  virtual void PutGetRegisterM1() {}
  virtual void PutGetRegisterT1() {}
  virtual void PutGetRegisterV1() {}
  virtual void PutGetRegisterP1() {}
  virtual void PutGetRegisterS1() {}
  virtual void PutGetRegisterRT() {}
  virtual void PutGetRegisterAP() {}
  virtual void PutGetRegisterAR() {}
  virtual void PutGetRegisterTA() {}
  virtual void PutGetRegisterTW() {}
  virtual void PutGetRegisterTD() {}
  virtual void PutGetRegisterTC() {}
  virtual void PutGetRegisterRS() {}
  // The time-base rule for the time per division of the front panel.
  virtual void SetupTimeDiv() {}

  // Echo updates.
  virtual void offsetRangeUpdate() {}
  virtual void sampleLimitStep() {}
  virtual void presampleLimitStep() {}
  virtual void samplingUpdate() {}   // MC
  virtual void timeBaseUpdate() {}   // TS
  virtual void rsUpdate() {}
  virtual void qsUpdate() {}
  virtual void presampleUpdate() {}  // TC
  virtual void delayUpdate() {}      // TD
  virtual void timeoutUpdate() {}    // TA, TW
  virtual void couplingUpdate() {}   // O1
  virtual void sensitivityUpdate() {}  // V1
  virtual void offsetUpdate() {}     // P1
  virtual void modeUpdate() {}       // M1
  virtual void triggerUpdate() {}    // T1
  virtual void levelUpdate() {}      // S1
  virtual void averagesUpdate() {}   // AP
  virtual void risAveragesUpdate() {}  // AR
  virtual void runFlagsUpdate() {}   // RT
  // After the first-time timer: apply the run mode when WorkMode is checked.
  virtual void applyRunMode() {}

  // Firmware load (headers "F", "W"; the "BOOT" state).
  virtual bool firmwareLoadRunning() const { return false; }
  virtual void startFirmwareLoad() {}
  virtual void firmwareHeader(const std::string& /*name*/, const std::string& /*value*/) {}
  // Items of the instrument's own display.
  virtual void devDispHeader(const std::string& /*name*/) {}
};

}  // namespace zorvik
