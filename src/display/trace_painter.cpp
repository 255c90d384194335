#include "display/trace_painter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "core/whole_numbers.h"
#include "display/display_canvas.h"

namespace zorvik {

const uint32_t kRainbowColors[8] = {0xFF0000, 0x00FF00, 0x0000FF, 0xFFFF00,
                                    0xFF00FF, 0x00FFFF, 0x808080, 0xFFFFFF};

namespace {

// The brightness of every step of 0 to 255 rows, worked out once.
const std::array<uint8_t, 256>& vectorBrightnessTable() {
  static const std::array<uint8_t, 256> table = [] {
    std::array<uint8_t, 256> t{};
    for (int d = 0; d < 256; ++d)
      t[static_cast<size_t>(d)] = static_cast<uint8_t>(std::floor(255 - 30 * std::log(d + 1.0)));
    return t;
  }();
  return table;
}

bool bothOnOneEdge(int y, int prev) {
  return (y + prev) % 510 == 0;
}

// One step of a polyline: both ends on one edge only move the pen. A step of no length is a point, and
// no point is drawn on an edge row; this covers the first column, whose Prev of 0 can't see the top edge.
void polylineStep(DisplayCanvas& canvas, int x, int y, int prev, uint32_t colour) {
  if (bothOnOneEdge(y, prev))
    canvas.setCurrentX(x);
  else if (x == canvas.currentX() && y == canvas.currentY() && y % 255 == 0)
    canvas.moveTo(x, y);
  else
    canvas.lineTo(x, y, colour);
}

}  // namespace

int vectorBrightness(int d) {
  return vectorBrightnessTable()[static_cast<size_t>(std::clamp(d, 0, 255))];
}

int peakBrightness(int d) {
  return static_cast<int>(std::floor(256 - 0.7 * d));
}

bool TracePainter::onSampleGrid(Interpolation interp) {
  return interp == Interpolation::None || interp == Interpolation::Line;
}

int TracePainter::gridStep(const TraceColumns& c) {
  const int64_t step = roundToInt64Saturating(std::max<double>(c.ratio, c.xStep));
  return static_cast<int>(std::clamp<int64_t>(step, 1, kMaxColumns));
}

void TracePainter::vectorPass(const TraceColumns& c) {
  if (c.empty()) return;
  const int item = s_.lineColor;
  canvas_.moveTo(c.xFirst, c.Y[static_cast<size_t>(c.xFirst)]);
  int prev = 0;
  auto visit = [&](int x) {
    const int y = c.Y[static_cast<size_t>(x)];
    polylineStep(canvas_, x, y, prev,
                 itemColor(item, s_.varBright ? vectorBrightness(std::abs(y - prev)) : 255));
    prev = y;
  };
  if (onSampleGrid(s_.interp())) {
    // Every column whose number is a multiple of the grid step, also for a centred short record whose
    // first column is not one.
    const int m = gridStep(c);
    for (int x = (c.xFirst + m - 1) / m * m; x <= c.xLast; x += m) visit(x);
  } else {
    for (int x = c.xFirst; x <= c.xLast; x += c.xStep) visit(x);
  }
}

void TracePainter::pointPass(const TraceColumns& c) {
  if (c.empty()) return;
  const int item = s_.pixelColor;
  const uint32_t full = itemColor(item, 255), dim = itemColor(item, 150);
  auto dot = [&](int x, int y, uint32_t colour) {
    if (y % 255 > 0) canvas_.point(x, y, colour);
  };
  if (c.fanCount > 0) {
    for (int x = c.xFirst; x <= c.xLast; x += c.xStep) {
      const uint8_t* rows = c.fanRows(x);
      for (int j = 0; j < c.fanCount; ++j) dot(x, rows[j], full);
    }
  } else if (c.ratio > 1 && s_.interp() == Interpolation::None) {
    const int m = gridStep(c);
    for (int x = (c.xFirst + m - 1) / m * m; x <= c.xLast; x += m) dot(x, c.Y[static_cast<size_t>(x)], full);
  } else if (c.ratio > 1) {
    const int m = gridStep(c);
    for (int x = c.xFirst; x <= c.xLast; x += c.xStep)
      dot(x, c.Y[static_cast<size_t>(x)], x % m == 0 ? full : dim);
  } else {
    for (int x = c.xFirst; x <= c.xLast; x += c.xStep) dot(x, c.Y[static_cast<size_t>(x)], full);
  }
}

void TracePainter::rainbowPass(const TraceColumns& c, int32_t ts) {
  if (c.empty() || ts <= 0 || ts >= 512) return;
  const int k = 512 / ts;
  int prev = 0;
  for (int i = 0; i < k; ++i) {
    const uint32_t colour = 0xFF000000 | kRainbowColors[i % 8];
    const int from = c.xFirst + c.xStep * i;
    if (from > c.xLast) break;
    canvas_.moveTo(from, c.Y[static_cast<size_t>(from)]);
    for (int x = from; x <= c.xLast; x += c.xStep * k) {
      const int y = c.Y[static_cast<size_t>(x)];
      polylineStep(canvas_, x, y, prev, colour);
      prev = y;
    }
  }
}

void TracePainter::peakPass(const PeakColumns& c) {
  if (c.empty()) return;
  const int item = s_.peakColor;
  bool havePrev = false;
  int prevLo = 0, prevHi = 0;
  for (int x = c.xFirst; x <= c.xLast; x += c.xStep) {
    const int lo = c.lo[static_cast<size_t>(x)], hi = c.hi[static_cast<size_t>(x)];
    if (lo == hi) {
      if (lo % 255 > 0) canvas_.point(x, lo, itemColor(item, 255));
    } else {
      canvas_.line(x, lo, x, hi, itemColor(item, peakBrightness(std::abs(lo - hi))));
    }
    // The joint to the column before, where the two spans leave a gap.
    if (havePrev) {
      if (lo > prevHi)
        canvas_.line(x - c.xStep, prevHi, x, hi, itemColor(item, peakBrightness(std::abs(prevHi - hi))));
      else if (hi < prevLo)
        canvas_.line(x - c.xStep, prevLo, x, lo, itemColor(item, peakBrightness(std::abs(lo - prevLo))));
    }
    havePrev = true;
    prevLo = lo;
    prevHi = hi;
  }
}

}  // namespace zorvik
