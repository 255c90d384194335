#include "measure/main_meter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "config/text_number.h"
#include "spectrum/sinxx.h"
#include "spectrum/spectrum_engine.h"

namespace zorvik {

namespace {
std::string numberText(double v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.7G", v);
  return buf;
}

// `lines` is what the band is searched in, `computed` what sin(x)/x rebuilds from; no position below
// `firstBin` is read.
MainMeterReading readBand(const std::vector<float>& lines, const std::vector<float>& computed, int firstBin,
                          int bins, float maxFrequency, float peakBin, float peakAmp,
                          const std::string& minText, const std::string& maxText, bool sinxx) {
  MainMeterReading r;
  r.minText = minText;
  r.maxText = maxText;
  bins = std::min({bins, static_cast<int>(lines.size()), static_cast<int>(computed.size())});
  if (bins < 1 || !(maxFrequency > 0)) return r;
  float from = 0, to = static_cast<float>(bins - 1);
  float amp = peakAmp, bin = peakBin;
  if (!minText.empty() || !maxText.empty()) {
    if (textToNumber(r.maxText, 0) < 0) r.maxText = r.minText;
    // Compared as the numbers stand, kHz against Hz, as the meter always has.
    if (textToNumber(r.maxText, 0) > maxFrequency) r.maxText = numberText(maxFrequency);
    if (textToNumber(r.minText, 0) < 0) r.minText = "0";
    to = static_cast<float>(textToNumber(r.maxText, 0) * 1000 * bins / maxFrequency);
    from = static_cast<float>(textToNumber(r.minText, 0) * 1000 * bins / maxFrequency);
    amp = 0;
    bin = 0;
    const int last = std::min(static_cast<int>(std::lround(to)), bins - 1);
    // A bottom typed past the spectrum finds nothing (and is no integer out of range).
    const int first = static_cast<int>(std::clamp(from, 0.0f, static_cast<float>(bins)));
    for (int i = first; i <= last; ++i) {
      if (lines[static_cast<size_t>(i)] > amp) {
        amp = lines[static_cast<size_t>(i)];
        bin = static_cast<float>(i);
      }
    }
  }
  if (sinxx) {
    const InterpolatedPeak p =
        InterpolationMaxFind(computed, bins, std::max(from, static_cast<float>(firstBin)), to);
    amp = p.amplitude;
    bin = p.bin;
  }
  r.amplitude = amp;
  r.bin = bin;
  r.frequency = static_cast<double>(maxFrequency) * bin / bins;
  r.signal = amp != 0;
  return r;
}

}  // namespace

MainMeterReading readMainMeter(const std::vector<float>& spectrum, int bins, float maxFrequency,
                               float peakBin, float peakAmp, const std::string& minText,
                               const std::string& maxText, bool sinxx) {
  return readBand(spectrum, spectrum, 0, bins, maxFrequency, peakBin, peakAmp, minText, maxText, sinxx);
}

MainMeterReading readMainMeter(const SpectrumEngine& e, const std::string& minText,
                               const std::string& maxText, bool sinxx) {
  return readBand(e.SpecAmp, e.BinAmp, e.FirstBin, e.SpecBins, e.MaxFreq, e.PeakBin, e.PeakAmp, minText,
                  maxText, sinxx);
}

}  // namespace zorvik
