#pragma once

namespace zorvik {

constexpr int kTraceRows = 256;     // rows 0 (bottom) to 255 (top); 0 and 255 mean clipped
constexpr int kDivisionUnits = 32;  // logical units in a division
constexpr int kPictureMargin = 10;  // blank pixels around the grid at every zoom
constexpr int kNormalWidth = 320;
constexpr int kWideWidth = 480;
constexpr int kZoomCount = 4;

// ZoomIndex as stored: 0 to 3; anything else is the normal size 1.
constexpr int normalizeZoomIndex(int zoom) {
  return zoom < 0 || zoom >= kZoomCount ? 1 : zoom;
}

constexpr int floorDiv2(int a) {
  return a >= 0 ? a / 2 : -((1 - a) / 2);
}

// Where the display's logical units land on its picture. Logical x runs from 0 to PlotWidth, y from 0
// (bottom) to 256 (top); the picture keeps the same 10-pixel margin at every zoom, so trace and grid meet
// on the same pixels (a margin of Int16(10 / 3) logical units at zoom 3 would drift by a pixel).
struct DisplayGeometry {
  int zoomIndex = 1;
  bool wide = false;

  static constexpr DisplayGeometry make(int zoom, bool wide) { return {normalizeZoomIndex(zoom), wide}; }

  constexpr int plotWidth() const { return wide ? kWideWidth : kNormalWidth; }
  // The logical margin: 10 pixels at zoom 1 (20, 10, 5, 3 units for zoom 0 to 3).
  constexpr int Margin() const {
    constexpr int kMargins[kZoomCount] = {20, 10, 5, 3};
    return kMargins[normalizeZoomIndex(zoomIndex)];
  }
  // Pixels per two logical units: 1, 2, 4, 6 (scale 0.5, 1, 2, 3).
  constexpr int halfScale() const {
    constexpr int kHalfScale[kZoomCount] = {1, 2, 4, 6};
    return kHalfScale[normalizeZoomIndex(zoomIndex)];
  }
  constexpr int pixelsPerDiv() const { return kDivisionUnits * halfScale() / 2; }
  constexpr int pictureWidth() const { return plotWidth() * halfScale() / 2 + 2 * kPictureMargin + 1; }
  constexpr int pictureHeight() const { return kTraceRows * halfScale() / 2 + 2 * kPictureMargin + 1; }
  constexpr int pixelX(int x) const { return kPictureMargin + floorDiv2(x * halfScale()); }
  constexpr int pixelY(int y) const { return kPictureMargin + floorDiv2((kTraceRows - y) * halfScale()); }
};

}  // namespace zorvik
