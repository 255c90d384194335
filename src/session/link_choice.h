#pragma once
#include <memory>
#include <string>
#include <vector>

#include "link/class_obex.h"

namespace zorvik {

class StreamObex;

// The link a program runs on: the instrument served at `device` (unix:PATH or tcp:HOST:PORT) when one
// is named, else the simulated instrument in this process with the --sim options. Throws Fault for a
// bad option or address, and for --sim together with --device (the served instrument takes its
// options where it runs).
std::unique_ptr<ClassOBEX> makeLink(const std::vector<std::string>& simOptions, const std::string& device);

// The stream link behind `link`, if that is one (its errors are for the front end to show).
StreamObex* streamLink(ClassOBEX* link);

}  // namespace zorvik
