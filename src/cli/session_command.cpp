#include "cli/session_command.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>

#include "config/registry_settings.h"
#include "config/registry_store.h"
#include "config/text_number.h"
#include "core/fault.h"
#include "core/latin1_text.h"
#include "export/packet_files.h"
#include "measure/measurement_pass.h"
#include "measure/meter_readings.h"
#include "session/command_line.h"
#include "session/headless_session.h"
#include "spectrum/spectrum_stage.h"
#include "stat/stat_stage.h"

namespace zorvik {

namespace {

// A float as the shortest decimal that reads back to it, not the double next to it (3.125e-06, not
// 3.1250000742e-06).
double floatNumber(float v) {
  for (int digits = 1; digits < 9; ++digits) {
    const double d = QString::number(static_cast<double>(v), 'g', digits).toDouble();
    if (static_cast<float>(d) == v) return d;
  }
  return static_cast<double>(v);
}

QJsonObject properties(const DeviceCache& c) {
  QJsonObject p;
  p["VNM"] = latin1Text(c.VNM);
  p["VSN"] = latin1Text(c.VSN);
  p["VHW"] = latin1Text(c.VHW);
  p["VSW"] = latin1Text(c.VSW);
  p["MCd"] = c.MCd;
  p["MCl"] = c.MCl;
  p["MCh"] = c.MCh;
  p["TOv"] = c.TOv;
  p["TOl"] = c.TOl;
  p["TMl"] = c.TMl;
  p["TMh"] = c.TMh;
  p["TPl"] = c.TPl;
  p["QSh"] = c.QSh;
  p["TCh"] = c.TCh;
  p["P1h"] = c.P1h;
  p["P1l"] = c.P1l;
  return p;
}

QJsonObject registers(const DeviceCache& c) {
  QJsonObject r;
  r["MC"] = c.MC;
  r["TS"] = c.TS;
  r["RS"] = c.RS;
  r["QS"] = c.QS;
  r["TC"] = c.TC;
  r["V1"] = c.V1;
  r["P1"] = c.P1;
  r["O1"] = c.O1;
  r["M1"] = c.M1;
  r["T1"] = c.T1;
  r["S1"] = c.S1;
  r["TD"] = c.TD;
  r["TA"] = c.TA;
  r["TW"] = c.TW;
  r["RT"] = c.RT;
  r["AP"] = c.AP;
  r["AR"] = c.AR;
  return r;
}

// JSON has no NaN or infinity: such a value is written as null.
QJsonValue number(double v) {
  return std::isfinite(v) ? QJsonValue(v) : QJsonValue();
}

// The words of a comma list, empty ones included.
std::vector<std::string> commaList(const std::string& text) {
  std::vector<std::string> out;
  size_t start = 0;
  for (size_t comma; (comma = text.find(',', start)) != std::string::npos; start = comma + 1)
    out.push_back(text.substr(start, comma - start));
  out.push_back(text.substr(start));
  return out;
}

// --meters all or a comma list of mnemonics (DCV,FRH,...).
std::set<Meter> meterList(const std::string& text) {
  std::set<Meter> out;
  for (const std::string& name : commaList(text)) {
    bool known = false;
    for (const MeterInfo& m : meterTable())
      if (text == "all" || name == m.mnemonic) {
        out.insert(m.meter);
        known = true;
      }
    if (!known) throw Fault("--meters takes all or a list of DCV, PHV, ...; not \"" + name + "\"");
  }
  return out;
}

// The open meters as their windows show them after the last packet: the value, or the status in its place.
QJsonObject meterReadings(ScopeSession& s, const std::set<Meter>& open) {
  const MeasurementPass& pass = s.measurement();
  const MeasurementPass::LastPass& last = pass.lastPass();
  const MeterContext ctx{last.isHiRes, last.in.FullScaleVolts, last.in.ZeroVolts, last.in.SamplePeriod,
                         last.n};
  QJsonObject meters;
  for (const MeterInfo& m : meterTable()) {
    if (!open.count(m.meter)) continue;
    const MeterReading r = readMeter(m.meter, pass.calc(), pass.timing(), ctx);
    meters[m.mnemonic] = r.status.empty() ? number(r.value) : QJsonValue(QString::fromStdString(r.status));
  }
  return meters;
}

QJsonObject spectrumReading(ScopeSession& s) {
  const SpectrumEngine& e = s.spectrum().engine();
  const double binHz = e.SpecBins > 0 ? e.MaxFreq / e.SpecBins : 0;
  return QJsonObject{{"computed", s.spectrum().HaveData()},
                     {"peak_bin", e.PeakBin},
                     {"peak_freq", e.PeakBin * binHz},
                     {"peak_amp", e.PeakAmp}};
}

QJsonObject histogramReading(ScopeSession& s) {
  const HistogramEngine& e = s.stat().engine();
  int32_t maxCount = 0;
  for (int32_t c : e.HistCount) maxCount = std::max(maxCount, c);
  return QJsonObject{{"built", s.stat().HaveData()}, {"samples", e.HistSamples}, {"max_count", maxCount}};
}

}  // namespace

int runSessionCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  SessionOptions opt;
  std::string saveLast;
  std::set<Meter> meters;
  bool spectrum = false, histogram = false;
  std::vector<std::string> rest;
  for (size_t i = 0; i < args.size(); ++i) {
    auto value = [&](const std::string& name) {
      if (i + 1 >= args.size()) throw Fault(name + " needs a value");
      return args[++i];
    };
    if (args[i] == "--packets") {
      opt.packets = wholeNumberOption("--packets", value("--packets"), 0, 1000000);
    } else if (args[i] == "--timeout") {
      auto s = parseLeadingNumber(value("--timeout"));
      if (!s || *s <= 0 || *s > 3600) throw Fault("--timeout wants seconds");
      opt.timeoutSeconds = *s;
    } else if (args[i] == "--keys") {
      for (const std::string& k : commaList(value("--keys"))) {
        if (k.empty()) continue;
        if (k != "Comma" && !KeyMap::isKeyName(k)) throw Fault("--keys: unknown key \"" + k + "\"");
        opt.keys.push_back(k);
      }
    } else if (args[i] == "--save-last") {
      saveLast = value("--save-last");
    } else if (args[i] == "--single") {
      opt.single = true;
    } else if (args[i] == "--meters") {
      meters = meterList(value("--meters"));
    } else if (args[i] == "--spectrum") {
      spectrum = true;
    } else if (args[i] == "--histogram") {
      histogram = true;
    } else {
      rest.push_back(args[i]);
    }
  }
  CommandLine cl = parseCommandLine(rest);
  opt.simOptions = cl.simOptions;
  opt.device = cl.device;

