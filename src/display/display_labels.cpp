#include "display/display_labels.h"

#include <algorithm>
#include <cmath>

#include "core/eng_text.h"
#include "core/whole_numbers.h"
#include "display/display_geometry.h"

namespace zorvik {

bool LabelRect::intersects(const LabelRect& o) const {
  if (width <= 0 || height <= 0 || o.width <= 0 || o.height <= 0) return false;
  return left < o.right() && o.left < right() && top < o.bottom() && o.top < bottom();
}

std::array<LabelRect, kBandTexts> bandLayout(int pictureWidth, int top, int height,
                                             const std::array<int, kBandTexts>& wanted) {
  std::array<LabelRect, kBandTexts> out{};
  std::array<int, kBandTexts> shown{};  // indices of the texts that take room
  int n = 0;
  int64_t total = 0;
  for (int i = 0; i < kBandTexts; ++i) {
    out[i].top = top;
    out[i].height = height;
    if (wanted[i] > 0) {
      shown[n++] = i;
      total += wanted[i];
    }
  }
  if (n == 0) return out;
  const int lo = kBandGap, hi = pictureWidth - kBandGap;
  const int64_t room = std::max(0, hi - lo - (n - 1) * kBandGap);
  std::array<int, kBandTexts> left{};
  for (int k = 0; k < n; ++k) {
    const int i = shown[k];
    // One factor for all, so that the longer texts stay the longer ones.
    out[i].width = total <= room ? wanted[i] : static_cast<int>(wanted[i] * room / total);
    const int centre = static_cast<int>(kBandEighths[i] / 8 * pictureWidth);
    left[k] = centre - out[i].width / 2;
  }
  // Push right what overlaps its left neighbour or the edge, then back left what runs past the right
  // edge or into its right neighbour. The widths fit the room, so neither pass breaks the other's bound.
  for (int k = 0; k < n; ++k) {
    const int floor = k == 0 ? lo : left[k - 1] + out[shown[k - 1]].width + kBandGap;
    left[k] = std::max(left[k], floor);
  }
  for (int k = n - 1; k >= 0; --k) {
    const int ceiling = k == n - 1 ? hi : left[k + 1] - kBandGap;
    left[k] = std::min(left[k], ceiling - out[shown[k]].width);
  }
  for (int k = 0; k < n; ++k) out[shown[k]].left = left[k];
  return out;
}

std::optional<LabelRect> trigIndHorRect(const DisplayGeometry& g, std::optional<int> triggerX) {
  if (!triggerX) return std::nullopt;
  // Within the blank margin, so that it covers neither the grid nor the band's texts.
  constexpr int kHalfWidth = 4, kHeight = 5;
  const int x = g.pixelX(*triggerX), bottom = g.pixelY(kTraceRows) - 2;
  return LabelRect{x - kHalfWidth, bottom - kHeight + 1, 2 * kHalfWidth + 1, kHeight};
}

void UpdateTimeLabels(DisplayLabels& labels, const TimeView& view, int plotWidth, bool wide) {
  const double t = view.TimePerDiv, c = view.ViewCentre;
  const int d = plotWidth / kDivisionUnits;
  labels.TimeDivTransparant = engineeringText(t, "S/");
  labels.HorLeft = engineeringText(c - d * t / 2, "S");
  labels.HorRight = engineeringText(c + d * t / 2, "S");
  if (wide) {
    labels.HorCenter = engineeringText(c - d * t / 6, "S");
    labels.HorCenterW = engineeringText(c + d * t / 6, "S");
  } else {
    labels.HorCenter = engineeringText(c, "S");
    labels.HorCenterW.clear();
  }
}

void UpdateVertLabels(DisplayLabels& labels, const PlotInputs& in) {
  const double v = in.voltPerDiv, o = in.voltOffset;
  labels.Ch1VdivTransparant = engineeringText(v, "V/");
  labels.VertTop1 = engineeringText(4 * v + o, "V");
  labels.VertCenter1 = engineeringText(o, "V");
  labels.VertDown1 = engineeringText(o - 4 * v, "V");
}

std::optional<int> nullLineRow(const PlotInputs& in) {
  if (!(in.voltPerDiv > 0)) return std::nullopt;
  const int64_t row = 128 - wholeDivSaturating(static_cast<double>(in.voltOffset) * 256 / in.voltPerDiv, 8);
  if (row < 0 || row > kTraceRows) return std::nullopt;
  return static_cast<int>(row);
}

std::optional<int> triggerLineX(const TimeView& view, const PlotInputs& in, int plotWidth) {
  if (!(view.TimePerDiv != 0) || in.DelayTime != 0) return std::nullopt;
  const double x = plotWidth / 2.0 - static_cast<double>(view.ViewCentre) * 32 / view.TimePerDiv;
  if (!std::isfinite(x) || x < -32768.5 || x > 32767.5) return std::nullopt;
  const int64_t xi = roundToInt64Saturating(x);
  if (xi < 0 || xi > plotWidth) return std::nullopt;
  return static_cast<int>(xi);
}

}  // namespace zorvik
