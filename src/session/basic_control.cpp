#include "session/basic_control.h"

#include "control/trigger_control.h"
#include "session/main_controller.h"
#include "session/run_control.h"

namespace zorvik {

BasicControl::BasicControl(MainController& main) : main_(main), channel_(main), timebase_(main) {
  channel_.onModeEcho = [this] { timebase_.limitsOfMode(); };
  channel_.scrollTimeDivPosition = [this] { return timebase_.model().ScrollTimeDiv; };
}

void BasicControl::wire(RunControl& run, TriggerControl& trigger) {
  run.risWouldRun = [this] { return timebase_.risWouldRun(); };
  run.inputIsAc = [this] { return channel_.inputIsAc(); };
  trigger.onDelay = [this](double seconds) { timebase_.setDelaySeconds(seconds); };
  timebase_.onClock = [&trigger] { trigger.tdEcho(); };
  timebase_.delayOn = [&trigger] { return trigger.model().delayOn; };
}

void BasicControl::put(int width, const char* name, int32_t value) {
  if (!main_.Online()) return;  // offline the cache already holds the value
  ClassOBEX* link = main_.link();
  if (width == 1) link->PutRegister1(name, static_cast<uint8_t>(value));
  else if (width == 2) link->PutRegister2(name, value);
  else link->PutRegister4(name, value);
}

void BasicControl::PutGetRegisterT1() { put(1, "T1", main_.cache().T1); }
void BasicControl::PutGetRegisterS1() { put(1, "S1", main_.cache().S1); }
void BasicControl::PutGetRegisterRT() { put(1, "RT", main_.cache().RT); }
void BasicControl::PutGetRegisterAP() { put(1, "AP", main_.cache().AP); }
void BasicControl::PutGetRegisterAR() { put(1, "AR", main_.cache().AR); }
void BasicControl::PutGetRegisterTA() { put(4, "TA", main_.cache().TA); }
void BasicControl::PutGetRegisterTW() { put(4, "TW", main_.cache().TW); }
void BasicControl::PutGetRegisterTD() { put(4, "TD", main_.cache().TD); }

}  // namespace zorvik
