#pragma once
#include <cstdint>
#include <string>

#include "config/registry_store.h"

namespace zorvik {

// Company and product fields of the program's version record; they name the settings tree.
constexpr const char* kCompanyName = "Zorvik";
constexpr const char* kProductName = "Zorvik DSO";
// Where earlier versions kept their settings, inside the same store.
constexpr const char* kLegacySettingsPath = "Software\\VB and VBA Program Settings";

// "Zorvik DSO1" or "Zorvik DSO2".
std::string settingsNameFor(int instance);
// "Software\Zorvik\<settingsName>", under HKEY_CURRENT_USER.
std::string settingsKeyPath(const std::string& settingsName);
// A new private file for the migration in the temporary directory (made only when there is something
// to move).
std::string legacyMigrationFile();

// A type 1 value's text; the default for a missing key or value, another type, an empty text, or a
// store that can't be read.
std::string RegGetKeyValue(RegistryStore& store, std::uint32_t root, const std::string& path,
                           const std::string& name, const std::string& def);
// Writes a type 1 value, an empty text as one blank; a failure throws RegWriteError.
void RegSetKeyValue(RegistryStore& store, std::uint32_t root, const std::string& path,
                    const std::string& name, const std::string& value);

std::string GetSettingValue(RegistryStore& store, const std::string& settingsName, const std::string& section,
                            const std::string& name, const std::string& def);
void SaveSettingValue(RegistryStore& store, const std::string& settingsName, const std::string& section,
                      const std::string& name, const std::string& value);

// A type 4 value (four bytes, least significant first), else the default.
std::uint32_t RegGetDword(RegistryStore& store, std::uint32_t root, const std::string& path,
                          const std::string& name, std::uint32_t def);

// Deletes every subkey of `path\settingsName` with all it holds; the key itself and its own values
// stay. Nothing happens when the key is absent.
void RegDeleteTree(RegistryStore& store, std::uint32_t root, const std::string& path,
                   const std::string& settingsName);

// The tree of one instance to and from a REG file, and back to the defaults.
bool SaveAllSettings(RegistryStore& store, const std::string& settingsName, const std::string& fileName);
bool LoadAllSettings(RegistryStore& store, const std::string& fileName);
void ResetSettings(RegistryStore& store, const std::string& settingsName);

// Moves the tree of earlier versions into the present location through a REG file, all in one
// transaction, through `migrationFile` or else a new private file. Silent: any failure leaves the store as it
// was and returns false; true when moved.
bool MigrateLegacySettings(RegistryStore& store, const std::string& settingsName,
                           std::string migrationFile = {});

}  // namespace zorvik
