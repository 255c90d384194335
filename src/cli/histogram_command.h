#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli histogram FILE [--csv OUT] [--percent] [--volts-per-div V] [--zero V]: the levels of segment 1
// counted as the Stat window counts them, as one JSON object (samples, counts of the 256 levels,
// max_count, level_low and level_high in volts; with --percent also percent, each count in percent of the
// samples). --csv writes the window's CSV of the counts. A bad argument or file: one line on err, 2.
int runHistogramCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
