#include "sim/packet_builder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zorvik {
namespace {

int byteAt(const std::string& s, size_t i) {
  return static_cast<unsigned char>(s[i]);
}
int wordAt(const std::string& s, size_t i) {
  return byteAt(s, i) * 256 + byteAt(s, i + 1);
}

struct Rig {
  explicit Rig(std::string_view options)
      : config(parseSimConfig(options)), generator(config), builder(generator) {}
  const std::string& build(AcquisitionSetup s, double now = 0.00123) {
    s.qsh = config.qshForMode(s.M1);
    return builder.build(s, now);
  }
  SimConfig config;
  SignalGenerator generator;
  PacketBuilder builder;
};

// 1 us per sample: MC 10 ns, TS 100 clocks.
AcquisitionSetup microsecondSampling() {
  AcquisitionSetup s;
  s.MC = 1000;
  s.TS = 100 * 256;
  return s;
}

TEST(PacketBuilder, HeaderWordsAndLengthsPerMode) {
  Rig rig("noise=0");
  const size_t bytesPerSample[] = {1, 2, 1, 2, 1};
  for (uint8_t mode = 0; mode < 5; ++mode) {
    AcquisitionSetup s;
    s.M1 = mode;
    s.QS = 8192;
    const std::string& p = rig.build(s);
    EXPECT_EQ(wordAt(p, 0), 0x1000) << int(mode);  // one segment, triggered
    EXPECT_EQ(wordAt(p, 2), mode << 8);
    EXPECT_EQ(p.size(), 4 + 8192 * bytesPerSample[mode]);
  }
  AcquisitionSetup s;
  s.M1 = 2;
  s.QS = 1001;  // an odd count leaves the last position without a pair
  EXPECT_EQ(rig.build(s).size(), 4u + 1000u);
  s.M1 = 0;
  s.QS = 0;
  EXPECT_EQ(rig.build(s).size(), 4u + 1000u);
  s.QS = 30000;
  EXPECT_EQ(rig.build(s).size(), 4u + 16384u);
  s.M1 = 5;  // a mode the device does not define: plain bytes, honestly labelled
  s.QS = 100;
  const std::string& odd = rig.build(s);
  EXPECT_EQ(wordAt(odd, 2), 0x500);
  EXPECT_EQ(odd.size(), 104u);
}

TEST(PacketBuilder, DcLevelMapsToItsCodeInEveryMode) {
  Rig rig("signal=dc,offset=0.3,noise=0");
  AcquisitionSetup s;
  s.V1 = 100;
  s.P1 = 32;  // 0.1 V at mid-screen
  s.QS = 64;
  for (uint8_t mode : {0, 2, 3, 4}) {
    s.M1 = mode;
    const std::string& p = rig.build(s);
    for (size_t i = 4; i < p.size(); ++i) ASSERT_EQ(byteAt(p, i), 192) << int(mode) << " " << i;
  }
  s.M1 = 1;
  const std::string& hiRes = rig.build(s);
  for (size_t i = 4; i < hiRes.size(); i += 2) ASSERT_EQ(wordAt(hiRes, i), 192 * 256);
  // V1 0 means 200 mV/div.
  s = AcquisitionSetup{};
  s.QS = 8;
  EXPECT_EQ(byteAt(rig.build(s), 4), 176);
  // Beyond the screen the codes stop at the rails.
  s.P1 = -200;
  EXPECT_EQ(byteAt(rig.build(s), 4), 255);
  s.M1 = 1;
  EXPECT_EQ(wordAt(rig.build(s), 4), 65535);
  s.P1 = 200;
  EXPECT_EQ(wordAt(rig.build(s), 4), 0);
}

TEST(PacketBuilder, MasterWordTellsTriggerAndRis) {
  Rig rig("noise=0");
  AcquisitionSetup s = microsecondSampling();
  s.S1 = 250;  // far above the signal
  s.RT = 1;    // Norm: no trigger, no data
  EXPECT_TRUE(rig.build(s).empty());
  s.RT = 0;  // Auto: runs free
  EXPECT_EQ(wordAt(rig.build(s), 0), 0x0000);
  s.S1 = 128;
  s.T1 = 0;  // no edge chosen
  EXPECT_EQ(wordAt(rig.build(s), 0), 0x0000);
  s.T1 = 0x20;
  s.TS = 64;  // below the fast sampler's floor of 128
  EXPECT_EQ(wordAt(rig.build(s), 0), 0x1000);
  s.RS = 1;  // RIS allowed
  EXPECT_EQ(wordAt(rig.build(s), 0), 0x1100);
  s.TS = 128;
  EXPECT_EQ(wordAt(rig.build(s), 0), 0x1000);
}

// Sampling a 1 MHz sine once a microsecond sees the same phase every time; the peak detector
// still sees the whole swing.
TEST(PacketBuilder, PeakDetectShowsWhatSamplingAliasesAway) {
  Rig rig("freq=1e6,noise=0");
  AcquisitionSetup s = microsecondSampling();
  s.QS = 500;
  s.M1 = 4;
  const std::string& plain = rig.build(s, 0.0000003);
  const auto [lo, hi] = std::minmax_element(
      plain.begin() + 4, plain.end(), [](char a, char b) { return (unsigned char)a < (unsigned char)b; });
  EXPECT_LE((unsigned char)*hi - (unsigned char)*lo, 1);
  for (uint8_t mode : {2, 3}) {
    s.M1 = mode;
    const std::string& peaks = rig.build(s);
    for (size_t i = 4; i < peaks.size(); i += 2) {
      ASSERT_LE(byteAt(peaks, i), 48);  // 128 - 2.5 divisions
      ASSERT_GE(byteAt(peaks, i + 1), 208);
    }
  }
}

}  // namespace
}  // namespace zorvik
