// The spectrum's amplitudes and strongest line against the first loops: the frame converted sample by
// sample, the transform, then bin by bin with a strict comparison, on records of each format.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "spectrum/fft.h"
#include "spectrum/sinxx.h"
#include "spectrum/spectrum_engine.h"

using namespace zorvik;

namespace {

struct Lines {
  std::vector<float> amp;
  float peakAmp = 0, peakBin = 0;
};

Lines binByBin(const SpectrumInput& in, const SpectrumSettings& s, const SpectrumEngine& e) {
  const int n = static_cast<int>(in.IsHiRes || in.IsPeak ? in.samples.size() / 2 : in.samples.size());
  std::vector<float> buffer(static_cast<size_t>(n >= 2 ? e.BufferLength : 0), 0.0f);
  auto byte = [&](size_t k) { return static_cast<int>(static_cast<uint8_t>(in.samples[k])); };
  for (int i = 0; i < e.FrameLength && n >= 2; ++i) {
    const size_t smp = static_cast<size_t>(e.FrameStart + i);
    float v;
    if (in.IsPeak)
      v = static_cast<float>((byte(2 * smp) + byte(2 * smp + 1)) / 2 - 128) * in.FullScaleVolts / 256 +
          in.ZeroVolts;
    else if (in.IsHiRes)
      v = static_cast<float>(byte(2 * smp) * 256 + byte(2 * smp + 1) - 32768) * in.FullScaleVolts / 65536 +
          in.ZeroVolts;
    else
      v = static_cast<float>(byte(smp) - 128) * in.FullScaleVolts / 256 + in.ZeroVolts;
    buffer[static_cast<size_t>(i)] = v * windowMultiplier(s.WindowFunction, i, e.FrameLength);
  }
  const float K = e.FrameLength > 0 ? windowAmplitudeFactor(s.WindowFunction, e.FrameLength) : 0;
  std::vector<float> re, im;
  Transform(buffer, re, im);
  Lines l;
  l.amp.assign(re.size(), 0.0f);
  const size_t first = s.DCfreq ? 0 : s.Doubled ? 4 : 2;
  for (size_t j = first; j < re.size(); ++j) {
    l.amp[j] = K * std::sqrt(re[j] * re[j] + im[j] * im[j]);
    if (l.amp[j] > l.peakAmp) {
      l.peakAmp = l.amp[j];
      l.peakBin = static_cast<float>(j);
    }
  }
  return l;
}

}  // namespace

TEST(SpectrumReference, AmplitudesAndTheStrongestLineBitForBit) {
  std::mt19937 rng(61);
  SpectrumEngine e;  // one engine throughout: what a record leaves behind is read by the next
  for (int format = 0; format < 3; ++format) {
    for (size_t samples : {1u, 2u, 5u, 1000u, 8192u}) {
      std::string s;
      for (size_t k = 0; k < samples * (format ? 2 : 1); ++k) {
        const double wave = 128 + 90 * std::sin(k * 0.37) + static_cast<double>(rng() % 7);
        s += static_cast<char>(static_cast<int>(wave));
      }
      for (int window : {0, 4, 6}) {
        for (bool doubled : {false, true}) {
          for (bool dc : {false, true}) {
            SpectrumInput in{s, format == 1, format == 2, true, 1e-6f, 2.5f, -0.3f};
            SpectrumSettings settings{dc, doubled, window};
            e.ComputeSpectrum(in, settings);
            const Lines want = binByBin(in, settings, e);
            ASSERT_EQ(e.SpecAmp.size(), want.amp.size());
            for (size_t j = 0; j < want.amp.size(); ++j)
              ASSERT_EQ(std::bit_cast<uint32_t>(e.SpecAmp[j]), std::bit_cast<uint32_t>(want.amp[j])) << j;
            EXPECT_EQ(e.PeakAmp, want.peakAmp);
            EXPECT_EQ(e.PeakBin, want.peakBin);
          }
        }
      }
    }
  }
  // Equal lines: the lowest wins. A NaN scale gives NaN lines and no peak, as bin by bin.
  std::string flat(64, static_cast<char>(200));
  SpectrumInput nan{flat, false, false, true, 1e-6f, std::numeric_limits<float>::quiet_NaN(), 0};
  e.ComputeSpectrum(nan, {true, false, 0});
  EXPECT_EQ(e.PeakAmp, 0);
  EXPECT_EQ(e.PeakBin, 0);
}

TEST(SpectrumReference, KeptSinxxFactorsGiveTheSameRefinement) {
  std::mt19937 rng(5);
  std::uniform_real_distribution<float> u(0, 1);
  SinxxFactors factors;
  for (int round = 0; round < 200; ++round) {
    std::vector<float> spectrum(64);
    for (float& v : spectrum) v = u(rng);
    const float centre = static_cast<float>(round % 7 == 0 ? 63 : rng() % 64) + (round % 3 ? 0.0f : u(rng));
    const InterpolatedPeak want = InterpolationMaxFind(spectrum, 64, centre - 1, centre + 1);
    const InterpolatedPeak got = InterpolationMaxFind(spectrum, 64, centre - 1, centre + 1, factors);
    EXPECT_EQ(std::bit_cast<uint32_t>(got.bin), std::bit_cast<uint32_t>(want.bin)) << round;
    EXPECT_EQ(std::bit_cast<uint32_t>(got.amplitude), std::bit_cast<uint32_t>(want.amplitude)) << round;
  }
}
