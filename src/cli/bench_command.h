#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli bench [FILE...] [--packets N] [--mode 0..4] [--samples N] [--full] [display options of render]
// Times N packets, one by one, through the packet entry and the display (decode, plot, persistence) and
// prints the median, mean, fastest and slowest µs a packet as one JSON object. Without FILE the packets
// are sixteen acquisitions of the simulated instrument at its start-up time base (3.125 µs a sample,
// 32 samples a division) with --samples samples (default 332) in mode --mode (default 0, average).
// With --device ADDRESS the packets come instead from the instrument served there, through the stream
// link alone, and the result is packets and megabytes a second (see stream_bench.h).
// With --full: the whole signal path of FullPathRig instead, 8192-sample packets of each sample format (or
// of --mode's), the median and packets per second of each under "full".
// A bad argument or file: one line on err, return 2.
int runBenchCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
