#include "config/registry.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "config/cpu_speed.h"
#include "config/registry_errors.h"
#include "config/registry_settings.h"
#include "config_test_util.h"

namespace zorvik {
namespace {

using test::TempDir;

TEST(Registry, SettingsReadBackOrGiveTheDefault) {
  TempDir dir;
  RegistryStore store(dir.file("r.sqlite"));
  SaveSettingValue(store, "Zorvik DSO1", "Meters", "On", "");
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "Meters", "On", "def"), " ");
  SaveSettingValue(store, "Zorvik DSO1", "Stat", "Line1Width", "4");
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "stat", "Line1width", "1"), "4");
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO2", "Stat", "Line1Width", "1"), "1");
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "View", "Hor.lab.font size", "5"), "5");
  store.setValue(HKEY_CURRENT_USER, "Software\\Zorvik\\Zorvik DSO1\\View", "Color", kRegDword,
                 std::string("\x01\0\0\0", 4));
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "View", "Color", "0"), "0");
  EXPECT_EQ(RegGetDword(store, HKEY_CURRENT_USER, "Software\\Zorvik\\Zorvik DSO1\\View", "Color", 200), 1u);
  EXPECT_EQ(RegGetDword(store, HKEY_CURRENT_USER, "Software\\Zorvik\\Zorvik DSO1\\Meters", "On", 200), 200u);
  EXPECT_EQ(settingsKeyPath(settingsNameFor(2)), "Software\\Zorvik\\Zorvik DSO2");
}

TEST(Registry, SettingsSurviveReopening) {
  TempDir dir;
  {
    RegistryStore store(dir.file("r.sqlite"));
    RegistrySettings settings(store, "Zorvik DSO1");
    settings.saveInt("Sampling", "TimePerDiv", 21);
    settings.saveBool("View", "GridFore", true);
  }
  RegistryStore store(dir.file("r.sqlite"));
  RegistrySettings settings(store, "Zorvik DSO1");
  EXPECT_EQ(settings.getInt("Sampling", "TimePerDiv", 15), 21);
  EXPECT_TRUE(settings.getBool("View", "GridFore", false));
}

TEST(Registry, AWriteThatFailsRaisesTheStoreStatus) {
  TempDir dir;
  RegistryStore store(dir.file("r.sqlite"), 50);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(dir.file("r.sqlite").c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  try {
    SaveSettingValue(store, "Zorvik DSO1", "View", "Color", "1");
    ADD_FAILURE() << "wrote through a lock";
  } catch (const RegWriteError& e) {
    EXPECT_EQ(e.number(), 0x80040000u);
    EXPECT_EQ(e.source(), "RegSetKeyValue");
    EXPECT_EQ(e.description(), "Error 5, Line 0");
  }
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "View", "Color", "0"), "0");  // reads go on
  sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(other);
}

TEST(Registry, ResetDeletesOneInstanceAndKeepsItsKey) {
  TempDir dir;
  RegistryStore store(dir.file("r.sqlite"));
  SaveSettingValue(store, "Zorvik DSO1", "View", "Color", "3");
  store.setValue(HKEY_CURRENT_USER, "Software\\Zorvik\\Zorvik DSO1\\View\\Nested", "n", kRegString, "x");
  store.setValue(HKEY_CURRENT_USER, "Software\\Zorvik\\Zorvik DSO1", "own", kRegString, "stays");
  SaveSettingValue(store, "Zorvik DSO2", "View", "Color", "4");
  ResetSettings(store, "Zorvik DSO1");
  EXPECT_EQ(test::dumpTree(store, HKEY_CURRENT_USER, "Software\\Zorvik\\Zorvik DSO1"),
            "[Software\\Zorvik\\Zorvik DSO1]\nown|1|stays\n");
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO2", "View", "Color", "0"), "4");
  ResetSettings(store, "Zorvik DSO9");  // absent: nothing happens
}

TEST(Registry, MigrationMovesTheLegacyTreeOnce) {
  TempDir dir;
  RegistryStore store(dir.file("r.sqlite"));
  const std::string legacy = std::string(kLegacySettingsPath) + "\\Zorvik DSO1";
  EXPECT_FALSE(MigrateLegacySettings(store, "Zorvik DSO1", dir.file("zorvik.reg")));

  store.setValue(HKEY_CURRENT_USER, legacy + "\\View", "Color", kRegString, "7");
  store.setValue(HKEY_CURRENT_USER, legacy + "\\HideInfoWin", "CsvFileWrited", kRegString, "True");
  SaveSettingValue(store, "Zorvik DSO1", "View", "Wide", "True");
  ASSERT_TRUE(MigrateLegacySettings(store, "Zorvik DSO1", dir.file("zorvik.reg")));
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "View", "Color", "0"), "7");
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "View", "Wide", "False"), "True");
  EXPECT_EQ(GetSettingValue(store, "Zorvik DSO1", "HideInfoWin", "CsvFileWrited", "False"), "True");
  EXPECT_EQ(test::dumpTree(store, HKEY_CURRENT_USER, legacy), "[" + legacy + "]\n");
  EXPECT_FALSE(std::filesystem::exists(dir.file("zorvik.reg")));

  // A migration file that can't be written leaves everything where it was.
  store.setValue(HKEY_CURRENT_USER, legacy + "\\Mode", "AutoStart", kRegString, "0");
  const std::string before = test::dumpTree(store, HKEY_CURRENT_USER, "");
  EXPECT_FALSE(MigrateLegacySettings(store, "Zorvik DSO1", dir.file("missing/zorvik.reg")));
  EXPECT_EQ(test::dumpTree(store, HKEY_CURRENT_USER, ""), before);
}

TEST(Registry, CpuSpeedComesFromTheFirstProcessor) {
  EXPECT_EQ(
      parseCpuMHz(
          "processor\t: 0\nmodel name\t: X\ncpu MHz\t\t: 2399.6\n\nprocessor\t: 1\ncpu MHz\t\t: 800.0\n"),
      2400);
  EXPECT_EQ(parseCpuMHz("processor\t: 0\nBogoMIPS\t: 50.00\n"), 200);
  EXPECT_EQ(parseCpuMHz("cpu MHz\t: unknown\n"), 200);
  EXPECT_EQ(parseCpuMHz("cpu MHz\t: 99999999\n"), 32767);
  EXPECT_EQ(CpuMHz("/nonexistent/cpuinfo"), 200);
  EXPECT_GT(CpuMHz(), 0);
}

}  // namespace
}  // namespace zorvik
