#pragma once

#include "sim/acquisition_setup.h"
#include "sim/trigger_path.h"

namespace zorvik {

// Where the record lies in the device's time.
struct RecordPlacement {
  bool hasData = true;  // false: Norm mode and no trigger came
  bool triggered = false;
  double start = 0;    // time of the first sample
  double decided = 0;  // when the device knows where the record lies: the trigger or the time-out
  double end = 0;      // when the device is done with this acquisition
};

// Runs the trigger from `now`: presamples are filled first, then the trigger is awaited up to the
// time-out and the record laid around it on the converter's sample grid, or, with a delay, the
// delay after it. In Auto mode the time-out stands in for the trigger.
RecordPlacement placeRecord(TriggerPath& trigger, const AcquisitionSetup& setup, double now);

}  // namespace zorvik
