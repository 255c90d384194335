#include "display/display_canvas.h"

namespace zorvik {

namespace {

void fill(QImage& img, int x0, int y0, int x1, int y1, QRgb c) {
  if (x0 > x1) std::swap(x0, x1);
  if (y0 > y1) std::swap(y0, y1);
  for (int y = std::max(y0, 0); y <= std::min(y1, img.height() - 1); ++y) {
    auto* r = reinterpret_cast<QRgb*>(img.scanLine(y));
    for (int x = std::max(x0, 0); x <= std::min(x1, img.width() - 1); ++x) r[x] = c;
  }
}

}  // namespace

QImage makeGridPicture(const DisplayGeometry& g, QRgb background, bool gridVisible) {
  QImage img(g.pictureWidth(), g.pictureHeight(), QImage::Format_RGB32);
  img.fill(background | 0xFF000000);
  if (!gridVisible) return img;
  const int w = g.plotWidth();
  const int top = g.pixelY(kTraceRows), bottom = g.pixelY(0), left = g.pixelX(0), right = g.pixelX(w);
  for (int x = 0; x <= w; x += kDivisionUnits) fill(img, g.pixelX(x), top, g.pixelX(x), bottom, kGridOlive);
  for (int y = 0; y <= kTraceRows; y += kDivisionUnits)
    fill(img, left, g.pixelY(y), right, g.pixelY(y), kGridOlive);

  // Ticks every half division: across the vertical centre line (the thirds in wide) and across the
  // horizontal one; a little longer from zoom 2 on.
  const int t = g.zoomIndex >= 2 ? 3 : 2;
  const int half = kDivisionUnits / 2;
  const int columns[2] = {g.wide ? w / 3 : w / 2, g.wide ? 2 * w / 3 : -1};
  for (int c : columns) {
    if (c < 0) continue;
    const int px = g.pixelX(c);
    for (int y = 0; y <= kTraceRows; y += half)
      fill(img, px - t, g.pixelY(y), px + t, g.pixelY(y), kGridOlive);
  }
  const int py = g.pixelY(kTraceRows / 2);
  for (int x = 0; x <= w; x += half) fill(img, g.pixelX(x), py - t, g.pixelX(x), py + t, kGridOlive);
  return img;
}

}  // namespace zorvik
