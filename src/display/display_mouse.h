#pragma once
#include <string>

namespace zorvik {

// The scale the mouse tools read off the display, in its logical units (x from 0 to PlotWidth left to
// right, y from 0 to 256 bottom to top).
struct MouseScale {
  double secondsPerUnit = 0;  // TimePerDiv / 32
  double voltsPerRow = 0;     // volts a division as shown / 32
  double timeAtLeft = 0;      // the time at x = 0
};

// The mouse tools of the display: two marker lines that measure a distance from where the left key went
// down, a selection rectangle drawn with the right key, and the read-out of the cursor.
class DisplayMouse {
 public:
  static constexpr int kMarkerThreshold = 6;  // units the mouse moves before a marker shows

  struct Marker {
    bool visible = false;
    int at = 0;              // x of the vertical marker, y of the horizontal one
    std::string text;        // the distance
    int textAlong = 0;       // the text's middle along the marker: the middle of the movement
    bool textAfter = false;  // right of (above) the marker: the side away from the start
  };
  struct Selection {
    bool visible = false;
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0;  // corners as drawn; not ordered
    int left() const { return x1 < x2 ? x1 : x2; }
    int right() const { return x1 < x2 ? x2 : x1; }
    int bottom() const { return y1 < y2 ? y1 : y2; }
    int top() const { return y1 < y2 ? y2 : y1; }
  };

  void leftDown(int x, int y);
  void leftMove(int x, int y, const MouseScale& scale);
  void rightDown(int x, int y);
  void rightMove(int x, int y);
  void leftUp() { dragging_ = false; }
  // The right key came up: true when a selection stands and its menu pops up.
  bool rightUp() {
    dragging_ = false;
    return selection_.visible;
  }
  // Markers and selection go with the next key down or a cleared display.
  void clear();

  // The distance in time and its inverse, shown with the vertical marker; the distance in volts with the
  // horizontal one.
  const Marker& vertical() const { return vertical_; }
  const Marker& horizontal() const { return horizontal_; }
  const Selection& selection() const { return selection_; }
  bool dragging() const { return dragging_; }

  // The vertical marker's read-out: the time between the markers and its inverse, "2µS  500kHz".
  static std::string timeMarkerText(double seconds);
  // The tool tip with no key down: the time at the cursor, two blanks, the volts from the middle row.
  static std::string cursorText(int x, int y, const MouseScale& scale);

 private:
  int MarkStartX = 0, MarkStartY = 0, RectStartX = 0, RectStartY = 0;
  bool dragging_ = false;
  Marker vertical_, horizontal_;
  Selection selection_;
};

}  // namespace zorvik
