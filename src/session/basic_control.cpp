#include "session/basic_control.h"

#include "control/trigger_control.h"
#include "firmware/firmware_update.h"
#include "link/device_context.h"
#include "session/run_control.h"

namespace zorvik {

BasicControl::BasicControl(DeviceContext& main) : main_(main), channel_(main), timebase_(main) {
  channel_.onModeEcho = [this] { timebase_.limitsOfMode(); };
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
  if (width == 1)
    link->PutRegister1(name, static_cast<uint8_t>(value));
  else if (width == 2)
    link->PutRegister2(name, value);
  else
    link->PutRegister4(name, value);
}

void BasicControl::fillRegisters(RegisterTable& t, TriggerControl* trigger, RunControl* run,
                                 FirmwareUpdate* fw) {
  ChannelControl& ch = channel_;
  TimebaseControl& tb = timebase_;
  DeviceCache& c = main_.cache();
  auto cached = [this](int width, const char* name, const auto& value) {
    return [this, width, name, &value] { put(width, name, static_cast<int32_t>(value)); };
  };
  // name, writer, echo
  t.add(
      "O1", [&ch] { ch.PutGetRegisterO1(); }, [&ch] { ch.couplingUpdate(); });
  t.add(
      "M1", [&ch] { ch.PutGetRegisterM1(); }, [&ch] { ch.modeUpdate(); });
  t.add(
      "V1", [&ch] { ch.PutGetRegisterV1(); }, [&ch] { ch.sensitivityUpdate(); });
  t.add(
      "P1", [&ch] { ch.PutGetRegisterP1(); }, [&ch] { ch.offsetUpdate(); });
  t.add(
      "TC", [&tb] { tb.PutGetRegisterTC(); }, [&tb] { tb.presampleUpdate(); });
  t.add(
      "RS", [&tb] { tb.PutGetRegisterRS(); }, [&tb] { tb.rsUpdate(); });
  t.add("MC", nullptr, [&tb] { tb.samplingUpdate(); });
  t.add("TS", nullptr, [&tb] { tb.timeBaseUpdate(); });
  t.add("QS", nullptr, [&tb] { tb.qsUpdate(); });
  if (trigger) {
    TriggerControl& tr = *trigger;
    t.add(
        "T1", [&tr] { tr.PutGetRegisterT1(); }, [&tr] { tr.t1Echo(); });
    t.add(
        "S1", [&tr] { tr.PutGetRegisterS1(); }, [&tr] { tr.s1Echo(); });
    t.add(
        "TA", [&tr] { tr.PutGetRegisterTA(); }, [&tr] { tr.timeoutEcho(); });
    t.add(
        "TW", [&tr] { tr.PutGetRegisterTW(); }, [&tr] { tr.timeoutEcho(); });
    t.add(
        "TD", [&tr] { tr.PutGetRegisterTD(); }, [&tr] { tr.tdEcho(); });
  } else {
    t.add("T1", cached(1, "T1", c.T1), nullptr);
    t.add("S1", cached(1, "S1", c.S1), nullptr);
    t.add("TA", cached(4, "TA", c.TA), nullptr);
    t.add("TW", cached(4, "TW", c.TW), nullptr);
    t.add("TD", cached(4, "TD", c.TD), nullptr);
  }
  if (run) {
    RunControl& r = *run;
    t.add(
        "RT", [&r] { r.PutGetRegisterRT(); }, [&r] { r.rtEcho(); });
    t.add(
        "AP", [&r] { r.PutGetRegisterAP(); }, [&r] { r.apEcho(); });
    t.add(
        "AR", [&r] { r.PutGetRegisterAR(); }, [&r] { r.arEcho(); });
    t.applyRunMode = [&r] {
      if (r.model().WorkMode) r.applyWorkMode();
    };
  } else {
    t.add("RT", cached(1, "RT", c.RT), nullptr);
    t.add("AP", cached(1, "AP", c.AP), nullptr);
    t.add("AR", cached(1, "AR", c.AR), nullptr);
  }
  t.SetupTimeDiv = [&tb] { tb.SetupTimeDiv(); };
  t.offsetRangeUpdate = [&ch] { ch.offsetRangeUpdate(); };
  t.sampleLimitStep = [&tb] { tb.sampleLimitStep(); };
  t.presampleLimitStep = [&tb] { tb.presampleLimitStep(); };
  if (fw) {
    t.firmwareLoadRunning = [fw] { return fw->Updating; };
    t.startFirmwareLoad = [fw] { fw->FirmWareUpdate(); };
    t.firmwareHeader = [fw](const std::string& name, const std::string& value) { fw->header(name, value); };
  }
}

}  // namespace zorvik
