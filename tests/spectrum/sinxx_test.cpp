#include "spectrum/sinxx.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "measure/main_meter.h"
#include "measure/thd.h"
#include "spectrum/spectrum_engine.h"

using namespace zorvik;

namespace {
const double kPi = std::acos(-1.0);

// The Hann spectrum of a hi-res record: a 1 V RMS line at `bin` (fractional allowed) and harmonics.
SpectrumEngine spectrumOf(double bin, std::initializer_list<std::pair<int, double>> harmonics = {}) {
  std::string s;
  for (int k = 0; k < 1024; ++k) {
    double v = std::sqrt(2.0) * std::sin(2 * kPi * bin * k / 1024);
    for (auto [h, rms] : harmonics) v += rms * std::sqrt(2.0) * std::sin(2 * kPi * h * bin * k / 1024);
    const long code = std::lround(32768 + v * 65536 / 8);
    s += static_cast<char>(code >> 8);
    s += static_cast<char>(code & 0xFF);
  }
  SpectrumInput in;
  in.samples = s;
  in.IsHiRes = true;
  in.FullScaleVolts = 8;
  in.SamplePeriod = 1e-6f;
  SpectrumEngine e;
  e.ComputeSpectrum(in, {false, false, 2});
  return e;
}
}  // namespace

TEST(SinXx, RebuildsALineBetweenBins) {
  const SpectrumEngine e = spectrumOf(40.5);  // half way between two bins: each shows less than the line
  EXPECT_LT(e.PeakAmp, 0.9);
  const InterpolatedPeak p = InterpolationMaxFind(e.SpecAmp, e.SpecBins, e.PeakBin - 1, e.PeakBin + 1);
  EXPECT_NEAR(p.bin, 40.5, 0.06);
  EXPECT_GT(p.amplitude, e.PeakAmp);

  // A band of one whole bin gives that bin's value or a higher one beside it; an empty band nothing.
  const InterpolatedPeak one = InterpolationMaxFind(e.SpecAmp, e.SpecBins, 20, 20);
  EXPECT_GE(one.amplitude, e.SpecAmp[20]);
  EXPECT_EQ(InterpolationMaxFind(e.SpecAmp, e.SpecBins, 30, 29).amplitude, 0);
  // At the end of the array the eight bins are pulled back inside it.
  const InterpolatedPeak end = InterpolationMaxFind(e.SpecAmp, e.SpecBins, 500, 600);
  EXPECT_LE(end.bin, e.SpecBins);
}

TEST(Thd, HarmonicsAgainstTheFundamental) {
  SpectrumEngine e = spectrumOf(32, {{2, 0.03}, {3, 0.04}});  // 5 % in amplitude
  const InterpolatedPeak f = InterpolationMaxFind(e.SpecAmp, e.SpecBins, e.PeakBin - 1, e.PeakBin + 1);
  ThdResult r = computeThd(e.SpecAmp, e.SpecBins, f.bin, f.amplitude, 1e-6f, 5, false);
  ASSERT_TRUE(r.valid);
  EXPECT_EQ(r.harmonics, 5);
  EXPECT_NEAR(r.value, 5.0, 0.3);
  EXPECT_NEAR(r.lines[1].freq, 2 * r.lines[0].freq, r.lines[0].freq * 0.01);
  ThdResult power = computeThd(e.SpecAmp, e.SpecBins, f.bin, f.amplitude, 1e-6f, 5, true);
  EXPECT_NEAR(power.value, 0.25, 0.03);  // 5 % in amplitude is 0.25 % in power

  EXPECT_EQ(harmonicsLimit(30), 25);
  EXPECT_EQ(harmonicsLimit(1), 2);
  // A fundamental above a third of the span leaves two harmonics at most.
  EXPECT_EQ(computeThd(e.SpecAmp, e.SpecBins, 200, 1, 1e-6f, 10, false).harmonics, 2);
  EXPECT_FALSE(computeThd(e.SpecAmp, e.SpecBins, 0, 1, 1e-6f, 10, false).valid);
}

TEST(MainMeter, TheStrongestLineOfTheBand) {
  SpectrumEngine e = spectrumOf(32, {{3, 0.2}});
  // The whole spectrum: the fundamental at 32 x 500 kHz / 512 = 31.25 kHz.
  MainMeterReading all = readMainMeter(e.SpecAmp, e.SpecBins, e.MaxFreq, e.PeakBin, e.PeakAmp, "", "", false);
  EXPECT_TRUE(all.signal);
  EXPECT_NEAR(all.frequency, 31250, 1);
  // A band around the third harmonic (93.75 kHz), refined.
  MainMeterReading third =
      readMainMeter(e.SpecAmp, e.SpecBins, e.MaxFreq, e.PeakBin, e.PeakAmp, "80", "110", true);
  EXPECT_NEAR(third.frequency, 93750, 1000);
  EXPECT_NEAR(third.amplitude, 0.2, 0.02);
  // A negative top takes the bottom's text; a band with nothing in it has no signal.
  MainMeterReading none =
      readMainMeter(e.SpecAmp, e.SpecBins, e.MaxFreq, e.PeakBin, e.PeakAmp, "0", "-5", false);
  EXPECT_EQ(none.maxText, "0");
  EXPECT_FALSE(none.signal);  // bin 0 is left out of the spectrum
}
