// zorvik-cli: the headless tool over the same core as the window.
#include <QCoreApplication>
#include <iostream>
#include <string>
#include <vector>

#include "app/cli_decode.h"
#include "app/cli_files.h"
#include "app/cli_session.h"
#include "app/cli_settings.h"
#include "core/fault.h"

namespace {

int usage(std::ostream& out) {
  out << "usage: zorvik-cli <command> [options]\n"
         "  decode FILE                       decode a packet or zrv file\n"
         "  session [--sim K=V,...] [--packets N] [--single] [--timeout S] [--set SECTION/NAME=VALUE]\n"
         "  csv FILE --out OUT.csv             the packet CSV of a packet or zrv file\n"
         "  sim --packets N --out DIR [--sim K=V,...] [--set SECTION/NAME=VALUE]\n"
         "  settings [--instance 1|2] set SECTION/NAME=VALUE... | get SECTION/NAME | export FILE | import FILE | reset\n";
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  std::vector<std::string> args(argv + 1, argv + argc);
  if (args.empty() || args[0] == "--help" || args[0] == "-h") return usage(args.empty() ? std::cerr : std::cout);
  std::string command = args[0];
  args.erase(args.begin());
  try {
    if (command == "decode") return zorvik::runDecodeCommand(args, std::cout, std::cerr);
    if (command == "session") return zorvik::runSessionCommand(args, std::cout, std::cerr);
    if (command == "csv") return zorvik::runCsvCommand(args, std::cout, std::cerr);
    if (command == "sim") return zorvik::runSimCommand(args, std::cout, std::cerr);
    if (command == "settings") return zorvik::runSettingsCommand(args, std::cout, std::cerr);
    std::cerr << "zorvik-cli: unknown command: " << command << "\n";
    return 2;
  } catch (const std::exception& e) {
    std::cerr << "zorvik-cli: " << e.what() << "\n";
    return 2;
  }
}
