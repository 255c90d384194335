#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli timebase SECONDS_PER_DIV [--limits MCd=..,MCl=..,...] [--ris] [--maximize] [--memo-depth 0..3]
//   [--wide] [--clock-min MHZ] [--clock-max MHZ] [--qsh N] [--ts N]
// Runs the time-base rule once and prints its writes as one JSON object.
int runTimebaseCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
