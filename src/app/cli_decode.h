#pragma once
#include <ostream>
#include <string>
#include <vector>

#include "signal/packet.h"

namespace zorvik {

// zorvik-cli decode FILE: a raw packet or a zrv file (by its magic) as one JSON object.
int runDecodeCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// Reads a whole file as bytes; Fault when it can't be read.
std::string readFileBytes(const std::string& path);

// The packet of a packet or zrv file, decoded; its views point into `packet`. Fault when the file holds
// no packet.
PacketInfo readPacketFile(const std::string& path, std::string& packet);

}  // namespace zorvik
