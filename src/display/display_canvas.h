#pragma once
#include <QImage>
#include <algorithm>
#include <cstdint>
#include <vector>

#include "display/display_geometry.h"

namespace zorvik {

// How a drawn pixel meets the picture: the pen's colour as it stands, or OR-ed into what is there (the
// grid then shows through the trace).
enum class DrawMode { CopyPen = 13, MergePen = 15 };

// The display's 32-bit surface: the picture it clears to (the grid), and line, point, draw width, draw
// mode and pixel access in the display's logical units (x a column, y a row counted from the bottom).
// The pixels are its own; image() shows them without a copy.
class DisplayCanvas {
 public:
  DisplayCanvas();

  // Lays the surface out for a zoom's geometry as the screen shows it, and makes the picture it clears
  // to. Without a screen scale the surface is the zoom's picture, pixel for pixel.
  void setup(const DisplayGeometry& geometry, QRgb background, bool gridVisible);
  // The geometry drawn at, and the zoom's own (the size of every saved picture).
  const DisplayGeometry& geometry() const { return geometry_; }
  const DisplayGeometry& zoomGeometry() const { return zoom_; }
  // The screen's scale, kept for every later setup; the caller sets the display up again.
  void setScreen(const ScreenScale& screen) { screen_ = screen; }
  const ScreenScale& screen() const { return screen_; }
  // The picture at the zoom's size: the surface itself, or taken down from the screen's drawing.
  QImage zoomImage() const;

  // Back to the picture (only the rows drawn on since the last clear are copied).
  void clear();
  void setDrawWidth(int width) { width_ = std::clamp(width, 1, kMaxDrawWidth); }
  int drawWidth() const { return width_; }
  void setDrawMode(DrawMode mode) { mode_ = mode; }
  DrawMode drawMode() const { return mode_; }

  // The current point, as the line calls leave it.
  void moveTo(int x, int y) {
    curX_ = x;
    curY_ = y;
  }
  void setCurrentX(int x) { curX_ = x; }
  int currentX() const { return curX_; }
  int currentY() const { return curY_; }
  void lineTo(int x, int y, QRgb color) {
    line(curX_, curY_, x, y, color);
    moveTo(x, y);
  }
  // Both ends are drawn.
  void line(int x1, int y1, int x2, int y2, QRgb color) { pixelLine(px(x1), py(y1), px(x2), py(y2), color); }
  void point(int x, int y, QRgb color) {
    const int px1 = px(x), py1 = py(y);
    if (width_ == 1 && px1 >= 0 && py1 >= 0 && px1 < w_ && py1 < h_) {
      touch(py1, py1);
      uint32_t& p = pixels_[static_cast<size_t>(py1) * static_cast<size_t>(w_) + static_cast<size_t>(px1)];
      p = mode_ == DrawMode::MergePen ? p | color | 0xFF000000 : color | 0xFF000000;
      return;
    }
    stamp(px1, py1, color);
  }

  // Pixel access in picture coordinates: outside the surface nothing happens (and 0 is read).
  void setPixel(int x, int y, QRgb color);
  QRgb pixel(int x, int y) const;
  // A row to write into (null outside the surface).
  uint32_t* row(int y);
  int width() const { return w_; }
  int height() const { return h_; }

  // The pixels as an image, without a copy: valid while the canvas lives and until the next setup.
  QImage image() const;
  // A copy that stays as it is.
  QImage snapshot() const { return image().copy(); }
  const QImage& picture() const { return picture_; }

 private:
  static constexpr int kMaxDrawWidth = 64;
  // Logical coordinates are kept to a range whose pixels can't overflow at any zoom.
  static int limited(int v) { return std::clamp(v, -(1 << 20), 1 << 20); }
  int px(int x) const { return margin_ + floorDiv2(limited(x) * half_); }
  int py(int y) const { return margin_ + floorDiv2((kTraceRows - limited(y)) * half_); }
  void touch(int top, int bottom) {
    dirtyTop_ = std::min(dirtyTop_, std::max(top, 0));
    dirtyBottom_ = std::max(dirtyBottom_, std::min(bottom, h_ - 1));
  }
  void stamp(int x, int y, QRgb color);
  void pixelLine(int x1, int y1, int x2, int y2, QRgb color);

  DisplayGeometry geometry_, zoom_;
  ScreenScale screen_;
  QImage picture_;
  std::vector<uint32_t> pixels_;
  int w_ = 0, h_ = 0, half_ = 2, margin_ = kPictureMargin;
  int dirtyTop_ = 0, dirtyBottom_ = -1;
  int width_ = 1;
  DrawMode mode_ = DrawMode::CopyPen;
  int curX_ = 0, curY_ = 0;
};

// The grid picture of a geometry, drawn by code: olive division lines, half-division ticks beside the
// centre lines (two tick columns in wide), on the background colour; only the background when hidden.
QImage makeGridPicture(const DisplayGeometry& geometry, QRgb background, bool gridVisible);

constexpr QRgb kGridOlive = 0xFF7F7F00;

}  // namespace zorvik
