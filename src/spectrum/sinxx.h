#pragma once
#include <vector>

namespace zorvik {

// The strongest point of a spectrum between two fractional bins, rebuilt between the bins by sin(x)/x
// over eight neighbours at twenty positions a bin. Of equal values the first wins.
struct InterpolatedPeak {
  float bin = 0;        // fractional
  float amplitude = 0;  // 0 when the band holds nothing
};
InterpolatedPeak InterpolationMaxFind(const std::vector<float>& spectrum, int bins, float from, float to);

}  // namespace zorvik
