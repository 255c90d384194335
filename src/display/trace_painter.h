#pragma once
#include <cstdint>

#include "display/display_settings.h"
#include "display/peak_resampler.h"
#include "display/trace_columns.h"

namespace zorvik {

class DisplayCanvas;

// The colours of RISrainbow's passes, 0xRRGGBB.
extern const uint32_t kRainbowColors[8];

// The drawing passes of the plotters on the surface: the vector pass with VarBrightLine1 and the edge
// rule, the point pass, RISrainbow's interleaved passes and the peak columns with their joints.
class TracePainter {
 public:
  TracePainter(DisplayCanvas& canvas, const DisplaySettings& settings) : canvas_(canvas), s_(settings) {}

  // Step 10: a polyline through the drawn columns; both ends on one edge only move the pen.
  void vectorPass(const TraceColumns& c);
  // Step 11, without grading: the fan, the drawn columns, or every column (dimmer between samples).
  void pointPass(const TraceColumns& c);
  // Step 12: with 0 < TS < 512, the 512 \ TS interleaved passes in their own colours.
  void rainbowPass(const TraceColumns& c, int32_t ts);
  // PlotPeaks step 9.
  void peakPass(const PeakColumns& c);

  // The columns of the vector pass: with Interpol1 "None" or "Line" only multiples of
  // Round(max(Ratio, XStep)), else every XStep-th column from XFirst.
  static bool onSampleGrid(Interpolation interp);
  static int gridStep(const TraceColumns& c);

 private:
  DisplayCanvas& canvas_;
  const DisplaySettings& s_;
};

// Int(255 - 30 x Ln(d + 1)): the vector's brightness for a step of d rows.
int vectorBrightness(int d);
// Int(256 - 0.7 x d): a peak line's brightness for a span of d rows.
int peakBrightness(int d);

}  // namespace zorvik
