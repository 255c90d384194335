#include "sim/sim_config.h"

#include <gtest/gtest.h>

#include "core/fault.h"

namespace zorvik {
namespace {

std::string faultText(std::string_view options) {
  try {
    parseSimConfig(options);
  } catch (const Fault& f) {
    return f.what();
  }
  return "";
}

TEST(SimConfig, ReadsEveryKindOfKeyAndKeepsTheRestAtDefault) {
  const SimConfig c = parseSimConfig(
      " signal=square, freq=2.5e3 ,vpp=0.4,offset=-0.1,noise=0,seed=42,rate=max,VNM=Box 9,"
      "TOv=0x3,MCh=65535,QSh=4096,P1l=-100,L_B=255,fault=lost:3,fault=missing:TPl,fault=notrigger,");
  EXPECT_EQ(c.signal, Waveform::Square);
  EXPECT_DOUBLE_EQ(c.freq, 2500.0);
  EXPECT_DOUBLE_EQ(c.offset, -0.1);
  EXPECT_EQ(c.seed, 42u);
  EXPECT_EQ(c.pacingMs(), 0);
  EXPECT_EQ(c.VNM, "Box 9");
  EXPECT_EQ(c.TOv, 3u);
  EXPECT_EQ(c.MCh, 65535u);
  EXPECT_EQ(c.P1l, -100);
  EXPECT_EQ(c.L_B, 255);
  EXPECT_EQ(c.faults.lostAfter, 3u);
  EXPECT_EQ(c.faults.missing.count("TPl"), 1u);
  EXPECT_TRUE(c.faults.noTrigger);
  // Untouched keys keep the defaults.
  EXPECT_EQ(c.VSN, "ZV1-000123");
  EXPECT_EQ(c.MCd, 1000u);
  EXPECT_EQ(c.qshForMode(0), 4096u);
  EXPECT_EQ(c.qshForMode(3), 2048u);
}

TEST(SimConfig, DefaultLimitsPerMode) {
  SimConfig c;
  EXPECT_EQ(c.pacingMs(), 20);
  EXPECT_EQ(c.qshForMode(1), 8192u);
  EXPECT_EQ(c.tchForMode(0x0A), 16368u);  // only the low three bits name the mode
  c.TCh = 10000;
  EXPECT_EQ(c.tchForMode(1), 8192u);  // never above the sample limit
}

TEST(SimConfig, LaterOptionsMergeOverEarlierOnes) {
  SimConfig c = parseSimConfig("freq=10,fault=boot");
  applySimOptions(c, "vpp=2,freq=20");
  EXPECT_DOUBLE_EQ(c.freq, 20.0);
  EXPECT_DOUBLE_EQ(c.vpp, 2.0);
  EXPECT_TRUE(c.faults.boot);
  // A failing option changes nothing, not even the keys before the bad one.
  EXPECT_THROW(applySimOptions(c, "vpp=3,bogus=1"), Fault);
  EXPECT_DOUBLE_EQ(c.vpp, 2.0);
}

TEST(SimConfig, UnknownKeysAndBadValuesAreFaultsThatNameThem) {
  EXPECT_EQ(faultText("colour=red"), "unknown --sim key: colour");
  EXPECT_EQ(faultText("mcd=1000"), "unknown --sim key: mcd");  // property names keep their case
  const std::string badFreq = faultText("freq=fast");
  EXPECT_NE(badFreq.find("freq"), std::string::npos);
  EXPECT_NE(badFreq.find("fast"), std::string::npos);
  for (const char* bad : {"signal=saw",
                          "freq=0",
                          "freq=-5",
                          "freq=1e400",
                          "vpp=-1",
                          "noise=inf",
                          "rate=0",
                          "rate=fast",
                          "seed=-1",
                          "seed=1.5",
                          "TOl=0x",
                          "L_B=256",
                          "P1h=32768",
                          "QSh=1",
                          "QSh=70000",
                          "TCh=65536",
                          "fault=lost:0",
                          "fault=lost:x",
                          "fault=missing:",
                          "fault=missing:MC",
                          "fault=crash",
                          "freq",
                          "=5"})
    EXPECT_FALSE(faultText(bad).empty()) << bad;
}

TEST(SimConfig, ClockPeriodsMustFitTheTwoByteClockRegister) {
  EXPECT_EQ(parseSimConfig("MCl=1,MCh=65535").MCh, 65535u);
  for (const char* key : {"MCd", "MCl", "MCh"}) {
    EXPECT_NE(faultText(std::string(key) + "=65536").find(key), std::string::npos);
    EXPECT_FALSE(faultText(std::string(key) + "=0").empty());
  }
  EXPECT_NE(faultText("MCl=900,MCh=850").find("MCl"), std::string::npos);
}

TEST(SimConfig, OffsetLimitsMustNotCross) {
  EXPECT_EQ(parseSimConfig("P1l=5,P1h=5").P1l, 5);
  EXPECT_NE(faultText("P1l=10,P1h=-10").find("P1l 10 is above P1h -10"), std::string::npos);
  EXPECT_FALSE(faultText("P1l=800").empty());  // above the default P1h
}

}  // namespace
}  // namespace zorvik
