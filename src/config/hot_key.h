#pragma once
#include <string>

namespace zorvik {

class SettingsStore;

// A window's activation key as stored in "Windows Hot Keys": the modifier (1 Shift, 2 Ctl, 4 Alt) in
// the high byte, the upper-case character in the low byte.
struct HotKeyValue {
  int modifier = 0;
  char symbol = 0;
  int value() const { return modifier * 256 + static_cast<unsigned char>(symbol); }
  // Only 257 to 1279 name a key: a modifier with a character.
  bool registrable() const { return value() >= 257 && value() <= 1279; }
};

HotKeyValue hotKeyFromValue(int value);
HotKeyValue readHotKey(SettingsStore& settings, const std::string& windowName);
void saveHotKey(SettingsStore& settings, const std::string& windowName, const HotKeyValue& key);
// The typed symbol: its first character in upper case.
char hotKeySymbol(const std::string& typed);

}  // namespace zorvik
