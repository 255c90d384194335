#pragma once

#include "display/plot_inputs.h"

namespace zorvik {

// The time scale of the view: the record's middle against the trigger, the time a division shows and
// the time at the view's middle.
struct TimeView {
  float CentreOffset = 0;
  float TimePerDiv = 0;
  float ViewCentre = 0;
};

// Samples below 1 use the HScrollCenter maximum in their place.
void UpdateCentreTime(TimeView& view, int samples, int presamples, const PlotInputs& in, float samplePeriod);
void UpdateTimeBase(TimeView& view, const PlotInputs& in, float samplePeriod, int samplesPerDiv,
                    int plotWidth);

}  // namespace zorvik
