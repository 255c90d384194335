#pragma once
#include <cstddef>
#include <string>
#include <string_view>

namespace zorvik {

// Paths are UTF-8 byte strings, as the dialogs and the command line give them.

// Writes the whole file through a temporary file beside it and one rename, so that the old file stays
// as it was until the new one is complete: a failure anywhere leaves an earlier file intact, and a
// shorter file never keeps old bytes. Fault with the reason when it can't be done (also for an empty
// name, a missing folder, or an existing file that may not be written).
void writeFileReplacing(const std::string& path, std::string_view bytes);

// True for a regular file (links followed); false for a folder, a device or nothing at all.
bool isExistingFile(const std::string& path);

// The whole file; Fault when it can't be read or is longer than maxBytes.
std::string readWholeFile(const std::string& path, size_t maxBytes);

}  // namespace zorvik
