#include "spectrum/plot_columns.h"

#include <algorithm>
#include <cmath>

namespace zorvik {

namespace {
constexpr double kDbPerNeper = 8.68588924407959;  // 20 / ln 10
constexpr double kPi = 3.1415927410125732;        // the 32-bit float of pi

// The value between bins at the fractional bin b, from the neighbourhood first .. first + w - 1.
double interpolated(const std::vector<float>& values, int interpolation, double b, int first, int w) {
  double value = 0;
  for (int k = first; k < first + w; ++k) {
    double weight;
    if (interpolation == kLagrange) {
      weight = 1;
      for (int j = first; j < first + w; ++j)
        if (j != k) weight *= (b - j) / (k - j);
    } else {
      const double t = (b - k) * kPi;
      weight = std::sin(t) / t;
      if (interpolation == kLanczos) weight *= 1.3 * (std::sin(t / 1.3) / t);
    }
    value += values[static_cast<size_t>(k)] * weight;
  }
  return value;
}

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
  if (bins < 1 || width < 2 || !(range > 0) || !(axis.span > 0) || !(axis.binWidth > 0) ||
      !std::isfinite(axis.left))
    return rows;
  const double pxPerUnit = (width - 1) / axis.span;
  const double rowsPerValue = height / range;
  auto row = [&](double v) { return static_cast<float>((axis.top - v) * rowsPerValue); };

  if (interpolation <= kNoInterpolation || interpolation >= kColumnInterpolations) {
    // Only the bins in view: a zoomed plot of a long record does not walk the whole record.
    const int firstBin = std::max(0, static_cast<int>(std::floor(axis.left / axis.binWidth)) - 1);
    for (int i = firstBin; i < bins; ++i) {
      const double x = std::round((i * axis.binWidth - axis.left) * pxPerUnit);
      if (x >= width) break;
      if (x < 0) continue;
      rows[static_cast<size_t>(x)] = row(plotValue(values[static_cast<size_t>(i)], dB));
    }
    return rows;
  }
  const int w = std::min(1 << std::clamp(points, 1, 8), bins);
  for (int x = 0; x < width; ++x) {
    const double b = (x / pxPerUnit + axis.left) / axis.binWidth;
    if (b < 0) continue;
    if (b > bins - 1) break;
    const int k0 = static_cast<int>(std::floor(b));
    const double value =
        b == k0 ? values[static_cast<size_t>(k0)]
                : interpolated(values, interpolation, b, std::clamp(k0 + 1 - w / 2, 0, bins - w), w);
    rows[static_cast<size_t>(x)] = row(dB ? plotValue(static_cast<float>(value), true) : value);
  }
  return rows;
}

}  // namespace zorvik
