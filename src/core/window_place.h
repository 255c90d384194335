#pragma once
#include <vector>

namespace zorvik {

// Where the program's windows stand on the desktop, in pixels of the desktop.
struct PlacePoint {
  int x = 0;
  int y = 0;
  bool operator==(const PlacePoint&) const = default;
};
struct PlaceRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// One step of the cascade, down and to the right.
constexpr int kCascadeStep = 24;

// A window opened with no place of its own: beside the main window, on its right when it fits there, else
// on its left, else over the main window's right part; one cascade step further for every open window that
// already stands on that spot, so that new windows never hide each other. The result lies in `area`.
PlacePoint besideMain(PlaceRect window, PlaceRect main, PlaceRect area, const std::vector<PlacePoint>& open);

// The window moved into `area` as far as it can: a window larger than the area keeps its top-left corner.
PlacePoint intoArea(PlaceRect window, PlaceRect area);

}  // namespace zorvik
