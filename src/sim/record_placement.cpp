#include "sim/record_placement.h"

namespace zorvik {

RecordPlacement placeRecord(TriggerPath& trigger, const AcquisitionSetup& setup, double now) {
  const double dt = setup.samplePeriod();
  const double delay = setup.countSeconds(setup.TD);
  // With a delay the record starts after the trigger, so no presamples need to be waited for.
  const auto presamples = static_cast<int64_t>(delay > 0 ? 0 : setup.presamples());
  const double armed = now + static_cast<double>(presamples) * dt;
  const double timeOut = armed + setup.triggerWait();

  RecordPlacement place;
  if (const std::optional<int64_t> sample = trigger.fire(setup, now, presamples, timeOut)) {
    // The converter runs on its own grid: the trigger is seen at the next sample, which is the
    // jitter of up to one sample that a real instrument shows.
    place.triggered = true;
    place.decided = now + static_cast<double>(*sample) * dt;
  } else if (setup.normalTrigger()) {
    place.hasData = false;
    place.start = now;
    place.decided = timeOut;
    place.end = timeOut;
    return place;
  } else {
    place.decided = timeOut;
  }
  place.start = delay > 0 ? place.decided + delay : place.decided - static_cast<double>(presamples) * dt;
  place.end = place.start + setup.recordSeconds();
  return place;
}

}  // namespace zorvik
