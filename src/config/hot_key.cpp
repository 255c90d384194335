#include "config/hot_key.h"

#include <cctype>

#include "config/settings.h"

namespace zorvik {

namespace {
constexpr char kSection[] = "Windows Hot Keys";
}  // namespace

HotKeyValue hotKeyFromValue(int value) {
  if (value < 0 || value > 0xFFFF) return {};
  return {value / 256, static_cast<char>(value % 256)};
}

HotKeyValue readHotKey(SettingsStore& settings, const std::string& windowName) {
  return hotKeyFromValue(settings.getInt(kSection, windowName));
}

void saveHotKey(SettingsStore& settings, const std::string& windowName, const HotKeyValue& key) {
  settings.saveInt(kSection, windowName, key.value());
}

char hotKeySymbol(const std::string& typed) {
  if (typed.empty()) return 0;
  return static_cast<char>(std::toupper(static_cast<unsigned char>(typed[0])));
}

}  // namespace zorvik
