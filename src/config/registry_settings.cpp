#include "config/registry_settings.h"

#include <utility>

#include "config/registry.h"

namespace zorvik {

RegistrySettings::RegistrySettings(RegistryStore& store, std::string settingsName)
    : store_(store), settingsName_(std::move(settingsName)) {}

std::string RegistrySettings::GetSettingValue(const std::string& section, const std::string& name,
                                              const std::string& def) {
  return zorvik::GetSettingValue(store_, settingsName_, section, name, def);
}

void RegistrySettings::SaveSettingValue(const std::string& section, const std::string& name,
                                        const std::string& value) {
  zorvik::SaveSettingValue(store_, settingsName_, section, name, value);
}

}  // namespace zorvik
