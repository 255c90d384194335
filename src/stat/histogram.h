#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace zorvik {

// What the histogram reads of an acquisition.
struct HistogramInput {
  std::string_view samples;
  bool IsHiRes = false, IsPeak = false, OneCharSample = true;
  float FullScaleVolts = 1.6f, ZeroVolts = 0;
};

// How often each 8-bit level occurs in the record, with a highest count that does not breathe with
// noise and a running top for the memo mode.
class HistogramEngine {
 public:
  static constexpr int HistBins = 256;

  void BuildHistogram(const HistogramInput& in);
  void resetHeldMax() { heldMaxReset_ = true; }

  // Counters wider than the 16 bits of old: a long record in one level counts on.
  std::array<int32_t, HistBins> HistCount{};
  int32_t HistSamples = 0;
  int32_t ShownMaxCount = 0, HeldMaxCount = 0;
  bool ScaleValid = false;
  float LevelLow = 0, LevelHigh = 0;  // volts at the two ends of the axis

 private:
  bool heldMaxReset_ = false;
};

// The count at the top of the plot: 5 % above the held top (normalised, memo on), the shown top
// (normalised) or the record's samples.
double histogramTop(const HistogramEngine& h, bool normalize, bool memo);
// The most frequent level: its bin (the lowest of equal counts) and the volts at that bin.
int histogramModeBin(const HistogramEngine& h);
double histogramLevel(const HistogramEngine& h, int bin);
// A count as the axis and the markers show it: whole samples ("12 smp"), or percent of the record with
// the picture "00.0".
std::string histogramQuantity(double count, int32_t samples, bool percent);
// The CSV of the 256 counts, bins 0 to 255: each count with the blank of its sign place, then CR, as the
// packet CSV writes its values. The window's file and zorvik-cli histogram both write this text.
std::string histogramCsvText(const HistogramEngine& h);

}  // namespace zorvik
