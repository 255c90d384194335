#pragma once
#include <cstdint>
#include <optional>
#include <string>

#include "display/plot_inputs.h"
#include "display/time_view.h"

namespace zorvik {

// The texts shown over the display and the two marker lines, as the core keeps them; the window and the
// picture with labels draw them.
struct DisplayLabels {
  // The label band over the screen.
  std::string TimeDivTransparant;
  std::string RISmodeTransparant;  // "RIS" or "PsRIS" when shown, else empty
  std::string ModeTransparant;
  uint32_t modeColor = 0xFFFFFF;  // 0xBBGGRR of ModeTransparant
  bool noTrigger = false;         // NoTriggerTransparant, "NO TRIGGER!"
  std::string Ch1Transparant;
  std::string Ch1InterpTransparant;
  std::string Ch1VdivTransparant;
  // Vertical labels, top to bottom, and horizontal labels, left to right (HorCenterW only in wide).
  std::string VertTop1, VertCenter1, VertDown1;
  std::string HorLeft, HorCenter, HorCenterW, HorRight;
  // LineNul1's row and the trigger position line's column, when they are on the screen.
  std::optional<int> nullRow;
  std::optional<int> triggerX;
  // The trigger level's row (SyncroLine), when known.
  std::optional<int> triggerLevelRow;
};

void UpdateTimeLabels(DisplayLabels& labels, const TimeView& view, int plotWidth, bool wide);
void UpdateVertLabels(DisplayLabels& labels, const PlotInputs& in);
// Row of the null line: 128 - (VoltOffset x 256 / VoltPerDiv) \ 8, when VoltPerDiv is above 0 and the
// row is on the screen.
std::optional<int> nullLineRow(const PlotInputs& in);
// Column of the trigger position: PlotWidth / 2 - ViewCentre x 32 / TimePerDiv, when it fits 16 bits,
// lies from 0 to PlotWidth and there is no trigger delay.
std::optional<int> triggerLineX(const TimeView& view, const PlotInputs& in, int plotWidth);

}  // namespace zorvik
