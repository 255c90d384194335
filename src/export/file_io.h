#pragma once
#include <cstddef>
#include <string>
#include <string_view>

#include "core/file_write.h"

namespace zorvik {

// Paths are byte strings, handed to the system unchanged.

// True for a regular file (links followed); false for a folder, a device or nothing at all.
bool isExistingFile(const std::string& path);

// The whole file; Fault when it can't be read or is longer than maxBytes.
std::string readWholeFile(const std::string& path, size_t maxBytes);

}  // namespace zorvik
