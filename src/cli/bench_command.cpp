#include "cli/bench_command.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <iostream>
#include <numeric>

#include "cli/display_command.h"
#include "cli/stream_bench.h"
#include "core/fault.h"
#include "core/progress_line.h"
#include "session/command_line.h"
#include "session/full_path.h"
#include "sim/packet_builder.h"
#include "sim/sim_config.h"

namespace zorvik {

namespace {

constexpr int kMaxPackets = 1000000;
constexpr int kSimPackets = 16;  // different phases, so the persistence sees a moving trace
constexpr int kWarmUp = 50;      // packets before the clock runs: buffers sized, caches warm

struct BenchArgs {
  std::vector<std::string> files;
  std::string device;
  DisplayOptions display;
  int packets = 1000;
  int mode = 0;
  int samples = 332;
  bool samplesGiven = false;
  bool full = false;
  bool modeGiven = false;
};

BenchArgs parseArgs(const std::vector<std::string>& args) {
  BenchArgs b;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string v;
    if (takeValue(args, i, "--packets", v)) {
      b.packets = wholeNumberOption("--packets", v, 1, kMaxPackets);
    } else if (takeValue(args, i, "--mode", v)) {
      b.mode = wholeNumberOption("--mode", v, 0, 4);
      b.modeGiven = true;
    } else if (args[i] == "--full") {
      b.full = true;
    } else if (takeValue(args, i, "--samples", v)) {
      b.samples = wholeNumberOption("--samples", v, 16, 16384);
      b.samplesGiven = true;
    } else if (takeValue(args, i, "--device", v)) {
      b.device = v;
    } else if (takeDisplayOption(args, i, b.display)) {
      continue;
    } else if (args[i].rfind("-", 0) == 0) {
      throw Fault("unexpected argument: " + args[i]);
    } else {
      b.files.push_back(args[i]);
    }
  }
  return b;
}

// Acquisitions of the simulated instrument at the time base a session starts with.
std::vector<PacketFile> simulatedPackets(const BenchArgs& b) {
  const SimConfig config;
  SignalGenerator generator(config);
  PacketBuilder builder(generator);
  AcquisitionSetup setup;
  setup.MC = 3125;       // 31.25 ns clock
  setup.TS = 100 * 256;  // 100 clocks a sample: 3.125 µs, 32 samples in 100 µs
  setup.M1 = static_cast<uint8_t>(b.mode);
  setup.qsh = config.qshForMode(setup.M1);
  setup.QS = static_cast<uint32_t>(std::min<int>(b.samples, static_cast<int>(setup.qsh)));
  std::vector<PacketFile> packets;
  double now = 0;
  for (int i = 0; i < kSimPackets; ++i) {
    packets.push_back({builder.build(setup, now), 32});
    now = std::fmod(builder.endTime() + 0.000137 * (i + 1), generator.period());
  }
  return packets;
}

struct Timings {
  double median = 0, mean = 0, min = 0, max = 0;
};

// Times `count` calls of play(i), one by one, after kWarmUp untimed ones.
template <typename Play>
Timings timePackets(int count, Play&& play, const char* what) {
  for (int i = 0; i < kWarmUp; ++i) play(i);
  std::vector<double> micros(static_cast<size_t>(count));
  ProgressLine progress(std::cerr, ProgressLine::stderrIsTerminal(), what, count);
  for (int i = 0; i < count; ++i) {
    const auto t0 = std::chrono::steady_clock::now();
    play(i);
    const auto t1 = std::chrono::steady_clock::now();
    progress.step(i + 1);  // outside the timed part
    micros[static_cast<size_t>(i)] = std::chrono::duration<double, std::micro>(t1 - t0).count();
  }
  Timings t;
  t.mean = std::accumulate(micros.begin(), micros.end(), 0.0) / static_cast<double>(micros.size());
  std::sort(micros.begin(), micros.end());
  const size_t n = micros.size();
  t.median = n % 2 ? micros[n / 2] : (micros[n / 2 - 1] + micros[n / 2]) / 2;
  t.min = micros.front();
  t.max = micros.back();
  return t;
}

double round2(double v) {
  return std::round(v * 100) / 100;
}

// The whole signal path with everything open, for each sample format (or the one of --mode).
QJsonObject benchFull(const BenchArgs& b) {
  if (!b.files.empty()) throw Fault("bench --full takes no FILE: it times the simulated 8192-sample packets");
  QJsonObject formats;
  for (int mode = 0; mode < 5; ++mode) {
    if (b.modeGiven && mode != b.mode) continue;
    const std::vector<std::string> packets = fullPathPackets(mode, kSimPackets);
    FullPathRig rig;
    const Timings t = timePackets(
        b.packets, [&](int i) { rig.packet(packets[static_cast<size_t>(i) % packets.size()]); },
        kFullPathModeNames[mode]);
    QJsonObject o;
    o["median_us"] = round2(t.median);
    o["packets_per_s"] = t.median > 0 ? std::round(1e6 / t.median) : 0.0;
    o["mean_us"] = round2(t.mean);
    o["min_us"] = round2(t.min);
    o["max_us"] = round2(t.max);
    formats[kFullPathModeNames[mode]] = o;
  }
  QJsonObject o;
  o["source"] = "sim";
  o["packets"] = b.packets;
  o["sample_count"] = 8192;
  o["full"] = formats;
  return o;
}

QJsonObject bench(const BenchArgs& b) {
  if (b.full) return benchFull(b);
  std::vector<PacketFile> packets;
  for (const std::string& file : b.files) packets.push_back(readPacketFile(file));
  if (packets.empty()) packets = simulatedPackets(b);

  HeadlessDisplay rig(b.display);
  auto play = [&](int i) {
    const PacketFile& p = packets[static_cast<size_t>(i) % packets.size()];
    rig.packet(p.bytes, b.display.samplesPerDiv.value_or(p.samplesPerDiv.value_or(16)));
  };
  const Timings t = timePackets(b.packets, play, "packets");

  QJsonObject o;
  o["source"] = b.files.empty() ? "sim" : "files";
  o["packets"] = b.packets;
  o["sample_count"] = rig.main().SampleCount();
  o["wide"] = rig.display().settings().wide;
  o["median_us"] = round2(t.median);
  o["mean_us"] = round2(t.mean);
  o["min_us"] = round2(t.min);
  o["max_us"] = round2(t.max);
  return o;
}

}  // namespace

int runBenchCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  try {
    const BenchArgs b = parseArgs(args);
    if (!b.device.empty() && !b.files.empty()) throw Fault("bench --device takes no packet files");
    if (!b.device.empty() && b.full) throw Fault("bench --device and --full time different things: give one");
    QJsonObject result =
        b.device.empty() ? bench(b) : benchStream(b.device, b.packets, b.samplesGiven ? b.samples : 8192);
    out << QJsonDocument(result).toJson(QJsonDocument::Compact).toStdString() << "\n";
    return 0;
  } catch (const std::exception& e) {
    err << "zorvik-cli: " << e.what() << "\n";
    return 2;
  }
}

}  // namespace zorvik
