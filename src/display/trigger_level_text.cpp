#include "display/trigger_level_text.h"

#include <cmath>

#include "core/eng_text.h"
#include "display/display_geometry.h"

namespace zorvik {

std::optional<double> rowVolts(int row, const PlotInputs& in) {
  if (!(in.voltPerDiv > 0) || !std::isfinite(in.voltOffset)) return std::nullopt;
  const double v = static_cast<double>(in.voltPerDiv) / kDivisionUnits;
  const double volts = in.voltOffset + (row - kTraceRows / 2) * v;
  // A level on the middle row of a centred screen reads 0, not what the float's rounding leaves.
  return std::abs(volts) < v / 1000 ? 0.0 : volts;
}

std::string triggerLevelText(const PlotInputs& in) {
  if (in.triggerLevelRow < 0 || in.triggerLevelRow > kTraceRows) return {};
  const std::optional<double> volts = rowVolts(in.triggerLevelRow, in);
  return volts ? engineeringText(*volts, "V") : std::string();
}

}  // namespace zorvik
