#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "display/display_geometry.h"
#include "display/plot_inputs.h"
#include "display/time_view.h"

namespace zorvik {

// A text's or a marker's place on the display's picture, in pixels.
struct LabelRect {
  int left = 0, top = 0, width = 0, height = 0;
  int right() const { return left + width; }
  int bottom() const { return top + height; }
  // An empty rectangle meets nothing.
  bool intersects(const LabelRect& o) const;
};

// The texts of the label band, left to right, and the eighths of the picture's width where each one's
// centre stands when there is room.
enum BandText { kBandTimeDiv, kBandRis, kBandMode, kBandCh1, kBandInterp, kBandVdiv, kBandTexts };
inline constexpr std::array<double, kBandTexts> kBandEighths = {1, 2.4, 3.3, 4.4, 5.7, 6.8};
// Pixels kept free between two texts of the band and at the picture's edges.
inline constexpr int kBandGap = 3;

// Where the band's texts go, from the widths they want (0 for an empty text, which takes no room): each
// centred on its eighth where it has room, else pushed aside within the picture, and when all of them
// cannot stand side by side at full width, narrowed by one factor. No two rectangles meet; the painter
// condenses a text that wants more than its rectangle.
std::array<LabelRect, kBandTexts> bandLayout(int pictureWidth, int top, int height,
                                             const std::array<int, kBandTexts>& wanted);

// TrigIndHor, the trigger position's marker: a small triangle in the margin over the screen pointing down
// at the trigger position line's column; none when that line is not shown.
std::optional<LabelRect> trigIndHorRect(const DisplayGeometry& geometry, std::optional<int> triggerX);

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
