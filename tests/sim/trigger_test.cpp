#include <gtest/gtest.h>

#include <cmath>

#include "sim/packet_builder.h"

namespace zorvik {
namespace {

int code(const std::string& p, size_t sample) {
  return static_cast<unsigned char>(p[4 + sample]);
}

struct Rig {
  explicit Rig(std::string_view options)
      : config(parseSimConfig(options)), generator(config), builder(generator) {}
  const std::string& build(const AcquisitionSetup& s, double now) { return builder.build(s, now); }
  SimConfig config;
  SignalGenerator generator;
  PacketBuilder builder;
};

// 1 us a sample (MC 10 ns, TS 100 clocks), 2000 samples, the trigger at sample 500.
AcquisitionSetup setup(uint8_t t1, uint8_t s1 = 128) {
  AcquisitionSetup s;
  s.MC = 1000;
  s.TS = 100 * 256;
  s.QS = 2000;
  s.TC = 500;
  s.T1 = t1;
  s.S1 = s1;
  return s;
}

// Where a straight line through samples around-8 to around+8 passes `level`.
double fittedCrossing(const std::string& p, size_t around, double level) {
  double sy = 0, sxy = 0;  // the offsets k sum to 0, their squares to 408
  for (int k = -8; k <= 8; ++k) {
    sy += code(p, around + k);
    sxy += k * code(p, around + k);
  }
  return static_cast<double>(around) + (level - sy / 17) / (sxy / 408);
}

TEST(SimTrigger, NoisyEdgesCrossAtThePresample) {
  Rig rig("freq=10000,noise=0.005");  // 5 codes a sample at the crossing, under a code of noise
  for (uint8_t t1 : {0x20 | 0x08, 0x10 | 0x02}) {
    for (double now : {0.0, 0.0000377, 0.00009}) {
      const std::string& p = rig.build(setup(t1, 160), now);
      ASSERT_TRUE(rig.builder.triggered());
      EXPECT_NEAR(fittedCrossing(p, 500, 160), 500, 2.0) << int(t1) << " " << now;
      const int sign = t1 & 0x20 ? 1 : -1;
      EXPECT_GT(sign * (code(p, 510) - code(p, 490)), 0);
    }
  }
}

TEST(SimTrigger, BandOfEachEdgeSuppressesNoiseSmallerThanIt) {
  // A level input sitting on the trigger level, with a code of noise: only noise can trigger.
  Rig rig("signal=dc,offset=0,noise=0.00625");
  auto fires = [&](uint8_t t1) {
    AcquisitionSetup s = setup(t1);
    s.RT = 1;
    s.TW = 10000;  // 1.2 ms
    int triggered = 0;
    for (int i = 0; i < 5; ++i) triggered += rig.build(s, 0.0001 * i).empty() ? 0 : 1;
    return triggered;
  };
  EXPECT_EQ(fires(0x20), 5);         // rising, band of 2 codes
  EXPECT_EQ(fires(0x20 | 0x03), 5);  // the falling band does not matter to a rising edge
  EXPECT_EQ(fires(0x20 | 0x0C), 0);  // 16 codes
  EXPECT_EQ(fires(0x10), 5);
  EXPECT_EQ(fires(0x10 | 0x0C), 5);
  EXPECT_EQ(fires(0x10 | 0x03), 0);
}

TEST(SimTrigger, WideBandKeepsNoiseFromFiringOnTheWrongSlope) {
  // A slow sine lingers at the level on its way down; noise beyond a narrow band fires a rising
  // edge there.
  Rig rig("freq=100,noise=0.00625");
  auto wrongSlopes = [&](uint8_t t1) {
    AcquisitionSetup s = setup(t1);
    s.QS = 1000;
    int wrong = 0;
    for (int i = 0; i < 20; ++i) {
      const std::string& p = rig.build(s, 0.00049 * i);
      EXPECT_TRUE(rig.builder.triggered());
      wrong += code(p, 700) < code(p, 300) ? 1 : 0;
    }
    return wrong;
  };
  EXPECT_GT(wrongSlopes(0x20), 2);
  EXPECT_EQ(wrongSlopes(0x20 | 0x0C), 0);
}

TEST(SimTrigger, FilterDelaysTheTriggerAndRejectsFastSignals) {
  Rig rig("noise=0");
  // 1 kHz through the slowest filter (10 kHz) lags by atan(0.1) / 2 pi of a period: 15.9 us.
  const std::string& slow = rig.build(setup(0x20 | 0xC0), 0.0002);
  size_t crossing = 0;
  for (size_t i = 440; i < 520 && crossing == 0; ++i)
    if (code(slow, i) >= 128 && code(slow, i - 1) < 128) crossing = i;
  EXPECT_NEAR(static_cast<double>(crossing), 500 - 16, 1.5);

  Rig fast("freq=1e6,noise=0");
  AcquisitionSetup s = setup(0x20, 144);  // 0.1 V, within the 0.5 V swing
  s.RT = 1;
  s.TW = 10000;
  EXPECT_FALSE(fast.build(s, 0).empty());
  s.T1 |= 0xC0;
  EXPECT_TRUE(fast.build(s, 0).empty());
}

TEST(SimTrigger, DelayStartsTheRecordAfterTheTrigger) {
  Rig rig("noise=0");
  AcquisitionSetup s = setup(0x20);
  s.TC = 0;
  const std::string atTrigger = rig.build(s, 0.00031);
  s.TD = 2500;  // 2500 x 12 x 10 ns = 300 us
  s.TC = 500;   // ignored behind a delay
  const std::string& delayed = rig.build(s, 0.00077);
  ASSERT_TRUE(rig.builder.triggered());
  EXPECT_NEAR(code(delayed, 0), 128 + 0.5 * std::sin(0.6 * M_PI) / 0.2 * 32, 1);
  for (size_t i = 0; i + 300 < 2000; i += 97) ASSERT_NEAR(code(delayed, i), code(atTrigger, i + 300), 1) << i;
}

TEST(SimTrigger, TimeOutsEndTheWait) {
  Rig rig("signal=dc,offset=1,noise=0");  // never at the level
  AcquisitionSetup s = setup(0x20);
  s.RT = 1;
  s.TW = 1000;  // 120 us
  EXPECT_TRUE(rig.build(s, 0).empty());
  EXPECT_NEAR(rig.builder.endTime(), 500e-6 + 120e-6, 1e-9);
  s.TW = 0;
  EXPECT_TRUE(rig.build(s, 0).empty());
  EXPECT_NEAR(rig.builder.endTime(), 500e-6, 1e-9);
  s.RT = 0;
  s.TA = 1000;
  EXPECT_EQ(static_cast<unsigned char>(rig.build(s, 0)[0]) & 0x30, 0);  // not triggered
  EXPECT_NEAR(rig.builder.endTime(), 500e-6 + 120e-6 + 1500e-6, 1e-9);
  s.TA = 0;  // the device's own wait
  rig.build(s, 0);
  EXPECT_NEAR(rig.builder.endTime(), 500e-6 + 0.1 + 1500e-6, 1e-9);
}

}  // namespace
}  // namespace zorvik
