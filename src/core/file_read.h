#pragma once
#include <cstddef>
#include <string>

namespace zorvik {

// The whole of a regular file of at most maxBytes bytes. The name goes to the system as the bytes it
// holds, never through a text conversion. A FIFO, a device or a folder is refused at once, without
// waiting for a writer; a file whose size is above the limit is refused before a byte is read, and one
// that grows past it while being read stops at the limit. Fault naming `what` and the file, with the
// system's reason, or "is a directory", "is not a regular file", "is larger than N bytes".
std::string readFileBounded(const std::string& path, size_t maxBytes, const char* what);

}  // namespace zorvik
