#include "core/window_place.h"

#include <algorithm>

namespace zorvik {

PlacePoint intoArea(PlaceRect window, PlaceRect area) {
  const int right = area.x + std::max(0, area.width - window.width);
  const int bottom = area.y + std::max(0, area.height - window.height);
  return {std::clamp(window.x, area.x, right), std::clamp(window.y, area.y, bottom)};
}

PlacePoint besideMain(PlaceRect window, PlaceRect main, PlaceRect area, const std::vector<PlacePoint>& open) {
  PlacePoint at{main.x + main.width, main.y};
  if (at.x + window.width > area.x + area.width) {
    at.x = main.x - window.width;
    if (at.x < area.x) at.x = main.x + main.width - window.width;
  }
  at = intoArea({at.x, at.y, window.width, window.height}, area);
  // Each step moves on: a list of windows cannot hold the loop for more turns than it has entries.
  for (size_t turn = 0; turn <= open.size(); ++turn) {
    if (std::find(open.begin(), open.end(), at) == open.end()) break;
    PlacePoint next = intoArea({at.x + kCascadeStep, at.y + kCascadeStep, window.width, window.height}, area);
    if (next == at) break;  // the corner of the area: stand there too
    at = next;
  }
  return at;
}

}  // namespace zorvik
