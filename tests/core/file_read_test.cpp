#include "core/file_read.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <future>

#include "core/fault.h"

namespace zorvik {
namespace {

class FileRead : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (std::filesystem::temp_directory_path() / "zorvik-read-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    dir_ = pattern;
  }
  void TearDown() override {
    std::error_code ec;
    std::filesystem::remove_all(dir_, ec);
  }
  std::string file(const std::string& name) const { return dir_ + "/" + name; }
  // Written through the system's calls, so that the name's bytes reach it exactly.
  static void write(const std::string& path, const std::string& bytes) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::write(fd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    ::close(fd);
  }
  // The fault's text of reading `path` with the limit, or "" when it was read.
  static std::string refusal(const std::string& path, size_t maxBytes) {
    try {
      readFileBounded(path, maxBytes, "packet file");
    } catch (const Fault& f) {
      return f.what();
    }
    return "";
  }

  std::string dir_;
};

TEST_F(FileRead, ReadsEveryByteUpToTheLimitAndRefusesOneMore) {
  std::string bytes(70000, '\0');  // more than one read's buffer
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7);
  write(file("p.bin"), bytes);
  EXPECT_EQ(readFileBounded(file("p.bin"), bytes.size(), "packet file"), bytes);
  EXPECT_EQ(refusal(file("p.bin"), bytes.size() - 1),
            "the packet file \"" + file("p.bin") + "\" is larger than 69999 bytes");
  write(file("empty"), "");
  EXPECT_EQ(readFileBounded(file("empty"), 0, "packet file"), "");
}

TEST_F(FileRead, ALatin1NameReachesTheSystemUnchanged) {
  const std::string name = file("\xE9t\xE9.zrv");
  write(name, "zorvik");
  EXPECT_EQ(readFileBounded(name, 100, "packet file"), "zorvik");
  // Not found under its UTF-8 spelling: the reader did not convert the name.
  EXPECT_NE(refusal(file("\xC3\xA9t\xC3\xA9.zrv"), 100).find("No such file or directory"), std::string::npos);
  // A zero byte would cut the name short and open another file.
  write(file("a"), "other");
  EXPECT_EQ(refusal(file("a") + std::string("\0b", 2), 100),
            "the name of the packet file holds a zero byte after \"" + file("a") + "\"");
}

TEST_F(FileRead, WhatIsNoRegularFileIsRefusedWithItsReason) {
  EXPECT_EQ(refusal(dir_, 100), "the packet file \"" + dir_ + "\" is a directory");
  EXPECT_EQ(refusal("/dev/zero", 100), "the packet file \"/dev/zero\" is not a regular file");
  EXPECT_EQ(refusal(file("missing"), 100),
            "cannot read the packet file \"" + file("missing") + "\": No such file or directory");
  EXPECT_EQ(refusal("", 100), "no packet file named");
}

TEST_F(FileRead, AFifoWithoutWriterIsRefusedAtOnce) {
  const std::string fifo = file("fifo");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  auto read = std::async(std::launch::async, [&] { return refusal(fifo, 100); });
  const bool answered = read.wait_for(std::chrono::seconds(5)) == std::future_status::ready;
  if (!answered) {
    // Free a reader that waits for a writer, so that the failure does not hang the run.
    const int fd = ::open(fifo.c_str(), O_WRONLY | O_NONBLOCK);
    if (fd >= 0) ::close(fd);
  }
  EXPECT_TRUE(answered);
  EXPECT_EQ(read.get(), "the packet file \"" + fifo + "\" is not a regular file");
}

TEST_F(FileRead, AFileLargerThanTheLimitIsRefusedBeforeReading) {
  // A sparse 2 GiB file costs no disk; reading it would take seconds and the memory.
  const std::string big = file("big.zrv");
  const int fd = ::open(big.c_str(), O_WRONLY | O_CREAT, 0600);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(::ftruncate(fd, off_t{1} << 31), 0);
  ::close(fd);
  EXPECT_EQ(refusal(big, 1 << 20), "the packet file \"" + big + "\" is larger than 1048576 bytes");
}

}  // namespace
}  // namespace zorvik
