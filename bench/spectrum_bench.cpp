// The spectrum of an 8192-sample hi-res record: frame, window, transform and bins.
#include <benchmark/benchmark.h>

#include <cmath>
#include <string>

#include "spectrum/spectrum_engine.h"

namespace {

void BM_Spectrum(benchmark::State& state) {
  std::string s;
  for (int k = 0; k < 8192; ++k) {
    const long code = std::lround(32768 + 20000 * std::sin(k * 0.0917) + 3000 * std::sin(k * 0.41));
    s += static_cast<char>(code >> 8);
    s += static_cast<char>(code & 0xFF);
  }
  zorvik::SpectrumInput in;
  in.samples = s;
  in.IsHiRes = true;
  zorvik::SpectrumSettings settings;
  settings.WindowFunction = static_cast<int>(state.range(0));
  settings.Doubled = state.range(1) != 0;
  zorvik::SpectrumEngine e;
  for (auto _ : state) {
    e.ComputeSpectrum(in, settings);
    benchmark::DoNotOptimize(e.PeakAmp);
  }
  state.SetLabel(std::string(zorvik::kWindowFunctions[settings.WindowFunction]) +
                 (settings.Doubled ? ", doubled" : ""));
}
BENCHMARK(BM_Spectrum)->Args({0, 0})->Args({6, 0})->Args({6, 1})->Unit(benchmark::kMicrosecond);

}  // namespace
