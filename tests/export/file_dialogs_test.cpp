#include "export/file_dialogs.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "config/config_test_util.h"
#include "config/settings.h"
#include "export/scripted_file_dialogs.h"

using namespace zorvik;
using zorvik::test::TempDir;
namespace fs = std::filesystem;

namespace {
constexpr auto kTwo = filterList("Zorvik data files (*.zrv)\0*.zrv\0All Files (*.*)\0*.*\0\0");

// Runs a test in a directory of its own and goes back afterwards.
struct InDir {
  explicit InDir(const std::string& dir) : before(fs::current_path()) { fs::current_path(dir); }
  ~InDir() { fs::current_path(before); }
  fs::path before;
};

// A platform dialog that moves the process and does not tell where it ended.
struct MovingDialog : FileDialogs {
  std::string to;
  FileDialogAnswer ask(const FileDialogRequest&) override {
    fs::current_path(to);
    return {};
  }
};
}  // namespace

TEST(DialogFilter, DoubleZeroListBecomesQtNameFilters) {
  auto f = parseFilterList(kTwo);
  ASSERT_EQ(f.size(), 2u);
  EXPECT_EQ(qtNameFilter(f[0]), "Zorvik data files (*.zrv)");
  EXPECT_EQ(qtNameFilter(f[1]), "All Files (*)");  // names without a dot are files too
  EXPECT_EQ(qtNameFilter({"Pictures", "*.bmp;*.gif"}), "Pictures (*.bmp *.gif)");
  // A description without its pattern is dropped; the first empty description ends the list.
  EXPECT_EQ(parseFilterList(filterList("A\0*.a\0B")).size(), 1u);
  EXPECT_EQ(parseFilterList(filterList("A\0*.a\0\0B\0*.b\0\0")).size(), 1u);
}

TEST(FileDialog, ResultIsTrimmedAndTakesTheDefaultExtensionWhenItHasNone) {
  MemorySettings settings;
  ScriptedFileDialogs d({"  /x/name.csv  ", std::string("/x/b.csv\0", 9), "/x.y/plain", "   "});
  EXPECT_EQ(SaveFileDialog(d, settings, kTwo, "csv", ""), "/x/name.csv");
  EXPECT_EQ(SaveFileDialog(d, settings, kTwo, "csv", ""), "/x/b.csv");
  EXPECT_EQ(SaveFileDialog(d, settings, kTwo, "csv", ""), "/x.y/plain.csv");
  EXPECT_EQ(SaveFileDialog(d, settings, kTwo, "csv", ""), "");
  EXPECT_EQ(OpenFileDialog(d, settings, kTwo, ""), "");  // cancelled
  EXPECT_EQ(d.requests[4].title, "File Open");
  EXPECT_TRUE(settings.values().empty());  // no category, nothing remembered
}

TEST(FileDialog, FolderOfTheCategoryIsRememberedConfirmedOrCancelled) {
  TempDir start, data;
  InDir in(start.file(""));
  MemorySettings settings;
  ScriptedFileDialogs d({data.file("new.zrv")});
  SaveFileDialog(d, settings, kTwo, "zrv", "Binary data");
  std::string remembered = settings.GetSettingValue("Folders", "Binary data", "");
  EXPECT_EQ(remembered, data.file(""));  // with its separator, so that the next search looks inside

  // The next dialog of the category starts there while the folder holds a file, and, cancelled, ends there.
  test::writeFile(data.file("new.zrv"), "zorvik");
  OpenFileDialog(d, settings, kTwo, "Binary data");
  EXPECT_EQ(d.requests[1].initialFolder, remembered);
  EXPECT_EQ(settings.GetSettingValue("Folders", "Binary data", ""), remembered);
  // A folder without files is no place to start from: the working directory is, and is remembered.
  fs::remove(data.file("new.zrv"));
  OpenFileDialog(d, settings, kTwo, "Binary data");
  EXPECT_EQ(fs::path(d.requests[2].initialFolder), fs::current_path());
  EXPECT_EQ(fs::path(settings.GetSettingValue("Folders", "Binary data", "")), fs::current_path() / "");
}

TEST(FileDialog, SearchForARememberedPath) {
  TempDir dir;
  fs::create_directory(dir.file("hidden"));
  test::writeFile(dir.file("hidden/.dot"), "");
  test::writeFile(dir.file("f.zrv"), "");
  std::string bare = dir.file("");
  bare.pop_back();
  EXPECT_TRUE(folderSearchFinds(dir.file("")));
  EXPECT_FALSE(folderSearchFinds(bare));  // a folder named without its separator finds nothing
  EXPECT_TRUE(folderSearchFinds(dir.file("f.zrv")));
  EXPECT_FALSE(folderSearchFinds(dir.file("hidden/")));
  EXPECT_FALSE(folderSearchFinds(dir.file("missing/")));
}

TEST(FileDialog, WorkingDirectoryIsRestoredAndTheDialogsDirectoryRemembered) {
  TempDir start, elsewhere;
  InDir in(start.file(""));
  fs::path before = fs::current_path();
  MemorySettings settings;
  MovingDialog d;
  d.to = elsewhere.file("");
  EXPECT_EQ(OpenFileDialog(d, settings, kTwo, "Firmware"), "");
  EXPECT_EQ(fs::current_path(), before);
  EXPECT_EQ(fs::path(settings.GetSettingValue("Folders", "Firmware", "")),
            fs::canonical(elsewhere.file("")) / "");
}
