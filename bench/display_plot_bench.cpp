// The plotters through the packet entry: resampling, interpolation and drawing on the surface.
#include <benchmark/benchmark.h>

#include "display_bench_util.h"

namespace {

using zorvik::bench::BenchRig;
using zorvik::bench::makePacket;

// 8192 samples of one byte, oversampled: 256 samples a division is 8 a column (512: 16).
void BM_PlotSamplesOversampling8192(benchmark::State& state) {
  BenchRig rig(false);
  rig.host.samplesPerDiv = static_cast<int>(state.range(0));
  const std::string p = makePacket(0x000, 8192, 700);
  for (auto _ : state) rig.packet(p);
  state.SetLabel("SamplesPerDiv " + std::to_string(state.range(0)));
}
BENCHMARK(BM_PlotSamplesOversampling8192)->Arg(256)->Arg(512);

// 330 samples at 16 a division: two columns a sample, Sin(x)/x (2) or Lanczos (3) with 2 ^ points taps.
void BM_PlotSamplesInterpolated330(benchmark::State& state) {
  BenchRig rig(state.range(2) != 0);
  rig.s().interpolation = static_cast<int>(state.range(0));
  rig.s().interpolationPoints = static_cast<int>(state.range(1));
  const std::string p = makePacket(0x000, 330, 37.3);
  for (auto _ : state) rig.packet(p);
  state.SetLabel(std::string(state.range(0) == 2 ? "SinX/X" : "Lanczos") + " taps " +
                 std::to_string(1 << state.range(1)) + (state.range(2) ? " wide" : ""));
}
BENCHMARK(BM_PlotSamplesInterpolated330)
    ->Args({2, 5, 0})
    ->Args({2, 5, 1})
    ->Args({2, 8, 0})
    ->Args({2, 8, 1})
    ->Args({3, 5, 1})
    ->Args({3, 8, 1});

// The interpolation alone: 480 columns of Sin(x)/x at 32 taps, no drawing.
void BM_SinX32On480Columns(benchmark::State& state) {
  zorvik::SampleBuf samples;
  const std::string p = makePacket(0x000, 330, 37.3);
  samples.fill(std::string_view(p).substr(4), false);
  zorvik::SampleResampler resampler;
  auto columns = std::make_unique<zorvik::TraceColumns>();
  zorvik::ResampleRequest r;
  r.plotWidth = 480;
  r.ratio = 2;
  r.interp = zorvik::Interpolation::SinX;
  r.taps = static_cast<int>(state.range(0));
  for (auto _ : state) {
    resampler.run(samples, r, *columns);
    benchmark::DoNotOptimize(columns->Y.data());
  }
  state.SetLabel("taps " + std::to_string(state.range(0)));
}
BENCHMARK(BM_SinX32On480Columns)->Arg(32)->Arg(256);

// Peak pairs (0x300), one pair a column at 32 a division, and merged at 128.
void BM_PlotPeaks(benchmark::State& state) {
  BenchRig rig(true);
  rig.host.samplesPerDiv = static_cast<int>(state.range(0));
  const std::string p = makePacket(0x300, 4096, 500);
  for (auto _ : state) rig.packet(p);
  state.SetLabel("SamplesPerDiv " + std::to_string(state.range(0)) + " wide");
}
BENCHMARK(BM_PlotPeaks)->Arg(32)->Arg(128);

}  // namespace
