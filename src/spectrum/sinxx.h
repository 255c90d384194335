#pragma once
#include <array>
#include <cstdint>
#include <vector>

namespace zorvik {

// The strongest point of a spectrum between two fractional bins, rebuilt between the bins by sin(x)/x
// over eight neighbours at twenty positions a bin. Of equal values the first wins.
struct InterpolatedPeak {
  float bin = 0;        // fractional
  float amplitude = 0;  // 0 when the band holds nothing
};
InterpolatedPeak InterpolationMaxFind(const std::vector<float>& spectrum, int bins, float from, float to);

// The sin(x)/x factors of the positions a refinement met, by position and window: the strongest line of a
// steady signal sits on the same bin packet after packet, and its positions' factors are the same numbers.
class SinxxFactors {
 public:
  struct Entry {
    uint32_t position = 0;  // the float's bits
    int low = -1, high = -1;
    std::array<double, 8> factor{};
  };
  // The factors of bins low to high at position p, made when not kept.
  const Entry& at(float p, int low, int high);

 private:
  std::array<Entry, 256> entries_{};
};

// The same, with the factors taken from `factors` where it holds them.
InterpolatedPeak InterpolationMaxFind(const std::vector<float>& spectrum, int bins, float from, float to,
                                      SinxxFactors& factors);

}  // namespace zorvik
