#include "session/timebase_probe.h"

#include "config/settings.h"
#include "control/silent_obex.h"
#include "control/timebase_control.h"
#include "core/fault.h"
#include "core/recording_sink.h"
#include "session/main_controller.h"

namespace zorvik {

TimebaseProbeResult runTimebaseProbe(const TimebaseProbe& probe) {
  if (probe.memoDepth < 0 || probe.memoDepth > 3) throw Fault("The memory depth is 0 to 3");
  MemorySettings settings;
  settings.saveInt("Sampling", "RIS", probe.ris ? 1 : 0);
  settings.saveInt("Sampling", "MemoDepth", probe.memoDepth);
  if (probe.clockMinMHz) {
    settings.saveInt("MCUclock", "Manual min", 1);
    settings.saveInt("MCUclock", "Minimum", *probe.clockMinMHz);
  }
  if (probe.clockMaxMHz) {
    settings.saveInt("MCUclock", "Manual max", 1);
    settings.saveInt("MCUclock", "Maximum", *probe.clockMaxMHz);
  }
  RecordingSink sink;
  MainView view;
  MainController main(settings, sink, view);
  TimebaseControl timebase(main);  // loads offline, before the link stands
  SilentObex link;
  main.attachLink(&link);

  DeviceCache& c = main.cache();
  const TimebaseLimits& l = probe.limits;
  c.MCd = l.MCd;
  c.MCl = l.MCl;
  c.MCh = l.MCh;
  c.TOv = l.TOv;
  c.TOl = l.TOl;
  c.TMl = l.TMl;
  c.TMh = l.TMh;
  c.TPl = l.TPl;
  c.TS = probe.ts;
  for (auto& row : c.QShTable) row.fill(probe.qsh);
  timebase.MaximizeClock_Click(probe.maximize);
  const bool wide = probe.wide;
  timebase.acqWidthPixels = [wide] { return wide ? 480 : 320; };

  TimebaseRuleResult rule = timebase.PutGetRegisterMCTSRS(probe.secondsPerDiv);
  main.attachLink(nullptr);
  TimebaseProbeResult r;
  r.ok = rule.ok();
  r.message = rule.message;
  r.TS = r.ok ? rule.TS : c.TS;
  r.MC = r.ok ? rule.MC : c.MC;
  r.QS = r.ok ? rule.QS : c.QS;
  r.SamplesPerDiv = main.scale().SamplesPerDiv;
  r.RisActive = main.RisActive();
  r.writes = link.writes;
  return r;
}

}  // namespace zorvik
