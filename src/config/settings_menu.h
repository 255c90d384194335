#pragma once
#include <string>

#include "config/registry_store.h"

namespace zorvik {

// Captions of the menus RegistryMenu (1, 2, 3, 5) and Setting (0, 1, 2).
constexpr const char* kShowAllInfoCaption = "Show all info message";
constexpr const char* kAskAllQuestionsCaption = "Ask all questions";
constexpr const char* kAllSettingCaption = "All setting";
constexpr const char* kLoadWithWindowsCaption = "Load with Windows";
constexpr const char* kSaveToFileCaption = "Save to file";
constexpr const char* kLoadFromFileCaption = "Load from file";
constexpr const char* kResetToDefaultCaption = "Reset to default";

// The file dialogs of Setting 0 and 1.
constexpr const char* kSettingFileDescription = "Zorvik setting (*.reg)";
constexpr const char* kSettingFilePattern = "*.reg";
constexpr const char* kSettingFileExtension = "reg";
constexpr const char* kSaveSettingCategory = "Save All Setting to file";
constexpr const char* kRestoreSettingCategory = "Restore Setting from file";

// The information box that refuses Setting 1 and 2 while a session is online.
constexpr const char* kMustDisconnect = "You must disconnect before.";

enum class MenuAction {
  None,     // done, or nothing to do
  Refused,  // show `message` in an information box
  Restart,  // start the program again with the argument "first", then unload the main window
};
struct MenuOutcome {
  MenuAction action = MenuAction::None;
  std::string message;
};

// RegistryMenu 1 and 2: delete every value of "HideInfoWin" or "HideQuestWin" of the instance, where its
// settings keep them, so that silenced information boxes show again and remembered answers are asked
// again. Returns how many values went.
int RegistryMenuShowAllInfo(RegistryStore& store, const std::string& settingsName);
int RegistryMenuAskAllQuestions(RegistryStore& store, const std::string& settingsName);

// RegistryMenu 5: the mark when the menu opens, and a click that toggles it (returns the new mark).
bool RegistryMenuLoadWithWindowsChecked();
bool RegistryMenuToggleLoadWithWindows(bool checked, const std::string& commandLine);

// Setting 0: save the tree to the file (an empty name, a cancelled dialog, does nothing).
MenuOutcome SettingSaveToFile(RegistryStore& store, const std::string& settingsName,
                              const std::string& fileName);
// Setting 1: refused while online; else import the file and restart (an empty name does nothing).
// A malformed file throws RegFileError and leaves the store as it was.
MenuOutcome SettingLoadFromFile(RegistryStore& store, const std::string& fileName, bool online);
// Setting 2: refused while online; else delete the tree and restart.
MenuOutcome SettingResetToDefault(RegistryStore& store, const std::string& settingsName, bool online);

// Setting by its menu index 0, 1 or 2.
MenuOutcome Setting_Click(int index, RegistryStore& store, const std::string& settingsName,
                          const std::string& fileName, bool online);

}  // namespace zorvik
