#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "control/timebase_rule.h"

namespace zorvik {

// One run of the time-base rule, online, against a link that notes writes and answers nothing.
struct TimebaseProbe {
  float secondsPerDiv = 0;
  TimebaseLimits limits;
  bool ris = false;
  bool maximize = false;
  bool wide = false;
  int memoDepth = 1;
  std::optional<int> clockMinMHz, clockMaxMHz;  // the manual limits of the clock page
  int32_t qsh = 0;                              // the memory table's entry; 0: the table is empty
  int32_t ts = 0;                               // the cached TS before the call
};

struct TimebaseProbeResult {
  bool ok = false;
  std::string message;  // the box text when refused
  int32_t TS = 0, MC = 0, QS = 0;
  int SamplesPerDiv = 0;
  bool RisActive = false;
  std::vector<std::pair<std::string, int32_t>> writes;
};

TimebaseProbeResult runTimebaseProbe(const TimebaseProbe& probe);

}  // namespace zorvik
