#include "config/reg_file.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <optional>
#include <vector>

#include "config/reg_format.h"
#include "config/reg_parse.h"
#include "config/registry_errors.h"
#include "core/file_read.h"
#include "core/file_write.h"

namespace zorvik {

namespace {

constexpr const char* kCrLf = "\r\n";

std::string joinPath(const std::string& a, const std::string& b) {
  return a.empty() ? b : a + "\\" + b;
}

// Pre-order walk with an explicit stack, so that no depth of nesting can exhaust the call stack.
void exportKey(RegistryStore& store, std::string& out, std::uint32_t root, const std::string& keyPath,
               const std::string& shownPath) {
  std::optional<RegistryStore::KeyId> start = store.openKey(root, keyPath);
  if (!start) return;
  struct Pending {
    RegistryStore::KeyId id;
    std::string keyPath;
    std::string shownPath;
  };
  std::vector<Pending> stack{{*start, keyPath, shownPath}};
  while (!stack.empty()) {
    Pending k = std::move(stack.back());
    stack.pop_back();
    out += regKeyLine(root, k.shownPath.empty() ? k.keyPath : k.shownPath) + kCrLf;
    for (const RegValue& v : store.values(k.id)) out += regValueLine(v) + kCrLf;
    out += kCrLf;
    auto subkeys = store.subkeys(k.id);
    for (auto it = subkeys.rbegin(); it != subkeys.rend(); ++it)
      stack.push_back({it->first, joinPath(k.keyPath, it->second),
                       k.shownPath.empty() ? std::string() : joinPath(k.shownPath, it->second)});
  }
}

// Settings files are a few kilobytes; far beyond that is no settings file.
constexpr size_t kRegMaxBytes = 64u << 20;

std::string readBytes(const std::string& fileName) {
  return readFileBounded(fileName, kRegMaxBytes, "REG file");
}

void writeBytes(const std::string& fileName, const std::string& bytes) {
  writeFileReplacing(fileName, bytes);  // the old file stays whole until the new one is complete
}

bool isHeader(const std::string& line) {
  return line == "REGEDIT4" || line.find("Windows Registry Editor Version") != std::string::npos;
}

}  // namespace

bool ExportRegFile(RegistryStore& store, const std::string& fileName, std::uint32_t root,
                   const std::string& keyPath, const std::string& shownPath) {
  if (fileName.empty()) return false;
  std::string out = std::string("REGEDIT4") + kCrLf + kCrLf;
  {
    RegistryStore::Transaction snapshot(store, RegistryStore::Transaction::Mode::Read);
    exportKey(store, out, root, keyPath, shownPath);
    snapshot.commit();
  }
  writeBytes(fileName, out);
  return true;
}

bool ImportRegFile(RegistryStore& store, const std::string& fileName) {
  std::string text = readBytes(fileName);
  RegLineReader file(text);
  std::string line;
  if (!file.next(line) || !isHeader(line)) throw RegFileError(RegFileError::kInvalidFormat, fileName, 1);

  RegistryStore::Transaction transaction(store);
  std::optional<RegistryStore::KeyId> key;
  while (file.next(line)) {
    if (line.empty()) continue;
    int at = file.lineNumber();
    RegLine r = ParseRegLine(line, file);
    if (r.type == 0) throw RegFileError(RegFileError::kInvalidFormat, fileName, at);
    if (r.type == kRegKeyLine) {
      std::uint32_t root = 0;
      std::from_chars(r.data.data(), r.data.data() + r.data.size(), root);
      key = store.createKey(root, r.name);
      continue;
    }
    bool stored = r.type == 1 || r.type == 2 || r.type == 3 || r.type == 4 || r.type == 7 || r.type == 11;
    if (!stored) continue;
    if (!key) throw RegFileError(RegFileError::kValueWithoutKey, fileName, at);
    const std::string& data = r.type == 1 ? r.data : r.type == 4 ? regDwordImportData(r.data) : r.bytes;
    store.setValue(*key, r.name, static_cast<std::uint32_t>(r.type), data);
  }
  transaction.commit();
  return true;
}

}  // namespace zorvik
