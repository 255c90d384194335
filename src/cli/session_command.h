#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli session [--sim ...] [--packets N] [--single] [--timeout S] [--keys K1,K2,...]
//   [--save-last FILE.zrv] [--set SECTION/NAME=VALUE ...]
int runSessionCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
