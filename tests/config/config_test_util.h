#pragma once
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "config/registry_store.h"

namespace zorvik::test {

// A fresh directory under the system's temporary folder, removed with everything in it.
class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zorvik-cfg-XXXXXX").string();
    path_ = mkdtemp(pattern.data()) != nullptr ? pattern : std::string();
  }
  ~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  std::string file(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

inline void writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

// Every key below (and including) root\path with its values in enumeration order, as one text.
inline std::string dumpTree(RegistryStore& store, std::uint32_t root, const std::string& path) {
  std::string out;
  auto walk = [&](auto& self, RegistryStore::KeyId key, const std::string& at) -> void {
    out += "[" + at + "]\n";
    for (const RegValue& v : store.values(key))
      out += v.name + "|" + std::to_string(v.type) + "|" + v.data + "\n";
    for (const auto& [id, name] : store.subkeys(key)) self(self, id, at + "\\" + name);
  };
  if (auto key = store.openKey(root, path)) walk(walk, *key, path);
  return out;
}

}  // namespace zorvik::test
