#pragma once
#include <array>
#include <cstdint>
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

}  // namespace zorvik
