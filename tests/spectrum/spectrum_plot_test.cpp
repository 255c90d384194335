#include "spectrum/spectrum_plot.h"

#include <gtest/gtest.h>

#include <cmath>

#include "export/csv_text.h"
#include "spectrum/spectrum_engine.h"

using namespace zorvik;

namespace {
SpectrumEngine engineWith(std::vector<float> amps, float maxFreq = 1000) {
  SpectrumEngine e;
  e.SpecAmp = std::move(amps);
  e.SpecBins = static_cast<int>(e.SpecAmp.size());
  e.MaxFreq = maxFreq;
  e.FullAmp = 2;
  e.ShownMax = 0.5f;
  e.HeldMax = 0.6f;
  return e;
}
}  // namespace

TEST(SpectrumPlot, VerticalScaleInVoltsAndDb) {
  SpectrumEngine e = engineWith({0, 1});
  SpectrumPlotSettings s;
  EXPECT_FLOAT_EQ(SetVertScale(e, s).TopAmp, 2.1f);  // the full-screen signal and 5 % above
  s.normalize = true;
  EXPECT_FLOAT_EQ(SetVertScale(e, s).TopAmp, 0.525f);
  s.memo = true;
  EXPECT_FLOAT_EQ(SetVertScale(e, s).TopAmp, 0.63f);
  s = {};
  s.dB = true;
  s.dBRange = 70;
  e.FullAmp = 1;  // 0 dBV: the top is +3 dB, the bottom 70 below it
  const SpectrumScale db = SetVertScale(e, s);
  EXPECT_FLOAT_EQ(db.TopAmp, 3);
  EXPECT_FLOAT_EQ(db.BottomAmp, -67);
  EXPECT_EQ(plotValue(0, true), -100);  // no logarithm of 0
  EXPECT_NEAR(plotValue(0.1f, true), -20, 1e-4);
}

TEST(SpectrumPlot, ColumnsTakeTheLastBinOrInterpolate) {
  // Five bins of 1 Hz on five columns across 5 Hz: bins 2 and 3 land on column 2, none on column 4.
  SpectrumEngine e = engineWith({0.0f, 1.0f, 2.0f, 0.5f, 1.5f}, 5);
  SpectrumScale scale;
  scale.TopAmp = 2;
  scale.BottomAmp = 0;
  scale.FreqSpan = 5;
  SpectrumPlotSettings s;
  const std::vector<float> rows = spectrumColumns(e, scale, s, 5, 200);
  ASSERT_EQ(rows.size(), 5u);
  EXPECT_FLOAT_EQ(rows[0], 200);  // bin 0: 0 V at the bottom
  EXPECT_FLOAT_EQ(rows[1], 100);
  EXPECT_FLOAT_EQ(rows[2], 150);  // the later bin 3 (0.5 V) over bin 2 (2 V)
  EXPECT_EQ(rows[4], kEmptyColumn);

  // Sin(x)/x passes through the bins and between them rises towards a neighbouring line.
  SpectrumEngine line = engineWith(std::vector<float>(64, 0.0f), 64);
  line.SpecAmp[32] = 1;
  scale.TopAmp = 1;
  scale.FreqSpan = 64;
  s.interpolation = 1;
  const std::vector<float> fine = spectrumColumns(line, scale, s, 129, 100);  // two columns a bin
  EXPECT_NEAR(fine[64], 0, 1e-4);                                             // on bin 32
  EXPECT_NEAR(fine[62], 100, 1e-3);  // on bin 31: a zero of the kernel
  EXPECT_GT(100 - fine[65], 50);     // half a bin off: 2 / pi of the line
}

TEST(SpectrumCsv, FloatsInTheirDefaultTextForm) {
  EXPECT_EQ(floatText(0.5f), "0.5");
  EXPECT_EQ(floatText(0), "0");
  EXPECT_EQ(floatText(1.2345678e-5f), "1.234568E-05");
  EXPECT_EQ(floatText(0.0001f), "0.0001");
  EXPECT_EQ(floatText(12345678.0f), "1.234568E+07");
  EXPECT_EQ(spectrumCsvText({0.25f, 1, 3}, 2), "0.25\r1\r");
}
