#include "config/registry.h"

#include <filesystem>
#include <optional>

#include "config/reg_file.h"
#include "config/registry_errors.h"
#include "core/file_write.h"

namespace zorvik {

std::string settingsNameFor(int instance) {
  return std::string(kProductName) + (instance == 2 ? "2" : "1");
}

std::string settingsKeyPath(const std::string& settingsName) {
  return std::string("Software\\") + kCompanyName + "\\" + settingsName;
}

std::string legacyMigrationFile() {
  std::error_code ec;
  std::filesystem::path dir = std::filesystem::temp_directory_path(ec);
  if (ec) dir = "/tmp";
  // A fresh name made exclusively: a link planted under a fixed name can't redirect the write.
  return makePrivateFile(dir.string(), "zorvik-migration");
}

std::string RegGetKeyValue(RegistryStore& store, std::uint32_t root, const std::string& path,
                           const std::string& name, const std::string& def) {
  std::optional<RegValue> v;
  try {
    v = store.getValue(root, path, name);
  } catch (const StoreError&) {
    return def;  // a store that can't be read leaves every setting at its default
  }
  if (!v || v->type != kRegString) return def;
  std::string text = std::move(v->data);
  if (!text.empty() && text.back() == '\0') text.pop_back();
  return text.empty() ? def : text;
}

void RegSetKeyValue(RegistryStore& store, std::uint32_t root, const std::string& path,
                    const std::string& name, const std::string& value) {
  // An empty text would read back as the default.
  const std::string& text = value.empty() ? std::string(" ") : value;
  try {
    store.setValue(root, path, name, kRegString, text);
  } catch (const StoreError& e) {
    throw RegWriteError(e.code(), e.message());
  }
}

std::string GetSettingValue(RegistryStore& store, const std::string& settingsName, const std::string& section,
                            const std::string& name, const std::string& def) {
  return RegGetKeyValue(store, HKEY_CURRENT_USER, settingsKeyPath(settingsName) + "\\" + section, name, def);
}

void SaveSettingValue(RegistryStore& store, const std::string& settingsName, const std::string& section,
                      const std::string& name, const std::string& value) {
  RegSetKeyValue(store, HKEY_CURRENT_USER, settingsKeyPath(settingsName) + "\\" + section, name, value);
}

std::uint32_t RegGetDword(RegistryStore& store, std::uint32_t root, const std::string& path,
                          const std::string& name, std::uint32_t def) {
  std::optional<RegValue> v;
  try {
    v = store.getValue(root, path, name);
  } catch (const StoreError&) {
    return def;
  }
  if (!v || v->type != kRegDword) return def;
  std::uint32_t n = 0;
  for (int i = 3; i >= 0; --i)
    n = (n << 8) |
        (static_cast<std::size_t>(i) < v->data.size() ? static_cast<unsigned char>(v->data[i]) : 0u);
  return n;
}

void RegDeleteTree(RegistryStore& store, std::uint32_t root, const std::string& path,
                   const std::string& settingsName) {
  RegistryStore::Transaction t(store);
  std::optional<RegistryStore::KeyId> key = store.openKey(root, path + "\\" + settingsName);
  if (key)
    for (const auto& sub : store.subkeys(*key)) store.deleteKey(sub.first);
  t.commit();
}

bool SaveAllSettings(RegistryStore& store, const std::string& settingsName, const std::string& fileName) {
  return ExportRegFile(store, fileName, HKEY_CURRENT_USER, settingsKeyPath(settingsName), "");
}

bool LoadAllSettings(RegistryStore& store, const std::string& fileName) {
  return ImportRegFile(store, fileName);
}

void ResetSettings(RegistryStore& store, const std::string& settingsName) {
  RegDeleteTree(store, HKEY_CURRENT_USER, std::string("Software\\") + kCompanyName, settingsName);
}

bool MigrateLegacySettings(RegistryStore& store, const std::string& settingsName, std::string migrationFile) {
  const std::string legacy = std::string(kLegacySettingsPath) + "\\" + settingsName;
  try {
    if (!store.openKey(HKEY_CURRENT_USER, legacy)) return false;
    if (migrationFile.empty()) migrationFile = legacyMigrationFile();
    // Holding the write lock throughout also keeps a second instance off the shared file.
    RegistryStore::Transaction t(store);
    if (!store.openKey(HKEY_CURRENT_USER, legacy)) return false;
    ExportRegFile(store, migrationFile, HKEY_CURRENT_USER, legacy, settingsKeyPath(settingsName));
    ImportRegFile(store, migrationFile);
    RegDeleteTree(store, HKEY_CURRENT_USER, kLegacySettingsPath, settingsName);
    std::filesystem::remove(migrationFile);
    t.commit();
    return true;
  } catch (const std::exception&) {
    std::error_code ec;
    std::filesystem::remove(migrationFile, ec);
    return false;
  }
}

}  // namespace zorvik
