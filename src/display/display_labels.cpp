#include "display/display_labels.h"

#include <cmath>

#include "core/eng_text.h"
#include "core/whole_numbers.h"
#include "display/display_geometry.h"

namespace zorvik {

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
