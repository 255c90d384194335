// The whole signal path of one 8192-sample packet with everything open, per sample format, and the
// measurement pass alone with every meter.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "alloc_count.h"
#include "measure/measurement_pass.h"
#include "measure/meter_readings.h"
#include "session/full_path.h"
#include "signal/packet.h"

namespace {

constexpr int kPhases = 16;

void fullPath(benchmark::State& state, int mode) {
  const std::vector<std::string> packets = zorvik::fullPathPackets(mode, kPhases);
  zorvik::FullPathRig rig;
  // Buffers sized, persistence filled, caches warm.
  for (int i = 0; i < 200; ++i) rig.packet(packets[static_cast<size_t>(i % kPhases)]);
  const uint64_t allocsBefore = zorvik::bench::allocationCount();
  size_t i = 0;
  for (auto _ : state) rig.packet(packets[i++ % kPhases]);
  const double allocs = static_cast<double>(zorvik::bench::allocationCount() - allocsBefore);
  state.counters["packets_per_s"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
  state.counters["allocs_per_packet"] = benchmark::Counter(allocs, benchmark::Counter::kAvgIterations);
}

void measurementPass(benchmark::State& state, int mode) {
  const std::vector<std::string> packets = zorvik::fullPathPackets(mode, kPhases);
  std::vector<zorvik::SegmentData> segments;
  int n = 0;
  for (const std::string& p : packets) {
    const zorvik::PacketInfo info = zorvik::decodePacket(p);
    segments.push_back({info.segment1, info.isHiRes, info.isPeak, info.oneCharSample, 0});
    n = info.sampleCount;
  }
  zorvik::MeasureInputs in;
  in.autoLevel = true;
  zorvik::MeasurementPass pass([&] { return in; });
  for (const zorvik::MeterInfo& m : zorvik::meterTable()) pass.open.insert(m.meter);
  size_t i = 0;
  for (auto _ : state) {
    pass.run(segments[i++ % kPhases], n, in);
    benchmark::DoNotOptimize(pass.calc().DCVolts);
  }
}

const int kRegistered = [] {
  for (int mode = 0; mode < 5; ++mode) {
    const std::string name = zorvik::kFullPathModeNames[mode];
    benchmark::RegisterBenchmark(("BM_FullPath/" + name).c_str(), fullPath, mode)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark(("BM_MeasurementPass/" + name).c_str(), measurementPass, mode)
        ->Unit(benchmark::kMicrosecond);
  }
  return 0;
}();

}  // namespace
