#pragma once
#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zorvik {

// Columns of the widest screen and the values kept per column (Out and Y reach 3 x 480).
constexpr int kMaxColumns = 1441;

// One record resampled to the screen: which columns carry it, the 16-bit value and the row of each, and
// the rows of all samples of a column when the fan is kept.
struct TraceColumns {
  int xFirst = 0;
  int xLast = -1;
  int xStep = 1;
  float ratio = 1;    // pixels per sample
  int64_t start = 0;  // sample at the left edge
  std::string_view label;
  std::array<int32_t, kMaxColumns> Out{};
  std::array<uint8_t, kMaxColumns> Y{};
  std::array<int64_t, kMaxColumns> fanStart{};  // first sample of each column (oversampling)
  int fanCount = 0;                             // samples a column in the fan; 0 without a fan
  std::vector<uint8_t> fan;                     // rows, fanCount per column, column x at x * fanCount

  bool empty() const { return xLast < xFirst; }
  const uint8_t* fanRows(int x) const {
    return fan.data() + static_cast<size_t>(x) * static_cast<size_t>(fanCount);
  }
};

}  // namespace zorvik
