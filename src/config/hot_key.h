#pragma once
#include <map>
#include <string>

namespace zorvik {

class MessageSink;
class SettingsStore;

constexpr const char* kHotKeyOccupiedQuestion = "You hotkey occupied, setup another hotkey?";
constexpr const char* kHotKeyErrorTitle = "Error";

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

// The keys the program's windows hold: one window a key, and a key held by one window only, as the
// platform keeps its window keys.
class HotKeyTable {
 public:
  enum class Outcome {
    Cleared,   // not a key: the window holds none now
    Given,     // the window holds this key, in place of any it held
    Occupied,  // another window holds it: nothing changed
  };
  Outcome give(const std::string& window, const HotKeyValue& key);
  void release(const std::string& window) { held_.erase(window); }
  // The window that holds the key; empty when it is free.
  std::string holder(const HotKeyValue& key) const;

 private:
  std::map<std::string, int> held_;
};

// The stored key of `window` given to it. When another window holds it the user is asked to set up
// another; true when he wants the dialog for that.
HotKeyTable::Outcome giveStoredHotKey(HotKeyTable& table, SettingsStore& settings, MessageSink& messages,
                                      const std::string& window, bool& wantsSetup);
// The key chosen in the dialog: stored, then given. When another window holds it a critical box says
// which, and the dialog is meant to stay.
HotKeyTable::Outcome giveChosenHotKey(HotKeyTable& table, SettingsStore& settings, MessageSink& messages,
                                      const std::string& window, const HotKeyValue& key);

}  // namespace zorvik
