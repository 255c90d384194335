#include "config/hot_key.h"

#include <cctype>

#include "config/settings.h"
#include "core/messages.h"

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

HotKeyTable::Outcome HotKeyTable::give(const std::string& window, const HotKeyValue& key) {
  if (!key.registrable()) {
    release(window);
    return Outcome::Cleared;
  }
  const std::string other = holder(key);
  if (!other.empty() && other != window) return Outcome::Occupied;
  held_[window] = key.value();
  return Outcome::Given;
}

std::string HotKeyTable::holder(const HotKeyValue& key) const {
  for (const auto& [window, value] : held_)
    if (value == key.value()) return window;
  return {};
}

HotKeyTable::Outcome giveStoredHotKey(HotKeyTable& table, SettingsStore& settings, MessageSink& messages,
                                      const std::string& window, bool& wantsSetup) {
  const HotKeyTable::Outcome out = table.give(window, readHotKey(settings, window));
  wantsSetup = out == HotKeyTable::Outcome::Occupied &&
               messages.show(BoxKind::Question, kHotKeyErrorTitle, kHotKeyOccupiedQuestion) == kAnswerYes;
  return out;
}

HotKeyTable::Outcome giveChosenHotKey(HotKeyTable& table, SettingsStore& settings, MessageSink& messages,
                                      const std::string& window, const HotKeyValue& key) {
  saveHotKey(settings, window, key);
  const std::string other = key.registrable() ? table.holder(key) : std::string();
  const HotKeyTable::Outcome out = table.give(window, key);
  if (out == HotKeyTable::Outcome::Occupied)
    messages.show(BoxKind::Critical, kHotKeyErrorTitle,
                  "This hot key is occupied by the " + other + " window. Choose another one.");
  return out;
}

}  // namespace zorvik
