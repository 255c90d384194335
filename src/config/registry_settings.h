#pragma once
#include <string>

#include "config/registry_store.h"
#include "config/settings.h"

namespace zorvik {

// The persistent settings of one instance: every read and write goes to the store at once, under
// HKEY_CURRENT_USER\Software\<CompanyName>\<settingsName>\<section>. A write that fails throws
// RegWriteError; a read that fails gives the default.
class RegistrySettings : public SettingsStore {
 public:
  RegistrySettings(RegistryStore& store, std::string settingsName);

  std::string GetSettingValue(const std::string& section, const std::string& name,
                              const std::string& def) override;
  void SaveSettingValue(const std::string& section, const std::string& name,
                        const std::string& value) override;

  RegistryStore& store() { return store_; }
  const std::string& settingsName() const { return settingsName_; }

 private:
  RegistryStore& store_;
  std::string settingsName_;
};

}  // namespace zorvik
