// The spectrum's 8192-point transform against FFTW's complex transform of the same size, in one run.
#include <benchmark/benchmark.h>
#include <fftw3.h>

#include <chrono>
#include <cmath>
#include <vector>

#include "spectrum/fft.h"

namespace {

using Clock = std::chrono::steady_clock;

void BM_TransformVsFftw(benchmark::State& state) {
  const size_t n = static_cast<size_t>(state.range(0));
  std::vector<float> input(n);
  for (size_t k = 0; k < n; ++k)
    input[k] = static_cast<float>(0.8 * std::sin(k * 0.0917) + 0.1 * std::sin(k * 0.41) + 0.05);
  zorvik::Fft fft;
  std::vector<float> re, im;
  fft.transform(input.data(), n, re, im);

  // FFTW on the same numbers as complex input with zero imaginary parts, planned for speed.
  auto* in = static_cast<fftwf_complex*>(fftwf_malloc(sizeof(fftwf_complex) * n));
  auto* out = static_cast<fftwf_complex*>(fftwf_malloc(sizeof(fftwf_complex) * n));
  const fftwf_plan plan = fftwf_plan_dft_1d(static_cast<int>(n), in, out, FFTW_FORWARD, FFTW_MEASURE);
  for (size_t k = 0; k < n; ++k) {
    in[k][0] = input[k];
    in[k][1] = 0;
  }
  fftwf_execute(plan);

  double ours = 0, theirs = 0;
  for (auto _ : state) {
    const auto t0 = Clock::now();
    fft.transform(input.data(), n, re, im);
    benchmark::DoNotOptimize(re.data());
    const auto t1 = Clock::now();
    fftwf_execute(plan);  // out of place: its input stays as filled
    benchmark::DoNotOptimize(out);
    const auto t2 = Clock::now();
    ours += std::chrono::duration<double, std::micro>(t1 - t0).count();
    theirs += std::chrono::duration<double, std::micro>(t2 - t1).count();
  }
  const double iterations = static_cast<double>(state.iterations());
  state.counters["ours_us"] = ours / iterations;
  state.counters["fftw_us"] = theirs / iterations;
  state.counters["ratio_to_fftw"] = theirs > 0 ? ours / theirs : 0;
  fftwf_destroy_plan(plan);
  fftwf_free(in);
  fftwf_free(out);
}
BENCHMARK(BM_TransformVsFftw)->Arg(8192)->Unit(benchmark::kMicrosecond);

}  // namespace
