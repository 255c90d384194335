// zorvik-sim: the simulated instrument as a program of its own, served on a socket.
#include <QCoreApplication>
#include <iostream>
#include <string>
#include <vector>

#include "core/fault.h"
#include "link/device_address.h"
#include "session/command_line.h"
#include "sim/sim_config.h"
#include "sim/sim_stream_server.h"

namespace {

const char kUsage[] =
    "usage: zorvik-sim --listen unix:PATH|tcp:HOST:PORT [--sim KEY=VALUE,...]\n"
    "The simulated Zorvik instrument, served to one program at a time (zorvik --device ADDRESS,\n"
    "zorvik-cli session --device ADDRESS).\n"
    "  --listen unix:PATH     a Unix socket at PATH (a stale socket file there is replaced)\n"
    "  --listen tcp:HOST:PORT a TCP port on HOST (an IP address or localhost; port 0: any free port)\n"
    "  --sim KEY=VALUE,...    the instrument, as zorvik takes it (signal, freq, rate, fault, ...;\n"
    "                         repeatable)\n"
    "  -h, --help             this text\n"
    "  --version              the version\n"
    "Prints \"zorvik-sim: listening on ADDRESS\" when ready, and one line on stderr for each program\n"
    "that connects or goes away.\n";

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv + 1, argv + argc);
  if (const zorvik::InfoRequest request = zorvik::infoRequest(args); request != zorvik::InfoRequest::None) {
    std::cout << (request == zorvik::InfoRequest::Help ? std::string(kUsage)
                                                       : "zorvik-sim " + zorvik::programVersion() + "\n");
    return 0;
  }
  QCoreApplication app(argc, argv);
  std::string listen;
  zorvik::SimConfig config;
  try {
    for (size_t i = 0; i < args.size(); ++i) {
      std::string value;
      if (zorvik::takeValue(args, i, "--listen", value)) {
        listen = value;
      } else if (zorvik::takeValue(args, i, "--sim", value)) {
        zorvik::applySimOptions(config, value);
      } else {
        throw zorvik::Fault("unexpected argument: " + args[i]);
      }
    }
    if (listen.empty()) throw zorvik::Fault("--listen unix:PATH or --listen tcp:HOST:PORT is needed");
    zorvik::SimStreamServer server(config);
    server.onLog = [](const std::string& line) { std::cerr << "zorvik-sim: " << line << std::endl; };
    server.listen(zorvik::parseDeviceAddress(listen, true));
    std::cout << "zorvik-sim: listening on " << server.address() << std::endl;
    return app.exec();
  } catch (const std::exception& e) {
    std::cerr << "zorvik-sim: " << e.what() << "\n";
    return 2;
  }
}
