#pragma once
#include <QImage>
#include <functional>
#include <string>
#include <vector>

#include "analysis/plot_axes.h"
#include "analysis/plot_style.h"

namespace zorvik {

class Persistence;

// What a window plots of one acquisition: a value a bin, bin i at i × binWidth on the x axis.
struct PlotFrame {
  std::vector<float> values;
  int bins = 0;
  double binWidth = 0;
  double origin = 0;  // what the x labels read at bin 0 (the lowest level of a histogram)
  PlotRange full;     // the axes at zoom 1
  bool dB = false;    // values in volts, plotted in dB
  bool bars = false;  // each bin holds its value across its width (a histogram)
  bool valid = false;
};

// How the axes and the markers are written: x with the frame's origin added, y in the plot's unit, and
// the distances between markers.
struct PlotTexts {
  std::function<std::string(double)> x, y, dx, dy;
  double yLabelScale = 1;  // the labels' unit per y unit, so that their steps are tidy in what they read
};

// Two markers in the axes' units: the first where the mouse key went down, the second where it is.
struct PlotMarkers {
  bool vertical = false, horizontal = false;  // each is shown once the mouse has moved far enough
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
};

// The plot's size: the trace area and the blank margin around it.
struct PlotGeometry {
  static constexpr int kWidth = 400, kHeight = 256, kMargin = 10;
  static constexpr int kDivision = 32;  // the grid's pixel unit
  static int imageWidth() { return kWidth + 2 * kMargin; }
  static int imageHeight() { return kHeight + 2 * kMargin; }
};

struct PlotLook {
  PlotRange range;  // the zoomed axes
  bool grid = true, labels = true;
  PlotMarkers markers;
  std::string markerHorText, markerVertText;  // MarkerHorText, MarkerVertText
  int scale = 1;  // device pixels a picture pixel: the screen's whole scale; files are drawn at 1
};

// The row of each pixel column of the trace area (see plotColumns), for the frame at the zoomed range.
std::vector<float> frameColumns(const PlotFrame& frame, const PlotRange& range, const PlotStyle& style);

// The window's picture: the background, grid, trace in its styles (or the graded memory when given),
// labels and markers.
QImage drawPlot(const PlotFrame& frame, const std::vector<float>& columns, const PlotLook& look,
                const PlotStyle& style, const PlotTexts& texts, const Persistence* memory);

// Pixel positions in the picture of an axis value.
double plotX(const PlotRange& range, double x);
double plotY(const PlotRange& range, double y);
// And back: the axis values at a picture position.
double axisX(const PlotRange& range, double px);
double axisY(const PlotRange& range, double py);

}  // namespace zorvik
