#include "control/plot_inputs_source.h"

#include "control/channel_control.h"
#include "control/timebase_control.h"
#include "control/trigger_control.h"

namespace zorvik {

void fillPlotInputs(PlotInputs& in, const ChannelModel& channel, const TimebaseModel& timebase,
                    const TriggerModel& trigger) {
  in.voltPerDiv = channel.ZoomVoltPerDiv;
  in.voltOffset = channel.ZoomCentre;
  in.hZoom = timebase.horZoom > 0 ? timebase.horZoom : 1;
  in.PreSamples = timebase.HScrollCenterValue;
  in.hScrollCenterMax = timebase.HScrollCenterMax;
  in.DelayTime = trigger.delayOn ? static_cast<float>(trigger.DelaySeconds) : 0.0f;
  // The level is a row of the 256-high frame; at a vertical zoom it moves with the view.
  const double z = in.vZoom > 0 ? in.vZoom : 1;
  const double row = (trigger.level - 128) * z + 128 - (z - 1) * 256 * in.vViewFrac;
  in.triggerLevelRow = row >= 0 && row <= 256 ? static_cast<int>(row) : -1;
}

}  // namespace zorvik
