#include "display/display_geometry.h"

#include <algorithm>
#include <cmath>

namespace zorvik {

int wholePixelRatio(double devicePixelRatio) {
  if (!(devicePixelRatio >= 1)) return 1;  // also NaN
  return static_cast<int>(std::lround(std::min(devicePixelRatio, 8.0)));
}

int fitHalfScale(int roomWidth, int roomHeight, bool wide, int ratio) {
  const int plot = wide ? kWideWidth : kNormalWidth;
  const int frame = 2 * kPictureMargin * std::max(ratio, 1) + 1;
  // pictureWidth = plot * half / 2 + frame, so the widest half is 2 * (room - frame) / plot.
  const int byWidth = roomWidth > frame ? 2 * (roomWidth - frame) / plot : 0;
  const int byHeight = roomHeight > frame ? 2 * (roomHeight - frame) / kTraceRows : 0;
  return std::clamp(std::min(byWidth, byHeight), 1, kMaxFitHalfScale);
}

DisplayGeometry screenGeometry(const DisplayGeometry& zoom, const ScreenScale& screen) {
  const int ratio = std::max(screen.ratio, 1);
  if (ratio == 1 && !screen.fit()) return zoom;
  DisplayGeometry g = zoom;
  g.zoomIndex = kScreenZoom;
  g.ratio = ratio;
  g.half = screen.fit() ? fitHalfScale(screen.roomWidth, screen.roomHeight, zoom.wide, ratio)
                        : zoom.halfScale() * ratio;
  return g;
}

}  // namespace zorvik
