#pragma once
#include <array>
#include <cstdint>

#include "display/display_settings.h"
#include "display/interpolation.h"
#include "display/sample_buffer.h"
#include "display/trace_columns.h"

namespace zorvik {

struct ResampleRequest {
  int plotWidth = kNormalWidth;
  float ratio = 2;       // pixels per sample: 32 / SamplesPerDiv x HZoom
  double hViewFrac = 0;  // HScrollView Value / Max
  Interpolation interp = Interpolation::SinX;
  int taps = 32;
  int xStep = 1;
  bool keepFan = false;  // PeakDecimation1 checked and the mode gives no decimation of its own
  float vZoom = 1;
  double vViewFrac = 0;
};

// Start, the columns and the resampling of PlotSamples (steps 3 to 7): the window of the record that the
// view shows, one 16-bit value per column by oversampling, block copy or one of the interpolations, and
// the rows after the vertical zoom.
class SampleResampler {
 public:
  void run(SampleBuf& samples, const ResampleRequest& request, TraceColumns& out);
  // The row of a 16-bit value after the vertical zoom: 255 above the ceiling, 0 below the floor.
  static uint8_t row(int32_t value, double vZoom, double pan, int64_t ceil);

 private:
  void oversample(const SampleBuf& s, const ResampleRequest& r, bool narrower, TraceColumns& out);
  void interpolate(SampleBuf& s, const ResampleRequest& r, TraceColumns& out);
  void mapRows(const SampleBuf& s, const ResampleRequest& r, TraceColumns& out);

  Interpolator interpolator_;
  std::array<float, kMaxColumns> points_{};  // the point of each interpolated column
};

}  // namespace zorvik
