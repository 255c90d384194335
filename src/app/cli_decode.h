#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace zorvik {

// zorvik-cli decode FILE: a raw packet or a zrv file (by its magic) as one JSON object.
int runDecodeCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// Reads a whole file as bytes; Fault when it can't be read.
std::string readFileBytes(const std::string& path);

}  // namespace zorvik
