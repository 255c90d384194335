#pragma once
#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "display/trace_columns.h"

namespace zorvik {

struct PeakRequest {
  int plotWidth = 320;
  int samplesPerDiv = 16;
  int hZoom = 1;
  bool halfRatePairs = false;  // each pair fills two sample positions
  double hViewFrac = 0;
  int xStep = 1;
  bool lineMax = false;  // Pinterpol1 "LineMax", else "CopyMin"
  float vZoom = 1;
  double vViewFrac = 0;
};

// The (minimum, maximum) pairs of a peak record on the screen's columns (PlotPeaks steps 1 to 7).
struct PeakColumns {
  int xFirst = 0;
  int xLast = -1;
  int xStep = 1;
  double ratio = 1;
  int64_t start = 0;
  std::array<uint8_t, kMaxColumns> lo{};
  std::array<uint8_t, kMaxColumns> hi{};
  bool empty() const { return xLast < xFirst; }
};

// PeakBuf: the pairs as bytes, pair j at 2j; it grows with the record and reads 0 outside it.
class PeakResampler {
 public:
  // False when the segment is too short to plot or the scale makes no number.
  bool run(std::string_view segment, const PeakRequest& request, PeakColumns& out);

 private:
  uint8_t at(int64_t i) const {
    return i >= 0 && i < static_cast<int64_t>(buf_.size()) ? buf_[static_cast<size_t>(i)] : 0;
  }
  std::vector<uint8_t> buf_;
  int64_t dirty_ = 0;
};

}  // namespace zorvik
