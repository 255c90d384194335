#include "display/time_view.h"

namespace zorvik {

void UpdateCentreTime(TimeView& view, int samples, int presamples, const PlotInputs& in, float samplePeriod) {
  const double q = samples < 1 ? in.hScrollCenterMax : samples;
  if (in.DelayTime == 0)
    view.CentreOffset = static_cast<float>((q / 2 - presamples) * samplePeriod);
  else
    view.CentreOffset = static_cast<float>(q / 2 * samplePeriod + in.DelayTime);
}

void UpdateTimeBase(TimeView& view, const PlotInputs& in, float samplePeriod, int samplesPerDiv,
                    int plotWidth) {
  const int hZoom = in.hZoom > 0 ? in.hZoom : 1;
  view.TimePerDiv = static_cast<float>(static_cast<double>(samplePeriod) * samplesPerDiv / hZoom);
  double centre = static_cast<double>(in.CentreBase) + view.CentreOffset;
  if (hZoom != 1) centre -= in.hViewFrac * (hZoom - 1) * view.TimePerDiv * (plotWidth / 32) / 2;
  view.ViewCentre = static_cast<float>(centre);
}

}  // namespace zorvik
