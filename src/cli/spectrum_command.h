#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli spectrum FILE [--window 0..6] [--doubled] [--dc] [--sample-period S] [--volts-per-div V]
// [--zero V] [--lines K]: the amplitude spectrum of segment 1 of a packet or zrv file as one JSON object,
// with its strongest bins.
int runSpectrumCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
