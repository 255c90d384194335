#include "config/settings.h"

#include "config/text_number.h"

namespace zorvik {

int SettingsStore::getInt(const std::string& section, const std::string& name, int def) {
  double v = textToNumber(GetSettingValue(section, name, std::to_string(def)), def);
  // A stored value past the int range is no number this program wrote: fall back to the default.
  if (!(v >= -2147483648.0 && v <= 2147483647.0)) return def;
  return static_cast<int>(v);
}

bool SettingsStore::getBool(const std::string& section, const std::string& name, bool def) {
  return textToBool(GetSettingValue(section, name, def ? "True" : "False"), def);
}

void SettingsStore::saveInt(const std::string& section, const std::string& name, long long value) {
  SaveSettingValue(section, name, std::to_string(value));
}

void SettingsStore::saveBool(const std::string& section, const std::string& name, bool value) {
  SaveSettingValue(section, name, value ? "True" : "False");
}

std::string MemorySettings::GetSettingValue(const std::string& section, const std::string& name,
                                            const std::string& def) {
  auto it = values_.find({section, name});
  if (it == values_.end() || it->second.empty()) return def;
  return it->second;
}

void MemorySettings::SaveSettingValue(const std::string& section, const std::string& name,
                                      const std::string& value) {
  // An empty text would read back as the default, so it is kept as one blank.
  values_[{section, name}] = value.empty() ? std::string(" ") : value;
}

}  // namespace zorvik
