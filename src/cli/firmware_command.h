#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli zfw FILE: a firmware image's head and sectors as one JSON object; exit 2 for a bad image.
int runZfwCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
