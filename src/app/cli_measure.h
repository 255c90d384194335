#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli measure FILE [--volts-per-div V] [--zero V]: the amplitude quantities of segment 1 of a
// packet or zrv file (every meter open), as one JSON object.
int runMeasureCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
