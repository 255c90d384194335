#include "config/settings_menu.h"

#include <optional>

#include "config/registry.h"
#include "config/run_at_login.h"

namespace zorvik {

namespace {

// Empties a section where the instance's settings keep it, the place the boxes read and write.
int deleteSection(RegistryStore& store, const std::string& settingsName, const char* section) {
  RegistryStore::Transaction t(store);
  std::optional<RegistryStore::KeyId> key =
      store.openKey(HKEY_CURRENT_USER, settingsKeyPath(settingsName) + "\\" + section);
  int deleted = 0;
  if (key)
    for (const RegValue& v : store.values(*key)) deleted += store.deleteValue(*key, v.name) ? 1 : 0;
  t.commit();
  return deleted;
}

MenuOutcome refused() {
  return {MenuAction::Refused, kMustDisconnect};
}

}  // namespace

int RegistryMenuShowAllInfo(RegistryStore& store, const std::string& settingsName) {
  return deleteSection(store, settingsName, "HideInfoWin");
}

int RegistryMenuAskAllQuestions(RegistryStore& store, const std::string& settingsName) {
  return deleteSection(store, settingsName, "HideQuestWin");
}

bool RegistryMenuLoadWithWindowsChecked() {
  return IsRunAtLogin(kRunAtLoginName);
}

bool RegistryMenuToggleLoadWithWindows(bool checked, const std::string& commandLine) {
  bool now = !checked;
  if (now)
    SetRunAtLogin(kRunAtLoginName, commandLine);
  else
    ClearRunAtLogin(kRunAtLoginName);
  return now;
}

MenuOutcome SettingSaveToFile(RegistryStore& store, const std::string& settingsName,
                              const std::string& fileName) {
  SaveAllSettings(store, settingsName, fileName);
  return {};
}

MenuOutcome SettingLoadFromFile(RegistryStore& store, const std::string& fileName, bool online) {
  if (online) return refused();
  if (fileName.empty()) return {};
  LoadAllSettings(store, fileName);
  return {MenuAction::Restart, {}};
}

MenuOutcome SettingResetToDefault(RegistryStore& store, const std::string& settingsName, bool online) {
  if (online) return refused();
  ResetSettings(store, settingsName);
  return {MenuAction::Restart, {}};
}

MenuOutcome Setting_Click(int index, RegistryStore& store, const std::string& settingsName,
                          const std::string& fileName, bool online) {
  switch (index) {
    case 0:
      return SettingSaveToFile(store, settingsName, fileName);
    case 1:
      return SettingLoadFromFile(store, fileName, online);
    case 2:
      return SettingResetToDefault(store, settingsName, online);
    default:
      return {};
  }
}

}  // namespace zorvik
