#include "stat/histogram.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace zorvik {

void HistogramEngine::BuildHistogram(const HistogramInput& in) {
  LevelLow = in.ZeroVolts - in.FullScaleVolts / 2;
  LevelHigh = in.ZeroVolts + in.FullScaleVolts / 2;
  const size_t length = in.samples.size();
  HistSamples = static_cast<int32_t>(in.IsHiRes || in.IsPeak ? length / 2 : length);
  const uint8_t* p = reinterpret_cast<const uint8_t*>(in.samples.data());
  const size_t last = static_cast<size_t>(HistSamples);  // the walk ends at character HistSamples
  // Counted in four interleaved sets (a run of equal codes does not wait on its own last count), or for
  // peak pairs as the steps of a running sum (a band costs two entries, not one a code); the counts come
  // out the same, and the highest count is the highest of the final counts.
  std::array<std::array<int32_t, HistBins + 1>, 4> part{};
  if (in.IsPeak) {
    // A pair paints the whole band the signal swept.
    std::array<int32_t, HistBins + 1>& steps = part[0];
    for (size_t k = 0; k < last && k + 1 < length; k += 2) {
      const int a = p[k], b = p[k + 1];
      ++steps[static_cast<size_t>(std::min(a, b))];
      --steps[static_cast<size_t>(std::max(a, b) + 1)];
    }
    int32_t running = 0;
    for (size_t bin = 0; bin < HistBins; ++bin) HistCount[bin] = running += steps[bin];
  } else {
    // Only the high bytes of the first half of a 16-bit record: its bins add up to half its samples.
    const size_t stride = in.IsHiRes ? 2 : 1;
    const size_t values = in.IsHiRes ? (last + 1) / 2 : last;
    size_t v = 0;
    for (; v + 4 <= values; v += 4)
      for (size_t k = 0; k < 4; ++k) ++part[k][p[(v + k) * stride]];
    for (; v < values; ++v) ++part[0][p[v * stride]];
    for (size_t bin = 0; bin < HistBins; ++bin)
      HistCount[bin] = part[0][bin] + part[1][bin] + part[2][bin] + part[3][bin];
  }
  int32_t highest = 0;
  for (int32_t c : HistCount) highest = std::max(highest, c);
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
