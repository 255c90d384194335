#include <benchmark/benchmark.h>

#include <cmath>

#include "sim/packet_builder.h"

namespace zorvik {
namespace {

// One 8192-sample acquisition of the default signal (1 kHz sine with noise), per mode M1 0..4.
void BM_SimPacket(benchmark::State& state) {
  static const char* const kModeNames[] = {"average", "hi-res", "peak pairs/2", "peak pairs", "sample"};
  const auto mode = static_cast<uint8_t>(state.range(0));
  const SimConfig config;
  SignalGenerator generator(config);
  PacketBuilder builder(generator);
  AcquisitionSetup setup;
  setup.MC = 1000;      // 10 ns clock
  setup.TS = 10 * 256;  // 100 ns a sample: the record spans about one signal period
  setup.QS = 8192;
  setup.TC = 1024;
  setup.M1 = mode;
  setup.qsh = config.qshForMode(mode);
  double now = 0;
  for (auto _ : state) {
    const std::string& packet = builder.build(setup, now);
    benchmark::DoNotOptimize(packet.data());
    now = std::fmod(builder.endTime() + 0.0173, generator.period());
  }
  state.SetItemsProcessed(state.iterations() * 8192);
  state.SetLabel(kModeNames[mode]);
}
BENCHMARK(BM_SimPacket)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);

// The costliest trigger search: a level input four noise sigmas below the level, armed at once,
// with the level always within the noise's reach and never reached, so the comparator steps until
// it gives up. This bounds the time of one Norm packet whatever the signal.
void BM_SimTriggerUndecided(benchmark::State& state) {
  const SimConfig config = parseSimConfig("signal=dc,offset=-0.025,noise=0.00625");
  SignalGenerator generator(config);
  PacketBuilder builder(generator);
  AcquisitionSetup setup;
  setup.MC = 1000;
  setup.TS = 100 * 256;
  setup.QS = 1000;
  setup.RT = 1;
  setup.TW = 0x7FFFFFFF;
  for (auto _ : state) {
    const std::string& packet = builder.build(setup, 0.0);
    benchmark::DoNotOptimize(packet.data());
  }
  state.SetLabel(builder.placement().hasData ? "fired" : "gave up");
}
BENCHMARK(BM_SimTriggerUndecided)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zorvik
