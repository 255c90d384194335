#include "analysis/plot_axes.h"

#include <algorithm>
#include <cmath>

namespace zorvik {

namespace {
double unit(double p) {
  return std::isfinite(p) ? std::clamp(p, 0.0, 1.0) : 0.5;
}
}  // namespace

PlotRange zoomedRange(const PlotRange& full, int hz, double hp, int vz, double vp) {
  PlotRange r = full;
  if (hz > 1 && full.span > 0) {
    const double z = hz;
    r.span = full.span / z;
    r.left = full.left + (z - 1) / z * unit(hp) * full.span;
  }
  const double d = full.top - full.bottom;
  if (vz > 1 && d != 0) {
    const double z = vz, p = unit(vp);
    r.top = ((z - 1) / z * p + 1 / z) * d + full.bottom;
    r.bottom = (z - 1) * d / z * p + full.bottom;
  }
  return r;
}

double tidyStep(double span, int parts) {
  if (!(span > 0) || !std::isfinite(span) || parts < 1) return 0;
  const double raw = span / parts;
  const double decade = std::pow(10.0, std::floor(std::log10(raw)));
  for (double m : {1.0, 2.0, 5.0, 10.0})
    if (m * decade >= raw * (1 - 1e-9)) return m * decade;
  return 10 * decade;
}

std::vector<double> tidyTicks(double low, double high, double step) {
  std::vector<double> ticks;
  if (!(step > 0) || !std::isfinite(low) || !std::isfinite(high) || high < low) return ticks;
  const double first = std::ceil(low / step - 1e-9);
  // A tick count is bounded whatever the numbers: a step far below the span gives no ticks at all.
  if ((high - low) / step > 1000) return ticks;
  for (double k = first; k * step <= high + step * 1e-9; ++k)
    ticks.push_back(std::abs(k) < 1e-12 ? 0 : k * step);
  return ticks;
}

int gridRows(int height, int unit) {
  return unit > 0 ? std::max(2, height / unit + 1) : 2;
}

}  // namespace zorvik
