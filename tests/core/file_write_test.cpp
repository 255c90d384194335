#include "core/file_write.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <filesystem>

#include "config/config_test_util.h"
#include "core/fault.h"

using namespace zorvik;
using zorvik::test::readFile;
using zorvik::test::TempDir;

namespace {

// The files of a folder, so that a test sees a temporary file left behind.
size_t entries(const std::string& folder) {
  size_t n = 0;
  for ([[maybe_unused]] const auto& e : std::filesystem::directory_iterator(folder)) ++n;
  return n;
}

std::string faultOf(const std::string& path, std::string_view bytes) {
  try {
    writeFileReplacing(path, bytes);
  } catch (const Fault& f) {
    return f.what();
  }
  return {};
}

// A file size limit for this process while it lives (as `ulimit -f`), with SIGXFSZ ignored so that the
// write fails with EFBIG instead of ending the process.
struct FileSizeLimit {
  rlimit old{};
  void (*oldHandler)(int) = nullptr;
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &old);
    oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limited = old;
    limited.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limited);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
  }
};

}  // namespace

TEST(FileWrite, AShortWriteIsAnErrorThatKeepsTheOldFile) {
  TempDir dir;
  const std::string path = dir.file("trace.csv");
  writeFileReplacing(path, "old contents\n");
  std::string message;
  {
    FileSizeLimit limit(1024);
    message = faultOf(path, std::string(5000, 'x'));
  }
  EXPECT_NE(message.find(path), std::string::npos) << message;
  EXPECT_NE(message.find(std::strerror(EFBIG)), std::string::npos) << message;
  EXPECT_EQ(readFile(path), "old contents\n");
  EXPECT_EQ(entries(dir.file("")), 1u);  // no temporary file left
}

TEST(FileWrite, SpecialFilesAreRefusedAndLinksWrittenThrough) {
  TempDir dir;
  const std::string fifo = dir.file("pipe");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_NE(faultOf(fifo, "x").find("not a regular file"), std::string::npos);
  struct stat st {};
  ASSERT_EQ(lstat(fifo.c_str(), &st), 0);
  EXPECT_TRUE(S_ISFIFO(st.st_mode));
  std::filesystem::create_directory(dir.file("folder"));
  EXPECT_NE(faultOf(dir.file("folder"), "x").find("folder"), std::string::npos);
  EXPECT_TRUE(std::filesystem::is_directory(dir.file("folder")));

  // A link stays a link; its target gets the bytes, also when it does not exist yet.
  writeFileReplacing(dir.file("real.csv"), "old");
  std::filesystem::create_symlink("real.csv", dir.file("link.csv"));
  writeFileReplacing(dir.file("link.csv"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(dir.file("link.csv")));
  EXPECT_EQ(readFile(dir.file("real.csv")), "new");
  std::filesystem::create_symlink("later.csv", dir.file("dangling.csv"));
  writeFileReplacing(dir.file("dangling.csv"), "made");
  EXPECT_TRUE(std::filesystem::is_symlink(dir.file("dangling.csv")));
  EXPECT_EQ(readFile(dir.file("later.csv")), "made");
  // A link to a FIFO is refused like the FIFO.
  std::filesystem::create_symlink("pipe", dir.file("to-pipe"));
  EXPECT_NE(faultOf(dir.file("to-pipe"), "x").find("not a regular file"), std::string::npos);
}

TEST(FileWrite, NamesAreBytesAndModesAreKept) {
  TempDir dir;
  // Two Latin-1 names that a UTF-8 decoding would fold into one.
  writeFileReplacing(dir.file("\xE9t\xE9.csv"), "first");
  writeFileReplacing(dir.file("\xE8t\xE9.csv"), "second");
  EXPECT_EQ(readFile(dir.file("\xE9t\xE9.csv")), "first");
  EXPECT_EQ(readFile(dir.file("\xE8t\xE9.csv")), "second");

  const std::string own = dir.file("private.reg");
  writeFileReplacing(own, "a");
  ASSERT_EQ(chmod(own.c_str(), 0600), 0);
  writeFileReplacing(own, "b");
  struct stat st {};
  ASSERT_EQ(stat(own.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);

  const std::string a = makePrivateFile(dir.file(""), "zorvik-migration"),
                    b = makePrivateFile(dir.file(""), "zorvik-migration");
  EXPECT_NE(a, b);
  ASSERT_EQ(stat(a.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
  EXPECT_NE(faultOf("", "x"), "");
}
