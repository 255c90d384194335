#pragma once
#include <vector>

namespace zorvik {

// The part of a plot's full range that the zoom shows. x runs from 0 (the first bin) over `span`; y from
// `bottom` to `top`.
struct PlotRange {
  double left = 0, span = 0;
  double top = 0, bottom = 0;
};

// The range at horizontal factor hz with position hp (0 the left end, 1 the right) and vertical factor
// vz with position vp (0 the bottom, 1 the top). A factor below 1 or an empty range leaves that axis as
// it stands; positions are brought into 0 to 1.
PlotRange zoomedRange(const PlotRange& full, int hz, double hp, int vz, double vp);

// The tidy step (1, 2 or 5 times a power of ten) that divides `span` into at most `parts` parts; 0 for an
// empty or unusable span.
double tidyStep(double span, int parts);

// The multiples of `step` from `low` to `high`, both included.
std::vector<double> tidyTicks(double low, double high, double step);

// GridRows: the rows of the vertical grid for a plot `height` pixels high at one division a `unit`.
int gridRows(int height, int unit);

}  // namespace zorvik
