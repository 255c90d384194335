#include "spectrum/plot_columns.h"

#include <algorithm>
#include <cmath>

namespace zorvik {

namespace {
constexpr double kDbPerNeper = 8.68588924407959;  // 20 / ln 10
constexpr double kPi = 3.1415927410125732;        // the 32-bit float of pi
}  // namespace

float plotValue(float amplitude, bool dB) {
  if (!dB) return amplitude;
  if (amplitude <= 0) return -100;
  return static_cast<float>(std::log(amplitude) * kDbPerNeper);
}

std::vector<float> plotColumns(const std::vector<float>& values, int bins, const ColumnAxis& axis, bool dB,
                               int interpolation, int points, int width, int height) {
  std::vector<float> rows(static_cast<size_t>(std::max(width, 0)), kEmptyColumn);
  bins = std::min(bins, static_cast<int>(values.size()));
  const double range = axis.top - axis.bottom;
  if (bins < 1 || width < 2 || !(range > 0) || !(axis.span > 0) || !(axis.binWidth > 0)) return rows;
  const double pxPerUnit = (width - 1) / axis.span;
  const double rowsPerValue = height / range;
  auto row = [&](double v) { return static_cast<float>((axis.top - v) * rowsPerValue); };

  if (interpolation < 1 || interpolation > 2) {
    for (int i = 0; i < bins; ++i) {
      const long x = std::lround(i * axis.binWidth * pxPerUnit);
      if (x < 0 || x >= width) continue;
      rows[static_cast<size_t>(x)] = row(plotValue(values[static_cast<size_t>(i)], dB));
    }
    return rows;
  }
  const int w = std::min(1 << std::clamp(points, 1, 8), bins);
  for (int x = 0; x < width; ++x) {
    const double b = x / pxPerUnit / axis.binWidth;
    if (b > bins - 1) break;
    const int k0 = static_cast<int>(std::floor(b));
    double value;
    if (b == k0) {
      value = values[static_cast<size_t>(k0)];
    } else {
      const int first = std::clamp(k0 + 1 - w / 2, 0, bins - w);
      value = 0;
      for (int k = first; k < first + w; ++k) {
        const double t = (b - k) * kPi;
        double term = std::sin(t) / t;
        if (interpolation == 2) term *= 1.3 * (std::sin(t / 1.3) / t);
        value += values[static_cast<size_t>(k)] * term;
      }
    }
    rows[static_cast<size_t>(x)] = row(dB ? plotValue(static_cast<float>(value), true) : value);
  }
  return rows;
}

}  // namespace zorvik
