#pragma once
#include <optional>
#include <string>

#include "display/plot_inputs.h"

namespace zorvik {

// The volts at a row of the screen as shown: the middle row (128) is the offset, and a row is a 32nd of
// a division; none without a scale.
std::optional<double> rowVolts(int row, const PlotInputs& in);

// The trigger level's read-out beside its marker ("1.2V"): the volts of the row the level's line stands
// on, so the text and the line agree at every vertical zoom; empty while the level is off the screen.
std::string triggerLevelText(const PlotInputs& in);

}  // namespace zorvik
