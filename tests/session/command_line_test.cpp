#include "session/command_line.h"

#include <gtest/gtest.h>

#include "core/fault.h"
#include "session/run_report.h"

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
  EXPECT_DOUBLE_EQ(parseCommandLine({"--report-after", "2.5"}).reportAfter, 2.5);
  for (const char* bad : {"0", "-1", "nan", "1e9", "soon"})
    EXPECT_THROW(parseCommandLine({"--report-after", bad}), Fault) << bad;
}

TEST(RunReport, OneLineOfFiguresForAScript) {
  RunReport r;
  r.seconds = 4;
  r.packets = 20000;
  r.updates = 20000;
  r.paints = 240;
  r.cpuSeconds = 3;
  EXPECT_EQ(r.line(),
            "seconds=4.00 packets=20000 packets_per_s=5000 updates=20000 paints=240 paints_per_s=60.0 "
            "cpu_share=0.75");
  // A report before any time has passed divides by nothing.
  EXPECT_EQ(RunReport{}.line(),
            "seconds=0.00 packets=0 packets_per_s=0 updates=0 paints=0 paints_per_s=0.0 cpu_share=0.00");
  EXPECT_GT(processCpuSeconds(), 0);
}
