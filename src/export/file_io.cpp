#include "export/file_io.h"

#include <sys/stat.h>

#include "core/fault.h"
#include "core/file_read.h"

namespace zorvik {

bool isExistingFile(const std::string& path) {
  struct stat st {};
  return !path.empty() && ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

std::string readWholeFile(const std::string& path, size_t maxBytes) {
  return readFileBounded(path, maxBytes, "file");
}

}  // namespace zorvik
