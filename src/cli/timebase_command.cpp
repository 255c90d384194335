#include "cli/timebase_command.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "core/fault.h"
#include "session/timebase_probe.h"
#include "sim/sim_config.h"

namespace zorvik {

namespace {

// A whole number that fills the whole text.
int64_t wholeNumber(const std::string& text, const std::string& what, int64_t min, int64_t max) {
  char* end = nullptr;
  errno = 0;
  long long v = std::strtoll(text.c_str(), &end, 0);
  if (text.empty() || *end != '\0' || errno != 0 || v < min || v > max)
    throw Fault(what + " wants a whole number from " + std::to_string(min) + " to " + std::to_string(max) +
                ": " + text);
  return v;
}

double seconds(const std::string& text) {
  char* end = nullptr;
  double v = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !std::isfinite(v) || v <= 0)
    throw Fault("SECONDS_PER_DIV wants a positive number: " + text);
  return v;
}

TimebaseLimits simulatorLimits() {
  SimConfig sim;
  auto i32 = [](uint32_t v) { return static_cast<int32_t>(v); };
  return {i32(sim.MCd), i32(sim.MCl), i32(sim.MCh), i32(sim.TOv),
          i32(sim.TOl), i32(sim.TMl), i32(sim.TMh), i32(sim.TPl)};
}

void applyLimits(TimebaseLimits& l, const std::string& list) {
  size_t start = 0;
  while (start < list.size()) {
    size_t comma = list.find(',', start);
    std::string item = list.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
    start = comma == std::string::npos ? list.size() : comma + 1;
    size_t eq = item.find('=');
    if (eq == std::string::npos) throw Fault("--limits wants NAME=VALUE items: " + item);
    std::string name = item.substr(0, eq);
    auto v = static_cast<int32_t>(wholeNumber(item.substr(eq + 1), name, INT32_MIN, INT32_MAX));
    if (name == "MCd")
      l.MCd = v;
    else if (name == "MCl")
      l.MCl = v;
    else if (name == "MCh")
      l.MCh = v;
    else if (name == "TOv")
      l.TOv = v;
    else if (name == "TOl")
      l.TOl = v;
    else if (name == "TMl")
      l.TMl = v;
    else if (name == "TMh")
      l.TMh = v;
    else if (name == "TPl")
      l.TPl = v;
    else
      throw Fault("--limits knows MCd, MCl, MCh, TOv, TOl, TMl, TMh, TPl, not " + name);
  }
}

}  // namespace

int runTimebaseCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  try {
    TimebaseProbe probe;
    probe.limits = simulatorLimits();
    bool haveTime = false;
    for (size_t i = 0; i < args.size(); ++i) {
      const std::string& a = args[i];
      auto value = [&]() -> const std::string& {
        if (i + 1 >= args.size()) throw Fault(a + " needs a value");
        return args[++i];
      };
      if (a == "--limits")
        applyLimits(probe.limits, value());
      else if (a == "--ris")
        probe.ris = true;
      else if (a == "--maximize")
        probe.maximize = true;
      else if (a == "--wide")
        probe.wide = true;
      else if (a == "--memo-depth")
        probe.memoDepth = static_cast<int>(wholeNumber(value(), a, 0, 3));
      else if (a == "--clock-min")
        probe.clockMinMHz = static_cast<int>(wholeNumber(value(), a, 0, 32767));
      else if (a == "--clock-max")
        probe.clockMaxMHz = static_cast<int>(wholeNumber(value(), a, 0, 32767));
      else if (a == "--qsh")
        probe.qsh = static_cast<int32_t>(wholeNumber(value(), a, 0, INT32_MAX));
      else if (a == "--ts")
        probe.ts = static_cast<int32_t>(wholeNumber(value(), a, INT32_MIN, INT32_MAX));
      else if (a.rfind("--", 0) == 0)
        throw Fault("unknown option: " + a);
      else if (haveTime)
        throw Fault("one SECONDS_PER_DIV only: " + a);
      else {
        probe.secondsPerDiv = static_cast<float>(seconds(a));
        haveTime = true;
      }
    }
    if (!haveTime) throw Fault("usage: timebase SECONDS_PER_DIV [options]");

    TimebaseProbeResult r = runTimebaseProbe(probe);
    QJsonObject o;
    o["result"] = r.ok ? "ok" : "refused";
    if (!r.ok) o["message"] = QString::fromStdString(r.message);
    o["TS"] = r.TS;
    o["MC"] = r.MC;
    o["QS"] = r.QS;
    o["SamplesPerDiv"] = r.SamplesPerDiv;
    o["RisActive"] = r.RisActive;
    QJsonArray writes;
    for (const auto& w : r.writes) writes.append(QJsonArray{QString::fromStdString(w.first), w.second});
    o["writes"] = writes;
    out << QJsonDocument(o).toJson(QJsonDocument::Compact).toStdString() << "\n";
    return 0;
  } catch (const std::exception& e) {
    err << "zorvik-cli: timebase: " << e.what() << "\n";
    return 2;
  }
}

}  // namespace zorvik
