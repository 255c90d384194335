#include <gtest/gtest.h>

#include <string>

#include "measure/main_meter.h"
#include "measure/thd.h"
#include "spectrum/spectrum_engine.h"

using namespace zorvik;

namespace {

// A 5 kHz square of 1 V peak to peak (its fundamental 450 mV RMS) at 50 us a division: 32 samples of
// 1.5625 us a division, 320 in the record. The frame of 256 spans 400 us, so the fundamental stands
// exactly in bin 2, beside the DC bins that are left out, and each odd harmonic in an even bin above.
struct LowLine : ::testing::Test {
  static constexpr float kSamplePeriod = 1.5625e-6f;
  std::string samples;
  SpectrumEngine e;

  void SetUp() override {
    for (int k = 0; k < 320; ++k) samples += static_cast<char>((k + 10) % 128 < 64 ? 128 + 80 : 128 - 80);
    compute(false);
  }
  void compute(bool dc) {
    SpectrumInput in;
    in.samples = samples;
    in.SamplePeriod = kSamplePeriod;
    in.FullScaleVolts = 1.6f;  // 80 codes are 0.5 V
    SpectrumSettings s;
    s.DCfreq = dc;
    s.WindowFunction = 1;  // Hamming, as the THD meter and Sin(x)/x want
    s.refinePeak = true;   // the THD meter is open
    e.ComputeSpectrum(in, s);
  }
  double hz(float bin) const { return static_cast<double>(bin) * e.MaxFreq / e.SpecBins; }
};

TEST_F(LowLine, IsRefinedFromTheBinsAsComputedWhileThePlotLeavesTheDcBinsOut) {
  ASSERT_EQ(e.SpecBins, 128);
  EXPECT_EQ(e.SpecAmp[0], 0);
  EXPECT_EQ(e.SpecAmp[1], 0);
  EXPECT_GT(e.BinAmp[1], 0.1);  // the fundamental's skirt
  EXPECT_TRUE(e.Refined);
  EXPECT_NEAR(hz(e.PeakBin), 5000, 1);
  EXPECT_NEAR(e.PeakAmp, 0.450, 0.005);

  const MainMeterReading m = readMainMeter(e, "", "", true);
  EXPECT_NEAR(m.frequency, 5000, 1);
  EXPECT_NEAR(m.amplitude, 0.450, 0.005);
  // A band typed from 0 kHz finds the same line, not the DC bins.
  const MainMeterReading band = readMainMeter(e, "0", "12", true);
  EXPECT_NEAR(band.frequency, 5000, 1);

  // The DC bins shown: the same reading.
  const float peakBin = e.PeakBin, peakAmp = e.PeakAmp;
  compute(true);
  EXPECT_EQ(e.PeakBin, peakBin);
  EXPECT_EQ(e.PeakAmp, peakAmp);
}

TEST_F(LowLine, ThdSearchesAtMultiplesOfTheFundamental) {
  const ThdResult r = computeThd(e, kSamplePeriod, 10, false);
  ASSERT_TRUE(r.valid);
  ASSERT_EQ(r.lines.size(), 10u);
  EXPECT_NEAR(r.lines[0].freq, 5000, 1);
  // The square's odd lines at 1/n of the fundamental. (Each even search also reads the skirt of the odd
  // line beside it.)
  for (const Harmonic& h : r.lines) {
    if (h.number % 2 == 0) continue;
    SCOPED_TRACE(h.number);
    EXPECT_NEAR(h.amplitude, 0.450 / h.number, 0.045 / h.number);
  }
}

// With an offset the DC line's skirt in bin 1 is stronger than the line in bin 2: it is read as the
// line's neighbour, but the line is not moved into the bins left out.
TEST_F(LowLine, StaysOutOfTheDcBinsBesideAnOffset) {
  for (char& c : samples) c = static_cast<char>((static_cast<unsigned char>(c) - 128) / 8 + 128 + 100);
  compute(false);
  EXPECT_GT(e.BinAmp[1], 2 * e.BinAmp[2]);
  EXPECT_GE(e.PeakBin, 2);
  EXPECT_LT(e.PeakBin, 3);
  const MainMeterReading m = readMainMeter(e, "", "", true);
  EXPECT_GE(m.frequency, 5000);
  EXPECT_LT(m.frequency, 7500);
}

}  // namespace
