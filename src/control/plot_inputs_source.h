#pragma once
#include "display/plot_inputs.h"

namespace zorvik {

struct ChannelModel;
struct TimebaseModel;
struct TriggerModel;

// The display's inputs from the controllers: the shown volts and the view's centre from the channel,
// presamples, record length and horizontal zoom from the time base, delay and level from the trigger.
// The view positions of the zoom scrolls stay as they are.
void fillPlotInputs(PlotInputs& in, const ChannelModel& channel, const TimebaseModel& timebase,
                    const TriggerModel& trigger);

}  // namespace zorvik
