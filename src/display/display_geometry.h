#pragma once

namespace zorvik {

constexpr int kTraceRows = 256;     // rows 0 (bottom) to 255 (top); 0 and 255 mean clipped
constexpr int kDivisionUnits = 32;  // logical units in a division
constexpr int kPictureMargin = 10;  // blank pixels around the grid at every zoom
constexpr int kNormalWidth = 320;
constexpr int kWideWidth = 480;
constexpr int kZoomCount = 4;
// The zoom index of a picture laid out for a screen (a pixel ratio above 1 or fitted to a window): no
// stored zoom has it, so paths that hold only for the stored zooms' own pixels leave it alone.
constexpr int kScreenZoom = kZoomCount;

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
  int half = 0;   // on a screen: pixels per two logical units; 0 takes the zoom's
  int ratio = 1;  // on a screen: device pixels per window pixel; the margin grows with it

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
    return half > 0 ? half : kHalfScale[normalizeZoomIndex(zoomIndex)];
  }
  constexpr int margin() const { return kPictureMargin * ratio; }
  constexpr int pixelsPerDiv() const { return kDivisionUnits * halfScale() / 2; }
  constexpr int pictureWidth() const { return plotWidth() * halfScale() / 2 + 2 * margin() + 1; }
  constexpr int pictureHeight() const { return kTraceRows * halfScale() / 2 + 2 * margin() + 1; }
  constexpr int pixelX(int x) const { return margin() + floorDiv2(x * halfScale()); }
  constexpr int pixelY(int y) const { return margin() + floorDiv2((kTraceRows - y) * halfScale()); }
  // The picture's size in window pixels (a device pixel left over makes a whole one).
  constexpr int windowWidth() const { return (pictureWidth() + ratio - 1) / ratio; }
  constexpr int windowHeight() const { return (pictureHeight() + ratio - 1) / ratio; }
};

// How the screen shows the display: device pixels per window pixel, and with "Fit to window" the room
// the picture may fill, in device pixels (0 keeps the zoom's size).
struct ScreenScale {
  int ratio = 1;
  int roomWidth = 0, roomHeight = 0;
  constexpr bool fit() const { return roomWidth > 0 && roomHeight > 0; }
  friend constexpr bool operator==(const ScreenScale&, const ScreenScale&) = default;
};

// The whole device pixel ratio the display is drawn at: the nearest whole number, at least 1 (at 1.5
// the picture is drawn at 2 and the screen takes it down, which stays sharper than drawing it up).
int wholePixelRatio(double devicePixelRatio);

// The largest scale (pixels per two units) whose picture, margins included, fits the room in device
// pixels; at least 1, and no more than kMaxFitHalfScale.
constexpr int kMaxFitHalfScale = 32;
int fitHalfScale(int roomWidth, int roomHeight, bool wide, int ratio);

// The geometry a screen draws a stored zoom's picture at: the zoom's scale times the ratio, or the
// fitted scale. At ratio 1 without fitting it is the zoom's own, so every stored size stays.
DisplayGeometry screenGeometry(const DisplayGeometry& zoom, const ScreenScale& screen);

}  // namespace zorvik
