#include "spectrum/spectrum_plot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "measure/eng_text.h"
#include "spectrum/spectrum_engine.h"

namespace zorvik {

namespace {
constexpr double kDbPerNeper = 8.68588924407959;  // 20 / ln 10
constexpr double kPi = 3.1415927410125732;        // the 32-bit float of pi
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

float plotValue(float amplitude, bool dB) {
  if (!dB) return amplitude;
  if (amplitude <= 0) return -100;
  return static_cast<float>(std::log(amplitude) * kDbPerNeper);
}

std::vector<float> spectrumColumns(const SpectrumEngine& e, const SpectrumScale& scale, const SpectrumPlotSettings& s,
                                   int width, int height) {
  std::vector<float> rows(static_cast<size_t>(std::max(width, 0)), kEmptyColumn);
  const int bins = std::min(e.SpecBins, static_cast<int>(e.SpecAmp.size()));
  const double span = scale.TopAmp - scale.BottomAmp;
  if (bins < 1 || width < 2 || !(span > 0) || !(scale.FreqSpan > 0)) return rows;
  const double binHz = static_cast<double>(e.MaxFreq) / e.SpecBins;
  const double pxPerHz = (width - 1) / static_cast<double>(scale.FreqSpan);
  const double pxPerUnit = height / span;
  auto row = [&](double v) { return static_cast<float>((scale.TopAmp - v) * pxPerUnit); };

  if (s.interpolation < 1 || s.interpolation > 2) {
    for (int i = 0; i < bins; ++i) {
      const long x = std::lround((i * binHz - scale.FreqLeft) * pxPerHz);
      if (x < 0 || x >= width) continue;
      rows[static_cast<size_t>(x)] = row(plotValue(e.SpecAmp[static_cast<size_t>(i)], s.dB));
    }
    return rows;
  }
  // Between bins: a neighbourhood of W bins around each column's fractional bin, amplitudes first and dB after.
  const int w = std::min(1 << std::clamp(s.interpolationPoints, 1, 8), bins);
  for (int x = 0; x < width; ++x) {
    const double b = (scale.FreqLeft + x / pxPerHz) / binHz;
    if (b > bins - 1) break;
    const int k0 = static_cast<int>(std::floor(b));
    double value;
    if (b == k0) {
      value = e.SpecAmp[static_cast<size_t>(k0)];
    } else {
      const int first = std::clamp(k0 + 1 - w / 2, 0, bins - w);
      value = 0;
      for (int k = first; k < first + w; ++k) {
        const double t = (b - k) * kPi;
        double term = std::sin(t) / t;
        if (s.interpolation == 2) term *= 1.3 * (std::sin(t / 1.3) / t);
        value += e.SpecAmp[static_cast<size_t>(k)] * term;
      }
    }
    rows[static_cast<size_t>(x)] = row(s.dB ? plotValue(static_cast<float>(value), true) : value);
  }
  return rows;
}

std::string frequencyText(double hz) { return engineeringText(hz, "Hz"); }

std::string amplitudeText(double value, bool dB) {
  if (!dB) return value == 0 ? " 0V" : engineeringText(value, "V");
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.1fdB", value);
  return std::string(buf) + " / " + engineeringText(std::exp(value / 8.685889), "V");
}

}  // namespace zorvik
