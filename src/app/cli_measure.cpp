#include "app/cli_measure.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>

#include "app/cli_decode.h"
#include "app/command_line.h"
#include "config/text_number.h"
#include "core/fault.h"
#include "export/zrv_file.h"
#include "measure/measurement_pass.h"
#include "signal/packet.h"

namespace zorvik {

namespace {

double numberOption(const std::string& name, const std::string& text) {
  const std::optional<double> v = parseLeadingNumber(text);
  if (!v || !std::isfinite(*v)) throw Fault(name + " takes a number, not \"" + text + "\"");
  return *v;
}

// JSON has no NaN or infinity: such a value is written as null.
QJsonValue number(double v) { return std::isfinite(v) ? QJsonValue(v) : QJsonValue(); }

}  // namespace

int runMeasureCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream&) {
  std::string file, v;
  double voltsPerDiv = 0.2, zero = 0;
  for (size_t i = 0; i < args.size(); ++i) {
    if (takeValue(args, i, "--volts-per-div", v)) {
      voltsPerDiv = numberOption("--volts-per-div", v);
      if (!(voltsPerDiv > 0)) throw Fault("--volts-per-div must be above 0");
    } else if (takeValue(args, i, "--zero", v)) {
      zero = numberOption("--zero", v);
    } else if (!args[i].empty() && args[i][0] == '-') {
      throw Fault("unknown option: " + args[i]);
    } else if (file.empty()) {
      file = args[i];
    } else {
      throw Fault("usage: zorvik-cli measure FILE [--volts-per-div V] [--zero V]");
    }
  }
  if (file.empty()) throw Fault("usage: zorvik-cli measure FILE [--volts-per-div V] [--zero V]");
  std::string packet = readFileBytes(file);
  if (auto zrv = parseZrv(packet)) packet = zrv->packet;
  const PacketInfo info = decodePacket(packet);
  if (info.ignored) throw Fault("not a packet: " + file + " holds " + std::to_string(packet.size()) + " bytes");

  MeasureInputs in;
  in.FullScaleVolts = static_cast<float>(8 * voltsPerDiv);
  in.ZeroVolts = static_cast<float>(zero);
  MeasurementPass pass([&] { return in; });
  using M = Meter;
  pass.open = {M::DCV, M::PHV, M::PLV, M::PPV, M::ACV, M::ADV, M::VDB, M::TRV, M::BRV, M::RRV, M::ACR, M::POV, M::NOV};
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
  out << QJsonDocument(o).toJson(QJsonDocument::Compact).toStdString() << "\n";
  return 0;
}

}  // namespace zorvik
