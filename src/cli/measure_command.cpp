#include "cli/measure_command.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>

#include "cli/decode_command.h"
#include "core/fault.h"
#include "measure/measurement_pass.h"
#include "measure/meter_readings.h"
#include "session/command_line.h"
#include "signal/packet.h"

namespace zorvik {

namespace {

const char* const kUsage =
    "usage: zorvik-cli measure FILE [--volts-per-div V] [--zero V] [--sample-period S] [--level 0..3] "
    "[--trigger 0..255] [--negative] [--20-80]";

// JSON has no NaN or infinity: such a value is written as null.
QJsonValue number(double v) {
  return std::isfinite(v) ? QJsonValue(v) : QJsonValue();
}

}  // namespace

int runMeasureCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream&) {
  std::string file, v;
  ScaleOptions scale;
  MeasureInputs in;
  for (size_t i = 0; i < args.size(); ++i) {
    if (takeScaleOption(args, i, scale)) {
      continue;
    } else if (takeValue(args, i, "--level", v)) {
      in.byLevel = wholeNumberOption("--level", v, 0, 3);
    } else if (takeValue(args, i, "--trigger", v)) {
      in.triggerByte = wholeNumberOption("--trigger", v, 0, 255);
    } else if (args[i] == "--negative") {
      in.negativePolarity = true;
    } else if (args[i] == "--20-80") {
      in.level2080 = true;
    } else {
      takeFileArgument(args[i], file, kUsage);
    }
  }
  if (file.empty()) throw Fault(kUsage);
  std::string packet;
  const PacketInfo info = readPacketFile(file, packet);

  in.FullScaleVolts = static_cast<float>(8 * scale.voltsPerDiv);
  in.ZeroVolts = static_cast<float>(scale.zero);
  in.SamplePeriod = static_cast<float>(scale.samplePeriod);
  MeasurementPass pass([&] { return in; });
  for (const MeterInfo& m : meterTable()) pass.open.insert(m.meter);
  SegmentData seg{info.segment1, info.isHiRes, info.isPeak, info.oneCharSample, 0};
  pass.run(seg, info.sampleCount, in);
  const SigCalc& c = pass.calc();
  const bool hi = info.isHiRes;
  const float fs = in.FullScaleVolts;

  QJsonObject o;
  o["sample_count"] = info.sampleCount;
  o["is_hires"] = hi;
  o["is_peak"] = info.isPeak;
  o["dc_valid"] = c.DCValid;
  o["dc_volts"] = number(c.DCVolts);
  o["peak_high_valid"] = c.PeakHighValid;
  o["peak_low_valid"] = c.PeakLowValid;
  o["peak_high_volts"] = number(c.PeakHighVolts);
  o["peak_low_volts"] = number(c.PeakLowVolts);
  o["peak_to_peak_volts"] = number(c.PeakToPeakVolts);
  o["has_ac"] = c.HasAC;
  o["ac_volts"] = number(c.ACVolts);
  o["acdc_volts"] = number(c.ACDCVolts);
  if (c.HasAC) o["level_dbv"] = number(c.LevelDBV);
  o["top_found"] = c.TopFound;
  o["base_found"] = c.BaseFound;
  o["top_rail_volts"] = number(c.TopRailVoltage(hi, fs, in.ZeroVolts));
  o["base_rail_volts"] = number(c.BaseRailVoltage(hi, fs, in.ZeroVolts));
  o["rail_to_rail_volts"] = number(c.RailToRailVoltage(hi, fs));
  // Read against the six divisions of a calibration signal.
  const double reference = fs * 6.0 / 8;
  o["rail_to_rail_accuracy_percent"] = number((c.RailToRailVoltage(hi, fs) - reference) / reference * 100);
  o["positive_overshoot_percent"] = number(c.PositiveOvershoot(hi) * 100.0);
  o["negative_overshoot_percent"] = number(c.NegativeOvershoot(hi) * 100.0);
  const SigTiming& t = pass.timing();
  o["rise_crossings"] = static_cast<qint64>(t.riseList().size());
  o["fall_crossings"] = static_cast<qint64>(t.fallList().size());
  o["period_count"] = t.PeriodCount;
  o["pulse_count"] = t.PulseCount;
  o["rise_count"] = t.RiseCount;
  o["fall_count"] = t.FallCount;
  // Each meter as its window would show it: the value, or the status in its place.
  QJsonObject meters;
  const MeterContext ctx{hi, fs, in.ZeroVolts, in.SamplePeriod, info.sampleCount};
  for (const MeterInfo& m : meterTable()) {
    const MeterReading r = readMeter(m.meter, c, pass.timing(), ctx);
    meters[m.mnemonic] = r.status.empty() ? number(r.value) : QJsonValue(QString::fromStdString(r.status));
  }
  o["meters"] = meters;
  out << QJsonDocument(o).toJson(QJsonDocument::Compact).toStdString() << "\n";
  return 0;
}

}  // namespace zorvik