  // A scratch store unless ZORVIK_REGISTRY names a real one.
  const char* env = std::getenv("ZORVIK_REGISTRY");
  RegistryStore store(env && *env ? std::string(env) : std::string(":memory:"));
  RegistrySettings settings(store, "Zorvik DSO1");
  for (const auto& s : cl.sets) {
    SettingAssignment a = parseSettingAssignment(s);
    settings.SaveSettingValue(a.section, a.name, a.value);
  }
  HeadlessSession session(settings, opt.simOptions, opt.device);
  // The readers run as they do behind open windows in the program.
  ScopeSession& core = session.session();
  core.measurement().open = meters;
  core.spectrum().visible = [spectrum] { return spectrum; };
  core.stat().visible = [histogram] { return histogram; };
  SessionResult result = session.run(opt);

  MainController& m = session.main();
  if (!saveLast.empty()) saveLastPacketTo(m, saveLast);
  QJsonObject o;
  o["state"] = sessionStateName(m.sessionState());
  o["ready_reached"] = result.readyReached;
  o["packets"] = result.packets;
  o["sample_count"] = m.SampleCount();
  o["properties"] = properties(result.device);
  o["registers"] = registers(result.device);
  o["status_text"] = QString::fromStdString(result.statusText);
  o["no_trigger_visible"] = result.noTriggerVisible;
  o["frame_rate"] = m.state().fps;
  o["SamplePeriod"] = floatNumber(m.scale().SamplePeriod);
  o["FullScaleVolts"] = floatNumber(m.scale().FullScaleVolts);
  o["ZeroVolts"] = floatNumber(m.scale().ZeroVolts);
  o["SamplesPerDiv"] = m.scale().SamplesPerDiv;
  o["TimeDiv"] = session.control().timebase().model().TimeDiv;
  o["VoltPerDiv"] = session.control().channel().model().scrollCH1;
  o["rolls"] = QJsonObject{{"chunks", session.link().rollChunks},
                           {"bytes", static_cast<double>(session.link().rollBytes)}};
  QJsonArray log;
  for (const PacketRecord& p : result.packetLog) {
    QJsonObject j;
    j["length"] = static_cast<double>(p.length);
    j["triggered"] = p.triggered;
    j["parallel"] = p.parallel;
    j["status_text"] = QString::fromStdString(p.statusText);
    log.append(j);
  }
  o["packet_log"] = log;
  if (!meters.empty()) o["meters"] = meterReadings(core, meters);
  if (spectrum) o["spectrum"] = spectrumReading(core);
  if (histogram) o["histogram"] = histogramReading(core);
  QJsonArray msgs;
  for (const auto& msg : session.messages().messages) {
    QJsonObject j;
    j["kind"] = boxKindName(msg.kind);
    j["title"] = latin1Text(msg.title);
    j["text"] = latin1Text(msg.text);
    msgs.append(j);
  }
  o["messages"] = msgs;
  QJsonArray requests, writes;
  for (const auto& r : session.link().requests) requests.append(QString::fromStdString(r));
  for (const auto& w : session.link().writes)
    writes.append(QJsonArray{QString::fromStdString(w.first), w.second});
  o["requests"] = requests;
  o["writes"] = writes;
  out << QJsonDocument(o).toJson(QJsonDocument::Compact).toStdString() << "\n";
  if (!result.linkError.empty()) {
    err << "zorvik-cli: " << result.linkError << "\n";
    return 2;
  }
  if (!result.error.empty()) {
    err << "zorvik-cli: " << result.error << "\n";
    return 1;
  }
  return 0;
}

}  // namespace zorvik
