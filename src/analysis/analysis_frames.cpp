#include "analysis/analysis_frames.h"

#include <cstdio>

#include "core/eng_text.h"
#include "spectrum/spectrum_engine.h"
#include "spectrum/spectrum_plot.h"
#include "stat/histogram.h"

namespace zorvik {

PlotFrame spectrumFrame(const SpectrumEngine& e, const SpectrumPlotSettings& s, bool haveData) {
  PlotFrame f;
  const SpectrumScale scale = SetVertScale(e, s);
  f.values = e.SpecAmp;
  f.bins = std::min(e.SpecBins, static_cast<int>(e.SpecAmp.size()));
  f.binWidth = e.SpecBins > 0 ? static_cast<double>(e.MaxFreq) / e.SpecBins : 0;
  f.full = {scale.FreqLeft, scale.FreqSpan, scale.TopAmp, scale.BottomAmp};
  f.dB = s.dB;
  f.valid = haveData && e.ScaleValid && f.bins > 0 && f.binWidth > 0 && scale.TopAmp > scale.BottomAmp;
  return f;
}

PlotTexts spectrumTexts(bool dB) {
  PlotTexts t;
  t.x = [](double hz) { return frequencyText(hz); };
  t.dx = t.x;
  if (dB) {
    t.y = [](double db) {
      char buf[32];
      std::snprintf(buf, sizeof buf, "%.1fdB", db);
      return std::string(buf);
    };
  } else {
    t.y = [](double v) { return amplitudeText(v, false); };
  }
  t.dy = [dB](double d) { return amplitudeText(d, dB); };
  return t;
}

PlotFrame histogramFrame(const HistogramEngine& h, bool normalize, bool memo, bool haveData) {
  PlotFrame f;
  f.values.assign(h.HistCount.begin(), h.HistCount.end());
  f.bins = HistogramEngine::HistBins;
  const double span = static_cast<double>(h.LevelHigh) - h.LevelLow;
  f.binWidth = span / HistogramEngine::HistBins;
  f.origin = h.LevelLow;
  const double top = histogramTop(h, normalize, memo);
  f.full = {0, span, top, 0};
  f.bars = true;
  f.valid = haveData && h.ScaleValid && top > 0 && span > 0;
  return f;
}

PlotTexts histogramTexts(const HistogramEngine& h, bool percent) {
  PlotTexts t;
  t.x = [](double v) { return engineeringText(v, "V"); };
  t.dx = t.x;
  const int32_t samples = h.HistSamples;
  t.y = [samples, percent](double c) { return histogramQuantity(c, samples, percent); };
  t.dy = t.y;
  t.yLabelScale = percent && samples > 0 ? 100.0 / samples : 1;
  return t;
}

}  // namespace zorvik
