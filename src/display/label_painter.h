#pragma once

class QPainter;

namespace zorvik {

struct DisplayLabels;
struct DisplaySettings;
struct DisplayGeometry;

// Draws the labels and marker lines over the display's surface, in its pixels: the band over the
// screen at its fractions of the width, the vertical labels down the left edge, the horizontal ones
// along the bottom, the null line, the trigger level line, the trigger position line and its marker
// TrigIndHor. The band's places come from bandLayout, so its texts never meet. The window and
// the picture with labels use the same drawing, so the two agree. Text needs the GUI application.
void paintLabels(QPainter& painter, const DisplayLabels& labels, const DisplaySettings& settings,
                 const DisplayGeometry& geometry);

// The marker lines and TrigIndHor alone: no text, so no font is needed.
void paintMarkers(QPainter& painter, const DisplayLabels& labels, const DisplaySettings& settings,
                  const DisplayGeometry& geometry);

// The pixel size of the labels' font for a stored size (5 by default) at a zoom, and on a geometry laid
// out for a screen (the same size in window pixels as the nearest zoom, drawn at the screen's ratio).
int labelPixelSize(int storedSize, int zoomIndex);
int labelPixelSize(int storedSize, const DisplayGeometry& geometry);

}  // namespace zorvik
