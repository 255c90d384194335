#include "spectrum/spectrum_plot.h"

#include <cmath>
#include <cstdio>

#include "core/eng_text.h"
#include "spectrum/spectrum_engine.h"

namespace zorvik {

namespace {
constexpr double kDbPerNeper = 8.68588924407959;  // 20 / ln 10
}  // namespace

SpectrumScale SetVertScale(const SpectrumEngine& e, const SpectrumPlotSettings& s) {
  SpectrumScale scale;
  const float r = s.normalize ? (s.memo ? e.HeldMax : e.ShownMax) : e.FullAmp;
  if (!s.dB) {
    scale.TopAmp = r * 1.05f;
    scale.BottomAmp = 0;
  } else {
    scale.TopAmp = r > 0 ? static_cast<float>(std::log(r) * kDbPerNeper + 3) : 0;
    scale.BottomAmp = scale.TopAmp - static_cast<float>(s.dBRange > 0 ? s.dBRange : 10);
  }
  scale.FreqLeft = 0;
  scale.FreqSpan = e.MaxFreq;
  return scale;
}

std::vector<float> spectrumColumns(const SpectrumEngine& e, const SpectrumScale& scale,
                                   const SpectrumPlotSettings& s, int width, int height) {
  const double binHz = e.SpecBins > 0 ? static_cast<double>(e.MaxFreq) / e.SpecBins : 0;
  return plotColumns(e.SpecAmp, e.SpecBins, {binHz, scale.FreqSpan, scale.TopAmp, scale.BottomAmp}, s.dB,
                     s.interpolation, s.interpolationPoints, width, height);
}

std::string frequencyText(double hz) {
  return engineeringText(hz, "Hz");
}

std::string amplitudeText(double value, bool dB) {
  if (!dB) return value == 0 ? " 0V" : engineeringText(value, "V");
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.1fdB", value);
  return std::string(buf) + " / " + engineeringText(std::exp(value / 8.685889), "V");
}

}  // namespace zorvik
