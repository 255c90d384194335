#pragma once
#include <cstdint>
#include <string>

#include "config/registry_store.h"

namespace zorvik {

// Writes "REGEDIT4", an empty line and the key `keyPath` of `root` with everything below it, the key
// lines naming `shownPath` in place of `keyPath` when it is not empty. An empty file name writes
// nothing and returns false; a key that can't be opened leaves the header alone. A file that can't
// be written throws Fault.
bool ExportRegFile(RegistryStore& store, const std::string& fileName, std::uint32_t root,
                   const std::string& keyPath, const std::string& shownPath);

// Reads a REG file into the store, all of it in one transaction: on any failure the store stays as it
// was. A malformed file throws RegFileError (failure 321); a file that can't be read throws Fault.
// Returns true at the end of a complete file.
bool ImportRegFile(RegistryStore& store, const std::string& fileName);

}  // namespace zorvik
