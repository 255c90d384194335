#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli csv FILE --out OUT.csv: a raw packet or a zrv file (by its magic) as the packet CSV, byte
// for byte what "Save last packet: CSV file" writes. Prints nothing; exit 2 with one line on err.
int runCsvCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// zorvik-cli sim --packets N --out DIR [--timeout S] [--sim K=V,...] [--set SECTION/NAME=VALUE]: a session
// against the simulated instrument, N single acquisitions, each saved as DIR/0001.zrv, DIR/0002.zrv, ...
// with its SamplesPerDiv exactly as "Save last packet: binary file" writes it. Prints a JSON summary;
// exit 2 with one line on err when something is wrong or not all packets arrived.
int runSimCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zorvik
