#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli measure FILE [--volts-per-div V] [--zero V] [--sample-period S] [--level 0..3]
// [--trigger 0..255] [--negative] [--20-80]: the measurements of segment 1 of a packet or zrv file with
// every meter open, as one JSON object.
int runMeasureCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
