#pragma once
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace zorvik {

// One command of zorvik-cli: its name, what runs it, and what --help says about it. The overview and each
// command's help come from this one table, so a command can't be run without being listed.
struct CliCommand {
  const char* name;
  int (*run)(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
  const char* summary;  // one line for the overview
  std::string usage;    // what `zorvik-cli NAME --help` prints
};

const std::vector<CliCommand>& cliCommands();
const CliCommand* findCliCommand(std::string_view name);
// What `zorvik-cli --help` prints.
std::string cliOverview();

}  // namespace zorvik
