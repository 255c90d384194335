#pragma once
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "signal/packet.h"

namespace zorvik {

// zorvik-cli decode FILE: a raw packet or a zrv file (by its magic) as one JSON object.
int runDecodeCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// The bytes of a packet or zrv file; Fault when it can't be read or is longer than any such file, and
// "This is not zorvik file" when a name ending in ".zrv" lacks the magic.
std::string readPacketBytes(const std::string& path);

// The packet decoded; Fault naming the file when it is too short to be one (the window ignores it).
PacketInfo requirePacket(const std::string& path, std::string_view packet);

// The packet of a packet or zrv file, decoded; its views point into `packet`. Fault when the file holds
// no packet.
PacketInfo readPacketFile(const std::string& path, std::string& packet);

// The scale a packet file doesn't hold, from --volts-per-div V, --zero V and --sample-period S (0.2 V a
// division at 0 V and 1 us a sample unless given). True when args[i] was one of them.
struct ScaleOptions {
  double voltsPerDiv = 0.2, zero = 0, samplePeriod = 1e-6;
};
bool takeScaleOption(const std::vector<std::string>& args, size_t& i, ScaleOptions& scale);
// A word that is no known option: the one file; an unknown option or a second file is a fault.
void takeFileArgument(const std::string& word, std::string& file, const char* usage);

}  // namespace zorvik
