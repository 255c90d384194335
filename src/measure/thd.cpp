#include "measure/thd.h"

#include <algorithm>
#include <cmath>

#include "spectrum/sinxx.h"
#include "spectrum/spectrum_engine.h"

namespace zorvik {

int harmonicsLimit(int typed) {
  return std::clamp(typed, 2, 25);
}

ThdResult computeThd(const std::vector<float>& spectrum, int bins, float peakBin, float peakAmp,
                     float samplePeriod, int maxHarm, bool powerMode) {
  ThdResult r;
  if (peakBin == 0 || peakAmp == 0 || bins < 1 || !(samplePeriod > 0)) return r;
  const double binHz = 0.5 / samplePeriod / bins;
  int h = harmonicsLimit(maxHarm);
  // Harmonics past the end of the spectrum are not searched.
  h = std::min(h, static_cast<int>(bins / peakBin));
  r.harmonics = h;
  r.lines.push_back({1, peakBin * binHz, peakAmp});
  double sum = 0;
  for (int k = 2; k <= h; ++k) {
    const InterpolatedPeak p =
        InterpolationMaxFind(spectrum, bins, (k - 0.05f) * peakBin, (k + 0.05f) * peakBin);
    sum += static_cast<double>(p.amplitude) * p.amplitude;
    r.lines.push_back({k, p.bin * binHz, p.amplitude});
  }
  r.value = static_cast<float>(powerMode ? sum * 100 / (static_cast<double>(peakAmp) * peakAmp)
                                         : std::sqrt(sum) * 100 / peakAmp);
  r.valid = true;
  return r;
}

ThdResult computeThd(const SpectrumEngine& e, float samplePeriod, int maxHarm, bool powerMode) {
  return computeThd(e.BinAmp, e.SpecBins, e.PeakBin, e.PeakAmp, samplePeriod, maxHarm, powerMode);
}

}  // namespace zorvik
