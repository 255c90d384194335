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
};

BenchArgs parseArgs(const std::vector<std::string>& args) {
  BenchArgs b;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string v;
    if (takeValue(args, i, "--packets", v)) {
      b.packets = wholeNumberOption("--packets", v, 1, kMaxPackets);
    } else if (takeValue(args, i, "--mode", v)) {
      b.mode = wholeNumberOption("--mode", v, 0, 4);
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

QJsonObject bench(const BenchArgs& b) {
  std::vector<PacketFile> packets;
  for (const std::string& file : b.files) packets.push_back(readPacketFile(file));
  if (packets.empty()) packets = simulatedPackets(b);

  HeadlessDisplay rig(b.display);
  auto play = [&](int i) {
    const PacketFile& p = packets[static_cast<size_t>(i) % packets.size()];
    rig.packet(p.bytes, b.display.samplesPerDiv.value_or(p.samplesPerDiv.value_or(16)));
  };
  for (int i = 0; i < kWarmUp; ++i) play(i);

  std::vector<double> micros(static_cast<size_t>(b.packets));
  ProgressLine progress(std::cerr, ProgressLine::stderrIsTerminal(), "packets", b.packets);
  for (int i = 0; i < b.packets; ++i) {
    const auto t0 = std::chrono::steady_clock::now();
    play(i);
    const auto t1 = std::chrono::steady_clock::now();
    progress.step(i + 1);  // outside the timed part
    micros[static_cast<size_t>(i)] = std::chrono::duration<double, std::micro>(t1 - t0).count();
  }
  const double mean = std::accumulate(micros.begin(), micros.end(), 0.0) / static_cast<double>(micros.size());
  std::sort(micros.begin(), micros.end());
  const size_t n = micros.size();
  const double median = n % 2 ? micros[n / 2] : (micros[n / 2 - 1] + micros[n / 2]) / 2;

  auto round2 = [](double v) { return std::round(v * 100) / 100; };
  QJsonObject o;
  o["source"] = b.files.empty() ? "sim" : "files";
  o["packets"] = b.packets;
  o["sample_count"] = rig.main().SampleCount();
  o["wide"] = rig.display().settings().wide;
  o["median_us"] = round2(median);
  o["mean_us"] = round2(mean);
  o["min_us"] = round2(micros.front());
  o["max_us"] = round2(micros.back());
  return o;
}

}  // namespace

int runBenchCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  try {
    const BenchArgs b = parseArgs(args);
    if (!b.device.empty() && !b.files.empty()) throw Fault("bench --device takes no packet files");
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
