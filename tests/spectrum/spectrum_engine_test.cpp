#include "spectrum/spectrum_engine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <random>
#include <string>

#include "spectrum/fft.h"

using namespace zorvik;

namespace {
const double kPi = std::acos(-1.0);

// A hi-res record: the sum of sines (RMS volts, bin of a 1024 frame) at 4 V full scale.
std::string hiResSines(int n, std::initializer_list<std::pair<double, int>> lines) {
  std::string s;
  for (int k = 0; k < n; ++k) {
    double v = 0;
    for (auto [rms, bin] : lines) v += rms * std::sqrt(2.0) * std::sin(2 * kPi * bin * k / 1024.0);
    const long code = std::lround(32768 + v * 65536 / 4);
    s += static_cast<char>(code >> 8);
    s += static_cast<char>(code & 0xFF);
  }
  return s;
}

SpectrumInput hiRes(const std::string& s) {
  SpectrumInput in;
  in.samples = s;
  in.IsHiRes = true;
  in.FullScaleVolts = 4;
  return in;
}
}  // namespace

TEST(SpectrumEngine, FrameAndBinsFollowTheRecordLength) {
  SpectrumEngine e;
  const std::string thousand(1000, static_cast<char>(128));
  SpectrumInput in;
  in.samples = thousand;
  e.ComputeSpectrum(in, {});
  EXPECT_EQ(e.FrameLength, 512);
  EXPECT_EQ(e.FrameStart, 244);
  EXPECT_EQ(e.SpecBins, 256);
  e.ComputeSpectrum(in, {false, true, 0});
  EXPECT_EQ(e.FrameLength, 1000);
  EXPECT_EQ(e.BufferLength, 1024);
  EXPECT_EQ(e.FrameStart, 0);
  EXPECT_EQ(e.SpecBins, 512);

  const std::string exact(1024, static_cast<char>(128));
  in.samples = exact;
  e.ComputeSpectrum(in, {});
  EXPECT_EQ(e.SpecBins, 512);
  e.ComputeSpectrum(in, {false, true, 0});
  EXPECT_EQ(e.BufferLength, 1024);  // an exact power of two is not doubled again
  EXPECT_EQ(e.SpecBins, 512);

  in.IsPeak = true;  // one character a sample: half the frequency span
  in.SamplePeriod = 1e-6f;
  e.ComputeSpectrum(in, {});
  EXPECT_FLOAT_EQ(e.MaxFreq, 250000);
  in.OneCharSample = false;
  e.ComputeSpectrum(in, {});
  EXPECT_FLOAT_EQ(e.MaxFreq, 500000);

  in.samples = std::string(1, 'x');  // nothing to transform
  e.ComputeSpectrum(in, {});
  EXPECT_EQ(e.SpecBins, 0);
  EXPECT_TRUE(e.SpecAmp.empty());
}

TEST(SpectrumEngine, ASineOnABinReadsItsRmsUnderEveryWindow) {
  const std::string s = hiResSines(1024, {{1.0, 16}});
  for (int w = 0; w < 7; ++w) {
    SpectrumEngine e;
    e.ComputeSpectrum(hiRes(s), {false, false, w});
    EXPECT_EQ(e.PeakBin, 16) << kWindowFunctions[w];
    // The Part's coherent gains are rounded, and Blackman's are not its textbook values.
    EXPECT_NEAR(e.PeakAmp, 1.0, 0.02) << kWindowFunctions[w];
  }
  SpectrumEngine rect;
  rect.ComputeSpectrum(hiRes(s), {});
  EXPECT_NEAR(rect.PeakAmp, 1.0, 1e-3);
  EXPECT_EQ(rect.SpecAmp[0], 0);  // the lowest bins are left out
  EXPECT_EQ(rect.SpecAmp[1], 0);
  EXPECT_FLOAT_EQ(rect.FullAmp, 2);
  EXPECT_TRUE(rect.ScaleValid);
}

TEST(SpectrumEngine, DcLineAndTheDeadBand) {
  SpectrumEngine e;
  SpectrumInput in;
  const std::string flat(256, static_cast<char>(128));
  in.samples = flat;
  in.ZeroVolts = 0.5f;  // an offset on the screen is a DC line
  e.ComputeSpectrum(in, {true, false, 0});
  EXPECT_NEAR(e.SpecAmp[0], std::sqrt(2.0) * 0.5, 1e-5);  // the factor is the one for sines
  e.ComputeSpectrum(in, {false, true, 0});
  for (int j = 0; j < 4; ++j) EXPECT_EQ(e.SpecAmp[static_cast<size_t>(j)], 0) << j;

  SpectrumEngine band;
  band.ComputeSpectrum(hiRes(hiResSines(1024, {{1.0, 16}})), {});
  const float shown = band.ShownMax;
  EXPECT_NEAR(band.HeldMax, shown * 1.05, 1e-6);
  band.ComputeSpectrum(hiRes(hiResSines(1024, {{0.97, 16}})), {});
  EXPECT_EQ(band.ShownMax, shown);  // 3 % off: the scale stays
  band.ComputeSpectrum(hiRes(hiResSines(1024, {{0.9, 16}})), {});
  EXPECT_NEAR(band.ShownMax, 0.9, 2e-3);
  band.resetHeldMax();
  band.ComputeSpectrum(hiRes(hiResSines(1024, {{0.9, 16}})), {});
  EXPECT_NEAR(band.HeldMax, band.ShownMax * 1.05, 1e-6);
}

TEST(Transform, MatchesAPlainDftAndCutsToAPowerOfTwo) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<float> u(-1, 1);
  std::vector<float> x(70);  // cut to 64
  for (float& v : x) v = u(rng);
  std::vector<float> re, im;
  Transform(x, re, im);
  ASSERT_EQ(re.size(), 32u);
  for (int k = 0; k < 32; ++k) {
    std::complex<double> sum = 0;
    for (int t = 0; t < 64; ++t)
      sum += static_cast<double>(x[static_cast<size_t>(t)]) * std::polar(1.0, -2 * kPi * k * t / 64);
    EXPECT_NEAR(re[static_cast<size_t>(k)], sum.real(), 1e-4) << k;
    EXPECT_NEAR(im[static_cast<size_t>(k)], sum.imag(), 1e-4) << k;
  }
}
