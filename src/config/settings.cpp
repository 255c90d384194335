#include "config/settings.h"

#include <charconv>

#include "config/catalogue.h"
#include "config/text_number.h"
#include "core/fault.h"

namespace zorvik {

namespace {

const CatalogueEntry& knownEntry(const std::string& section, const std::string& name) {
  const CatalogueEntry* e = findCatalogueEntry(section, name);
  if (e == nullptr) throw Fault("No setting \"" + name + "\" in section \"" + section + "\" is known");
  return *e;
}

// The text of a number default as the store would hold it: the shortest that reads back the same.
std::string numberText(double v) {
  char buf[32];
  auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v);
  return ec == std::errc() ? std::string(buf, end) : std::string("0");
}

int toInt(const std::string& text, int def) {
  double v = textToNumber(text, def);
  // A stored value past the int range is no number this program wrote: fall back to the default.
  if (!(v >= -2147483648.0 && v <= 2147483647.0)) return def;
  return static_cast<int>(v);
}

}  // namespace

std::string SettingsStore::getText(const std::string& section, const std::string& name) {
  const CatalogueEntry& e = knownEntry(section, name);
  if (e.rule == DefaultRule::Reader || e.rule == DefaultRule::WrittenOnly)
    throw Fault("The setting \"" + name + "\" of section \"" + section +
                "\" has no default of its own: its reader gives one");
  return GetSettingValue(section, name, catalogueDefault(section, name, cpuMHz_));
}

int SettingsStore::getInt(const std::string& section, const std::string& name) {
  // The default's text is read back by the same rule, so a stored text that makes no number gives it.
  const std::string text = getText(section, name);
  return toInt(text, toInt(catalogueDefault(section, name, cpuMHz_), 0));
}

bool SettingsStore::getBool(const std::string& section, const std::string& name) {
  const std::string text = getText(section, name);
  return textToBool(text, textToBool(catalogueDefault(section, name, cpuMHz_), false));
}

double SettingsStore::getDouble(const std::string& section, const std::string& name) {
  const std::string text = getText(section, name);
  return textToNumber(text, textToNumber(catalogueDefault(section, name, cpuMHz_), 0));
}

int SettingsStore::getInt(const std::string& section, const std::string& name, int computedDefault) {
  knownEntry(section, name);
  return toInt(GetSettingValue(section, name, std::to_string(computedDefault)), computedDefault);
}

bool SettingsStore::getBool(const std::string& section, const std::string& name, bool computedDefault) {
  knownEntry(section, name);
  return textToBool(GetSettingValue(section, name, computedDefault ? "True" : "False"), computedDefault);
}

double SettingsStore::getDouble(const std::string& section, const std::string& name, double computedDefault) {
  knownEntry(section, name);
  return textToNumber(GetSettingValue(section, name, numberText(computedDefault)), computedDefault);
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
