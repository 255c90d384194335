#include "session/command_line.h"

#include <gtest/gtest.h>

#include "core/fault.h"

using namespace zorvik;

TEST(CommandLine, WordsOptionsAndAPacketFile) {
  const CommandLine cl =
      parseCommandLine({"first", "--sim", "rate=max", "/home/a/trace.zrv", "--set=View/Color=1", "--dev"});
  EXPECT_EQ(cl.words, std::vector<std::string>{"first"});
  EXPECT_EQ(cl.simOptions, std::vector<std::string>{"rate=max"});
  EXPECT_EQ(cl.sets, std::vector<std::string>{"View/Color=1"});
  EXPECT_EQ(cl.packetFile, "/home/a/trace.zrv");
  EXPECT_TRUE(cl.dev);
  EXPECT_EQ(parseCommandLine({"capture.zrv"}).packetFile, "capture.zrv");
  EXPECT_THROW(parseCommandLine({"a.zrv", "b.zrv"}), Fault);
  EXPECT_THROW(parseCommandLine({"--sim"}), Fault);
  EXPECT_THROW(parseCommandLine({"--bogus"}), Fault);
}
