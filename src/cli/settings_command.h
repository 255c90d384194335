#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli settings [--instance 1|2] COMMAND, on the store named by ZORVIK_REGISTRY (or the default):
//   set SECTION/NAME=VALUE [...]   (or: set SECTION NAME VALUE)   all in one transaction
//   get SECTION/NAME               (or: get SECTION NAME)         the stored value or the catalogue default
//   export FILE.reg | import FILE.reg | reset
// get, set, import and reset print one JSON object; an error prints one line on `err` and returns 2.
int runSettingsCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
