#include "config/settings_menu.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "config/registry.h"
#include "config/registry_errors.h"
#include "config/registry_settings.h"
#include "config/run_at_login.h"
#include "config_test_util.h"
#include "core/messages.h"

namespace zorvik {
namespace {

using test::TempDir;

class SettingsMenu : public ::testing::Test {
 protected:
  TempDir dir;
  RegistryStore store{dir.file("r.sqlite")};
  void SetUp() override { SaveSettingValue(store, "Zorvik DSO1", "View", "Color", "3"); }
};

TEST_F(SettingsMenu, LoadAndResetAreRefusedWhileOnline) {
  ASSERT_TRUE(SaveAllSettings(store, "Zorvik DSO1", dir.file("all.reg")));
  for (int index : {1, 2}) {
    MenuOutcome o = Setting_Click(index, store, "Zorvik DSO1", dir.file("all.reg"), true);
    EXPECT_EQ(o.action, MenuAction::Refused);
    EXPECT_EQ(o.message, "You must disconnect before.");
  }
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "View", "Color", "0"), "3");
}

TEST_F(SettingsMenu, SaveLoadAndResetOffline) {
  EXPECT_EQ(Setting_Click(0, store, "Zorvik DSO1", dir.file("all.reg"), true).action, MenuAction::None);
  EXPECT_EQ(test::readFile(dir.file("all.reg")),
            "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Zorvik\\Zorvik DSO1]\r\n\r\n"
            "[HKEY_CURRENT_USER\\Software\\Zorvik\\Zorvik DSO1\\View]\r\n\"Color\"=\"3\"\r\n\r\n");
  EXPECT_EQ(Setting_Click(2, store, "Zorvik DSO1", "", false).action, MenuAction::Restart);
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "View", "Color", "0"), "0");
  EXPECT_EQ(Setting_Click(1, store, "Zorvik DSO1", "", false).action, MenuAction::None);  // dialog cancelled
  EXPECT_EQ(Setting_Click(1, store, "Zorvik DSO1", dir.file("all.reg"), false).action, MenuAction::Restart);
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "View", "Color", "0"), "3");

  test::writeFile(dir.file("bad.reg"), "REGEDIT4\r\n\"Color\"=\"9\"\r\n");
  EXPECT_THROW(Setting_Click(1, store, "Zorvik DSO1", dir.file("bad.reg"), false), RegFileError);
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "View", "Color", "0"), "3");
}

TEST_F(SettingsMenu, ShowAllInfoAndAskAllQuestionsBringSilencedBoxesBack) {
  // Silenced and answered for good as the boxes do it: through the instance's settings.
  RegistrySettings boxes(store, "Zorvik DSO1");
  boxes.saveBool("HideInfoWin", "CsvFileWrited", true);
  boxes.saveBool("HideInfoWin", "BinFileWrited", true);
  boxes.saveInt("HideQuestWin", "ViewAnimGIF", kAnswerYes);
  SaveSettingValue(store, "Zorvik DSO2", "HideInfoWin", "CsvFileWrited", "True");

  EXPECT_EQ(RegistryMenuShowAllInfo(store, "Zorvik DSO1"), 2);
  EXPECT_FALSE(boxes.getBool("HideInfoWin", "CsvFileWrited"));
  EXPECT_FALSE(boxes.getBool("HideInfoWin", "BinFileWrited"));
  EXPECT_EQ(boxes.getInt("HideQuestWin", "ViewAnimGIF"), kAnswerYes);
  EXPECT_EQ(RegistryMenuAskAllQuestions(store, "Zorvik DSO1"), 1);
  EXPECT_EQ(boxes.getInt("HideQuestWin", "ViewAnimGIF"), 0);
  EXPECT_EQ(RegistryMenuAskAllQuestions(store, "Zorvik DSO1"), 0);

  // Other sections and the other instance keep theirs.
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "View", "Color", "0"), "3");
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO2", "HideInfoWin", "CsvFileWrited", "False"), "True");
}

TEST(RunAtLogin, AnAutostartEntryUnderTheConfigHome) {
  TempDir dir;
  const char* old = std::getenv("XDG_CONFIG_HOME");
  std::string saved = old != nullptr ? old : "";
  setenv("XDG_CONFIG_HOME", dir.file("cfg").c_str(), 1);

  EXPECT_FALSE(RegistryMenuLoadWithWindowsChecked());
  EXPECT_TRUE(RegistryMenuToggleLoadWithWindows(false, autostartCommandLine("/opt/my apps/zorvik")));
  EXPECT_TRUE(IsRunAtLogin("Zorvik"));
  EXPECT_NE(test::readFile(dir.file("cfg/autostart/Zorvik.desktop")).find("\nExec=\"/opt/my apps/zorvik\"\n"),
            std::string::npos);
  SetRunAtLogin("Zorvik", "   ");
  EXPECT_FALSE(RegistryMenuLoadWithWindowsChecked());
  EXPECT_FALSE(RegistryMenuToggleLoadWithWindows(true, ""));
  EXPECT_FALSE(std::filesystem::exists(dir.file("cfg/autostart/Zorvik.desktop")));
  ClearRunAtLogin("Zorvik");  // nothing to remove
  EXPECT_THROW(SetRunAtLogin("../x", "a"), Fault);
  EXPECT_THROW(SetRunAtLogin("Zorvik", "a\nb"), Fault);
  EXPECT_EQ(autostartCommandLine("/usr/bin/zorvik"), "/usr/bin/zorvik");
  EXPECT_EQ(autostartCommandLine("/a b/$x\"%"), "\"/a b/\\$x\\\"%%\"");

  if (old != nullptr)
    setenv("XDG_CONFIG_HOME", saved.c_str(), 1);
  else
    unsetenv("XDG_CONFIG_HOME");
}

}  // namespace
}  // namespace zorvik
