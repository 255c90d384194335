#pragma once
#include <cstdint>
#include <optional>

#include "sim/acquisition_setup.h"
#include "sim/signal_generator.h"

namespace zorvik {

// The trigger: the input stage, then the trigger filter, into a comparator with a hysteresis band
// for each edge, with noise of its own. An edge counts only after the signal has been beyond the
// band on the far side of the level.
//
// The comparator is stepped on a grid that holds every converter sample and is finer where the
// signal is fast against the sampling. Stretches where the clean signal stays out of reach of both
// thresholds, noise included, are jumped over by their computed crossings, so a long wait costs
// little. A search that stays undecided for kMaxSteps steps counts as no trigger.
class TriggerPath {
 public:
  // The path sees the same signal as `input`; its noise is drawn from a stream of its own.
  explicit TriggerPath(SignalGenerator& input);

  // Index of the first converter sample (time origin + i x sample period) at or after the moment
  // the comparator fires, counted from sample `first` up to time `until`. Nothing when it does not.
  std::optional<int64_t> fire(const AcquisitionSetup& setup, double origin, int64_t first, double until);

  static constexpr int kMaxSteps = 1 << 16;

 private:
  SignalGenerator path_;
};

}  // namespace zorvik
