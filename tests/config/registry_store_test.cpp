#include "config/registry_store.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include "config/registry.h"
#include "config_test_util.h"

namespace zorvik {
namespace {

using test::TempDir;

TEST(RegistryStore, NamesIgnoreCaseAndKeepTheOrderOfCreation) {
  TempDir dir;
  RegistryStore store(dir.file("r.sqlite"));
  store.setValue(HKEY_CURRENT_USER, "Software\\A", "Line1Width", kRegString, "2");
  store.setValue(HKEY_CURRENT_USER, "software\\a", "Zeta", kRegString, "z");
  store.setValue(HKEY_CURRENT_USER, "Software\\A\\", "line1width", kRegString,
                 "3");  // replaces, keeps its place

  RegistryStore::KeyId key = *store.openKey(HKEY_CURRENT_USER, "SOFTWARE\\\\A");
  auto values = store.values(key);
  ASSERT_EQ(values.size(), 2u);
  EXPECT_EQ(values[0].name, "Line1Width");
  EXPECT_EQ(values[0].data, "3");
  EXPECT_EQ(values[1].name, "Zeta");

  store.createKey(HKEY_CURRENT_USER, "Software\\A\\b");
  store.createKey(HKEY_CURRENT_USER, "Software\\A\\a");
  auto subs = store.subkeys(key);
  ASSERT_EQ(subs.size(), 2u);
  EXPECT_EQ(subs[0].second, "b");
  EXPECT_EQ(subs[1].second, "a");
  EXPECT_FALSE(store.openKey(HKEY_LOCAL_MACHINE, "Software\\A"));
  EXPECT_FALSE(store.openKey(0x80000007u, ""));
  EXPECT_THROW(store.createKey(0x7u, "x"), Fault);
}

TEST(RegistryStore, BytesAndDeepTreesSurvive) {
  TempDir dir;
  RegistryStore store(dir.file("r.sqlite"));
  const std::string bytes("\0\xff\r\n\"\\", 6);
  store.setValue(HKEY_USERS, "k", std::string("n\0m", 3), 3, bytes);
  EXPECT_EQ(store.getValue(HKEY_USERS, "k", std::string("n\0m", 3))->data, bytes);
  EXPECT_EQ(store.getValue(HKEY_USERS, "k", std::string("n\0m", 3))->type, 3u);

  std::string deep = "top";
  for (int i = 0; i < 1500; ++i) deep += "\\k";
  store.setValue(HKEY_USERS, deep, "v", kRegString, "x");
  store.deleteKey(*store.openKey(HKEY_USERS, "top"));
  EXPECT_FALSE(store.openKey(HKEY_USERS, "top"));
  EXPECT_TRUE(store.getValue(HKEY_USERS, "k", std::string("n\0m", 3)));
}

TEST(RegistryStore, AFailedTransactionLeavesNothingBehind) {
  TempDir dir;
  RegistryStore store(dir.file("r.sqlite"));
  store.setValue(HKEY_CURRENT_USER, "a", "keep", kRegString, "1");
  try {
    RegistryStore::Transaction t(store);
    store.setValue(HKEY_CURRENT_USER, "a", "keep", kRegString, "2");
    store.setValue(HKEY_CURRENT_USER, "b", "new", kRegString, "3");
    throw Fault("stop");
  } catch (const Fault&) {
  }
  EXPECT_EQ(store.getValue(HKEY_CURRENT_USER, "a", "keep")->data, "1");
  EXPECT_FALSE(store.openKey(HKEY_CURRENT_USER, "b"));
}

TEST(RegistryStore, ForeignFilesAreRefusedAndLeftAlone) {
  TempDir dir;
  const std::string text = dir.file("text.sqlite");
  const std::string junk = "This is no database at all, just some words.\n" + std::string(600, 'x');
  test::writeFile(text, junk);
  try {
    RegistryStore store(text);
    FAIL() << "opened a text file";
  } catch (const Fault& e) {
    EXPECT_NE(std::string(e.what()).find("not a SQLite database"), std::string::npos);
  }
  EXPECT_EQ(test::readFile(text), junk);

  const std::string other = dir.file("other.sqlite");
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(other.c_str(), &db), SQLITE_OK);
  sqlite3_exec(db, "CREATE TABLE t(x); INSERT INTO t VALUES(1)", nullptr, nullptr, nullptr);
  sqlite3_close(db);
  const std::string before = test::readFile(other);
  EXPECT_THROW(RegistryStore store(other), Fault);
  EXPECT_EQ(test::readFile(other), before);
}

TEST(RegistryStore, AFileLockedPastTheTimeoutFailsAtOpen) {
  TempDir dir;
  const std::string path = dir.file("locked.sqlite");
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, "BEGIN EXCLUSIVE; CREATE TABLE t(x);", nullptr, nullptr, nullptr), SQLITE_OK);
  try {
    RegistryStore store(path, 100);
    ADD_FAILURE() << "opened a locked file";
  } catch (const Fault& e) {
    EXPECT_NE(std::string(e.what()).find("locked"), std::string::npos);
  }
  sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(db);
}

// Each child writes its own 200 settings through its own connection, all at the same time.
TEST(RegistryStore, TwoProcessesWritingLoseNoUpdate) {
  TempDir dir;
  const std::string path = dir.file("shared.sqlite");
  { RegistryStore init(path); }
  pid_t children[2];
  for (int c = 0; c < 2; ++c) {
    children[c] = fork();
    ASSERT_GE(children[c], 0);
    if (children[c] == 0) {
      int status = 0;
      try {
        RegistryStore store(path);
        for (int i = 0; i < 200; ++i)
          SaveSettingValue(store, "Zorvik DSO1", "P" + std::to_string(c), "v" + std::to_string(i),
                           std::to_string(i));
      } catch (...) {
        status = 1;
      }
      _exit(status);
    }
  }
  for (pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  RegistryStore store(path);
  int found = 0;
  for (int c = 0; c < 2; ++c)
    for (int i = 0; i < 200; ++i)
      found += GetSettingValue(store, "Zorvik DSO1", "P" + std::to_string(c), "v" + std::to_string(i), "") ==
               std::to_string(i);
  EXPECT_EQ(found, 400);
}

TEST(RegistryStore, AKilledWriterLeavesAnIntactStore) {
  TempDir dir;
  const std::string path = dir.file("killed.sqlite");
  { RegistryStore init(path); }
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    try {
      RegistryStore store(path);
      for (long i = 0;; ++i) {
        SaveSettingValue(store, "Zorvik DSO1", "Loop", "n" + std::to_string(i % 50),
                         std::string(i % 300, 'q'));
        if (i == 20) (void)!write(ready[1], "x", 1);
      }
    } catch (...) {
    }
    _exit(1);
  }
  char c;
  ASSERT_EQ(read(ready[0], &c, 1), 1);
  usleep(30000);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(ready[0]);
  close(ready[1]);

  RegistryStore store(path);
  EXPECT_NE(GetSettingValue(store, "Zorvik DSO1", "Loop", "n0", "absent"), "absent");
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
  sqlite3_stmt* check = nullptr;
  ASSERT_EQ(sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &check, nullptr), SQLITE_OK);
  ASSERT_EQ(sqlite3_step(check), SQLITE_ROW);
  EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)), "ok");
  sqlite3_finalize(check);
  sqlite3_close(db);
}

}  // namespace
}  // namespace zorvik
