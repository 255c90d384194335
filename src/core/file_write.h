#pragma once
#include <string>
#include <string_view>

namespace zorvik {

// Paths are byte strings handed to the system unchanged, so any name the system allows round-trips.

// Writes the whole file through a temporary file created exclusively beside the target (mode from the
// umask, or that of the file it replaces), every byte counted, flushed to the disk, then renamed over the
// target in one step: a failure anywhere leaves the earlier file as it was and removes the temporary file. A
// target that exists and is not a regular file (a device, a FIFO, a folder) is refused; a symbolic link is
// written through to its target, never replaced. Fault naming the file and the system's reason when it can't
// be done.
void writeFileReplacing(const std::string& path, std::string_view bytes);

// A new empty file only this user may read, created exclusively in `folder` (never a fixed name in a
// shared folder); its path. Fault when it can't be made.
std::string makePrivateFile(const std::string& folder, const std::string& prefix);

}  // namespace zorvik
