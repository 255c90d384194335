#pragma once
#include <vector>

namespace zorvik {

// The axes of a plot of bins: bin i at i × binWidth, `left` at the plot's left edge and `span` across
// it, `top` to `bottom` in the values' unit (dB when asked).
struct ColumnAxis {
  double binWidth = 0, span = 0;
  double top = 0, bottom = 0;
  double left = 0;
};

// The interpolations between bins, as the plot's menu lists them.
enum ColumnInterpolation { kNoInterpolation = 0, kSinxx = 1, kLanczos = 2, kLagrange = 3 };
constexpr int kColumnInterpolations = 4;

// The row (pixels from the top, 0 to height) of each pixel column of a plot `width` wide, or kEmptyColumn
// where no bin lands. Without interpolation the last bin of a column sets it; with Sin(x)/x, Lanczos or
// Lagrange a neighbourhood of 2^points bins gives each column its value, amplitudes first and dB after.
constexpr float kEmptyColumn = -32767;
std::vector<float> plotColumns(const std::vector<float>& values, int bins, const ColumnAxis& axis, bool dB,
                               int interpolation, int points, int width, int height);

// A value on the vertical axis: as it is, or in dB with 0 and below read as -100.
float plotValue(float amplitude, bool dB);

}  // namespace zorvik
