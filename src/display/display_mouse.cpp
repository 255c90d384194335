#include "display/display_mouse.h"

#include <cmath>
#include <cstdlib>

#include "core/eng_text.h"

namespace zorvik {

void DisplayMouse::leftDown(int x, int y) {
  clear();
  MarkStartX = x;
  MarkStartY = y;
  dragging_ = true;
}

void DisplayMouse::leftMove(int x, int y, const MouseScale& scale) {
  const int dx = x - MarkStartX, dy = y - MarkStartY;
  vertical_.visible = std::abs(dx) >= kMarkerThreshold;
  if (vertical_.visible) {
    vertical_.at = x;
    vertical_.text = timeMarkerText(std::abs(dx) * scale.secondsPerUnit);
    vertical_.textAlong = (y + MarkStartY) / 2;
    vertical_.textAfter = dx > 0;
  }
  horizontal_.visible = std::abs(dy) >= kMarkerThreshold;
  if (horizontal_.visible) {
    horizontal_.at = y;
    horizontal_.text = engineeringText(std::abs(dy) * scale.voltsPerRow, "V");
    horizontal_.textAlong = (x + MarkStartX) / 2;
    horizontal_.textAfter = dy > 0;
  }
}

void DisplayMouse::rightDown(int x, int y) {
  clear();
  RectStartX = x;
  RectStartY = y;
  dragging_ = true;
}

void DisplayMouse::rightMove(int x, int y) {
  selection_ = {true, RectStartX, RectStartY, x, y};
  // A rectangle without width or height selects nothing.
  selection_.visible = x != RectStartX && y != RectStartY;
}

void DisplayMouse::clear() {
  vertical_ = {};
  horizontal_ = {};
  selection_ = {};
  dragging_ = false;
}

std::string DisplayMouse::timeMarkerText(double seconds) {
  std::string text = engineeringText(seconds, "S");
  // The frequency whose period the markers span; none for a span without time.
  if (seconds > 0 && std::isfinite(1 / seconds)) text += "  " + engineeringText(1 / seconds, "Hz");
  return text;
}

std::string DisplayMouse::cursorText(int x, int y, const MouseScale& scale) {
  double t = scale.timeAtLeft + x * scale.secondsPerUnit;
  // The trigger's own column reads 0, not the rounding left over from the sum.
  if (std::abs(t) < std::abs(scale.secondsPerUnit) / 1000) t = 0;
  return engineeringText(t, "S") + "  " + engineeringText((y - 128) * scale.voltsPerRow, "V");
}

}  // namespace zorvik
