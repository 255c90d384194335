#include "stat/histogram.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace zorvik {

void HistogramEngine::BuildHistogram(const HistogramInput& in) {
  LevelLow = in.ZeroVolts - in.FullScaleVolts / 2;
  LevelHigh = in.ZeroVolts + in.FullScaleVolts / 2;
  HistCount.fill(0);
  const size_t length = in.samples.size();
  HistSamples = static_cast<int32_t>(in.IsHiRes || in.IsPeak ? length / 2 : length);
  auto code = [&](size_t k) { return static_cast<int>(static_cast<uint8_t>(in.samples[k])); };
  int32_t highest = 0;
  auto count = [&](int bin) {
    const int32_t c = ++HistCount[static_cast<size_t>(bin)];
    if (c > highest) highest = c;
  };
  const size_t last = static_cast<size_t>(HistSamples);  // the walk ends at character HistSamples
  if (in.IsPeak) {
    // A pair paints the whole band the signal swept.
    for (size_t k = 0; k < last && k + 1 < length; k += 2) {
      const int a = code(k), b = code(k + 1), step = a <= b ? 1 : -1;
      for (int v = a;; v += step) {
        count(v);
        if (v == b) break;
      }
    }
  } else if (in.IsHiRes) {
    // Only the high bytes of the first half: the bins of a 16-bit record add up to half its samples.
    for (size_t k = 0; k < last; k += 2) count(code(k));
  } else {
    for (size_t k = 0; k < last; ++k) count(code(k));
  }
  if (heldMaxReset_) {
    HeldMaxCount = 0;
    heldMaxReset_ = false;
  }
  if (highest > 0) {
    if (std::abs(ShownMaxCount - highest) / static_cast<double>(highest) > 0.05) ShownMaxCount = highest;
  } else {
    ShownMaxCount = 0;
  }
  if (HeldMaxCount < ShownMaxCount) HeldMaxCount = static_cast<int32_t>(std::lround(ShownMaxCount * 1.05));
  ScaleValid = ShownMaxCount >= 1;
}

double histogramTop(const HistogramEngine& h, bool normalize, bool memo) {
  const double r = normalize ? (memo ? h.HeldMaxCount : h.ShownMaxCount) : h.HistSamples;
  return r * 1.05;
}

int histogramModeBin(const HistogramEngine& h) {
  int mode = 0;
  for (int b = 1; b < HistogramEngine::HistBins; ++b)
    if (h.HistCount[static_cast<size_t>(b)] > h.HistCount[static_cast<size_t>(mode)]) mode = b;
  return mode;
}

double histogramLevel(const HistogramEngine& h, int bin) {
  return h.LevelLow + static_cast<float>(bin) * (h.LevelHigh - h.LevelLow) / HistogramEngine::HistBins;
}

std::string histogramQuantity(double count, int32_t samples, bool percent) {
  if (!percent) return std::to_string(std::lround(count)) + " smp";
  char buf[32];
  std::snprintf(buf, sizeof buf, "%04.1f%%", samples > 0 ? count / samples * 100 : 0.0);
  return buf;
}

std::string histogramCsvText(const HistogramEngine& h) {
  std::string out;
  for (int32_t c : h.HistCount) {
    if (c >= 0) out += ' ';
    out += std::to_string(c);
    out += '\r';
  }
  return out;
}

}  // namespace zorvik
