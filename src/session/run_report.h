#pragma once
#include <cstdint>
#include <string>

namespace zorvik {

// What `zorvik --report-after SECONDS` prints when the time is up: how many packets the window
// processed, how many paints showed the display's changes, and the process's share of one core.
struct RunReport {
  double seconds = 0;
  int64_t packets = 0;
  int64_t updates = 0;  // the display's changes, one or more a packet
  int64_t paints = 0;   // how many paints showed them
  double cpuSeconds = 0;

  // One line of NAME=VALUE words, for a script to read.
  std::string line() const;
};

// The process's processor time so far (every thread), in seconds.
double processCpuSeconds();

}  // namespace zorvik
