#include "measure/meter_readings.h"

#include <algorithm>

#include "core/fault.h"
#include "measure/sig_calc.h"
#include "measure/sig_timing.h"

namespace zorvik {

const std::vector<MeterInfo>& meterTable() {
  using M = Meter;
  static const std::vector<MeterInfo> table = {
      {M::DCV, "DCV", "DC voltage", "V", false},
      {M::PPV, "PPV", "P-P voltage", "V", false},
      {M::PHV, "PHV", "Peak max voltage", "V", false},
      {M::PLV, "PLV", "Peak min voltage", "V", false},
      {M::ACV, "ACV", "AC voltage", "V", false},
      {M::ADV, "ADV", "AC+DC voltage", "V", false},
      {M::VDB, "VDB", "dB level", "dBV", true},
      {M::TRV, "TRV", "Top rail voltage", "V", false},
      {M::BRV, "BRV", "Base rail voltage", "V", false},
      {M::RRV, "RRV", "Rail-to-Rail voltage", "V", false},
      {M::ACR, "ACR", "Rail-to-Rail accuracy", "%", true},
      {M::FRH, "FRH", "Frequency", "Hz", false},
      {M::PES, "PES", "Period", "s", false},
      {M::PWS, "PWS", "Pulse width", "s", false},
      {M::DCR, "DCR", "Duty cycle", "%", true},
      {M::RTS, "RTS", "Rise time", "s", false},
      {M::FTS, "FTS", "Fall time", "s", false},
      {M::POV, "POV", "Positive overshoot", "%", true},
      {M::NOV, "NOV", "Negative overshoot", "%", true},
  };
  return table;
}

const MeterInfo& meterInfo(Meter m) {
  const std::vector<MeterInfo>& t = meterTable();
  auto it = std::find_if(t.begin(), t.end(), [m](const MeterInfo& i) { return i.meter == m; });
  if (it == t.end()) throw Fault("No meter of index " + std::to_string(static_cast<int>(m)));
  return *it;
}

MeterReading readMeter(Meter m, const SigCalc& c, const SigTiming& t, const MeterContext& ctx) {
  MeterReading r;
  const bool hi = ctx.IsHiRes;
  const double voltStep = ctx.FullScaleVolts / (hi ? 2048.0 : 256.0);
  auto volts = [&](double v, bool valid, const char* status) {
    r.value = v;
    r.resolution = voltStep;
    r.detail = hi;
    if (!valid) r.status = status;
  };
  auto acStatus = [&] {
    if (c.DCValid && c.HasAC) return;
    r.status = c.HasAC ? "Limit!" : "No signal";
  };
  const bool rails = c.TopFound && c.BaseFound;
  // Period stands at 1 until the first usable period is found.
  const double period = t.PeriodCount < 1 ? 1.0 : t.Period;
  switch (m) {
    case Meter::DCV:
      volts(c.DCVolts, c.DCValid, "Limit!");
      break;
    case Meter::PHV:
      volts(c.PeakHighVolts, c.PeakHighValid, "Limit!");
      break;
    case Meter::PLV:
      volts(c.PeakLowVolts, c.PeakLowValid, "Limit!");
      break;
    case Meter::PPV:
      volts(c.PeakToPeakVolts, c.PeakHighValid && c.PeakLowValid, "Limit!");
      break;
    case Meter::ACV:
      volts(c.ACVolts, true, "");
      acStatus();
      break;
    case Meter::ADV:
      volts(c.ACDCVolts, true, "");
      acStatus();
      break;
    case Meter::VDB:
      r.value = c.LevelDBV;
      r.picture = hi ? "00.00" : "00.0";
      acStatus();
      break;
    case Meter::TRV:
      volts(c.TopRailVoltage(hi, ctx.FullScaleVolts, ctx.ZeroVolts), c.TopFound, "NotFound");
      break;
    case Meter::BRV:
      volts(c.BaseRailVoltage(hi, ctx.FullScaleVolts, ctx.ZeroVolts), c.BaseFound, "NotFound");
      break;
    case Meter::RRV:
      volts(c.RailToRailVoltage(hi, ctx.FullScaleVolts), rails, "NotFound");
      break;
    case Meter::ACR: {
      // Against the six divisions of a calibration signal.
      const double reference = ctx.FullScaleVolts * 6.0 / 8;
      r.value = (c.RailToRailVoltage(hi, ctx.FullScaleVolts) - reference) / reference * 100;
      r.picture = "00.0";
      if (!rails) r.status = "NotFound";
      break;
    }
    case Meter::FRH:
      r.value = 1 / period;
      r.detail = ctx.n > 511;
      if (t.PeriodCount < 1) r.status = "No signal";
      break;
    case Meter::PES:
      r.value = t.Period;
      r.resolution = ctx.SamplePeriod;
      r.detail = ctx.n > 511;
      if (t.PeriodCount < 1) r.status = "No signal";
      break;
    case Meter::PWS:
      r.value = t.PulseWidth;
      r.resolution = ctx.SamplePeriod;
      r.detail = ctx.n > 511;
      if (t.PulseCount < 1) r.status = "No signal";
      break;
    case Meter::DCR:
      r.value = t.PulseWidth / period * 100;
      r.picture = "00.0";
      if (t.PeriodCount < 1) r.status = "No signal";
      break;
    case Meter::RTS:
      r.value = t.RiseTime(ctx.SamplePeriod);
      r.resolution = ctx.SamplePeriod;
      if (t.RiseCount < 1) r.status = "No rises";
      break;
    case Meter::FTS:
      r.value = t.FallTime(ctx.SamplePeriod);
      r.resolution = ctx.SamplePeriod;
      if (t.FallCount < 1) r.status = "No falls";
      break;
    case Meter::POV:
      r.value = c.PositiveOvershoot(hi) * 100.0;
      r.picture = "00.0";
      if (t.RiseCount < 1) r.status = "NotFound";
      break;
    case Meter::NOV:
      r.value = c.NegativeOvershoot(hi) * 100.0;
      r.picture = "00.0";
      if (t.FallCount < 1) r.status = "NotFound";
      break;
  }
  return r;
}

}  // namespace zorvik
