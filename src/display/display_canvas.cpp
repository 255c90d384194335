#include "display/display_canvas.h"

#include <cstdlib>
#include <cstring>

namespace zorvik {

DisplayCanvas::DisplayCanvas() {
  setup(DisplayGeometry{}, 0xFF000000, true);
}

void DisplayCanvas::setup(const DisplayGeometry& geometry, QRgb background, bool gridVisible) {
  zoom_ = geometry;
  geometry_ = screenGeometry(geometry, screen_);
  picture_ = makeGridPicture(geometry_, background, gridVisible);
  w_ = picture_.width();
  h_ = picture_.height();
  half_ = geometry_.halfScale();
  margin_ = geometry_.margin();
  pixels_.assign(static_cast<size_t>(w_) * static_cast<size_t>(h_), 0);
  dirtyTop_ = 0;
  dirtyBottom_ = h_ - 1;
  clear();
}

void DisplayCanvas::clear() {
  if (dirtyBottom_ >= dirtyTop_) {
    const size_t rowBytes = static_cast<size_t>(w_) * 4;
    for (int y = dirtyTop_; y <= dirtyBottom_; ++y)
      std::memcpy(pixels_.data() + static_cast<size_t>(y) * static_cast<size_t>(w_),
                  picture_.constScanLine(y), rowBytes);
  }
  dirtyTop_ = h_;
  dirtyBottom_ = -1;
}

QImage DisplayCanvas::image() const {
  return QImage(reinterpret_cast<const uchar*>(pixels_.data()), w_, h_, w_ * 4, QImage::Format_RGB32);
}

QImage DisplayCanvas::zoomImage() const {
  if (w_ == zoom_.pictureWidth() && h_ == zoom_.pictureHeight()) return image().copy();
  return image().scaled(zoom_.pictureWidth(), zoom_.pictureHeight(), Qt::IgnoreAspectRatio,
                        Qt::SmoothTransformation);
}

void DisplayCanvas::setPixel(int x, int y, QRgb color) {
  if (x < 0 || y < 0 || x >= w_ || y >= h_) return;
  touch(y, y);
  pixels_[static_cast<size_t>(y) * static_cast<size_t>(w_) + static_cast<size_t>(x)] = color | 0xFF000000;
}

QRgb DisplayCanvas::pixel(int x, int y) const {
  if (x < 0 || y < 0 || x >= w_ || y >= h_) return 0;
  return pixels_[static_cast<size_t>(y) * static_cast<size_t>(w_) + static_cast<size_t>(x)];
}

uint32_t* DisplayCanvas::row(int y) {
  if (y < 0 || y >= h_) return nullptr;
  touch(y, y);
  return pixels_.data() + static_cast<size_t>(y) * static_cast<size_t>(w_);
}

void DisplayCanvas::stamp(int x, int y, QRgb color) {
  const uint32_t c = color | 0xFF000000;
  if (width_ == 1) {
    if (x < 0 || y < 0 || x >= w_ || y >= h_) return;
    touch(y, y);
    uint32_t& p = pixels_[static_cast<size_t>(y) * static_cast<size_t>(w_) + static_cast<size_t>(x)];
    p = mode_ == DrawMode::MergePen ? p | c : c;
    return;
  }
  // A pen of width w covers a w x w square around its pixel.
  const int lo = -(width_ - 1) / 2, hi = width_ / 2;
  const int x0 = std::max(x + lo, 0), x1 = std::min(x + hi, w_ - 1);
  const int y0 = std::max(y + lo, 0), y1 = std::min(y + hi, h_ - 1);
  if (x0 > x1 || y0 > y1) return;
  touch(y0, y1);
  for (int r = y0; r <= y1; ++r) {
    uint32_t* p = pixels_.data() + static_cast<size_t>(r) * static_cast<size_t>(w_);
    if (mode_ == DrawMode::MergePen)
      for (int i = x0; i <= x1; ++i) p[i] |= c;
    else
      for (int i = x0; i <= x1; ++i) p[i] = c;
  }
}

void DisplayCanvas::pixelLine(int x1, int y1, int x2, int y2, QRgb color) {
  // A line wholly beside the surface is left at once.
  const int reach = width_;
  if (std::max(x1, x2) < -reach || std::min(x1, x2) >= w_ + reach || std::max(y1, y2) < -reach ||
      std::min(y1, y2) >= h_ + reach)
    return;
  const int dx = std::abs(x2 - x1), dy = -std::abs(y2 - y1);
  const int sx = x1 < x2 ? 1 : -1, sy = y1 < y2 ? 1 : -1;
  int err = dx + dy;
  int x = x1, y = y1;
  for (;;) {
    stamp(x, y, color);
    if (x == x2 && y == y2) break;
    const int e2 = 2 * err;
    if (e2 >= dy) {
      err += dy;
      x += sx;
    }
    if (e2 <= dx) {
      err += dx;
      y += sy;
    }
  }
}

}  // namespace zorvik
