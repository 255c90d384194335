#include "sim/signal_generator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace zorvik {
namespace {

SimConfig signal(Waveform w, double freq = 1000, double vpp = 2.0, double offset = 0.5) {
  SimConfig c;
  c.signal = w;
  c.freq = freq;
  c.vpp = vpp;
  c.offset = offset;
  c.noise = 0;
  return c;
}

TEST(SignalGenerator, ShapesAtTheirKeyPhases) {
  const SignalGenerator sine(signal(Waveform::Sine)), tri(signal(Waveform::Triangle)),
      square(signal(Waveform::Square));
  EXPECT_NEAR(sine.clean(0.25e-3), 1.5, 1e-9);
  EXPECT_NEAR(tri.clean(0.0), -0.5, 1e-9);
  EXPECT_NEAR(tri.clean(0.5e-3), 1.5, 1e-9);
  EXPECT_NEAR(square.clean(0.25e-3), 1.5, 1e-9);
  EXPECT_NEAR(square.clean(0.75e-3), -0.5, 1e-9);
}

TEST(SignalGenerator, InputStageGroundsBlocksDcAndLimitsBand) {
  SignalGenerator g(signal(Waveform::Sine, 10e3, 2.0, 0.5));
  g.condition({.grounded = false, .acCoupled = true, .cutoffHz = 0});
  EXPECT_NEAR(g.clean(0.025e-3), 1.0, 1e-9);  // the peak, without the 0.5 V level
  g.condition({.grounded = true, .acCoupled = false, .cutoffHz = 0});
  EXPECT_EQ(g.clean(0.025e-3), 0.0);
  // 10 kHz through 3 kHz: gain 1/sqrt(1 + (10/3)^2).
  g.condition({.grounded = false, .acCoupled = false, .cutoffHz = 3e3});
  const float ends[2] = {0.5f, 0.5f};
  float minMax[2] = {};
  g.envelope(0.0, 1e-4, ends, 1, minMax);
  const float lo = minMax[0], hi = minMax[1];
  EXPECT_NEAR(hi - 0.5, 1.0 / std::sqrt(1.0 + 100.0 / 9.0), 1e-6);
  EXPECT_NEAR(lo - 0.5, -(hi - 0.5), 1e-6);
}

// The recurrences must agree with the direct formula, also across their re-anchoring blocks.
TEST(SignalGenerator, GridAgreesWithDirectEvaluation) {
  for (Waveform w : {Waveform::Sine, Waveform::Triangle, Waveform::Square}) {
    SignalGenerator g(signal(w, 1234.5));
    g.condition({.grounded = false, .acCoupled = false, .cutoffHz = 3e3});
    std::vector<float> grid(3000);
    const double t0 = 0.0123;
    const double dt = 1.7e-6;
    g.cleanGrid(t0, dt, grid.data(), grid.size());
    for (size_t k = 0; k < grid.size(); k += 7)
      ASSERT_NEAR(grid[k], g.clean(t0 + static_cast<double>(k) * dt), 1e-4)
          << static_cast<int>(w) << " " << k;
  }
}

TEST(SignalGenerator, CrossingsLieOnTheLevelWithTheRightSlope) {
  for (Waveform w : {Waveform::Sine, Waveform::Triangle, Waveform::Square}) {
    for (double cutoff : {0.0, 2e3}) {
      SignalGenerator g(signal(w));
      g.condition({.grounded = false, .acCoupled = false, .cutoffHz = cutoff});
      for (Edge edge : {Edge::Rising, Edge::Falling}) {
        const double from = 0.01037;
        const std::optional<double> t = g.nextCrossing(from, 0.8, edge);
        ASSERT_TRUE(t.has_value());
        EXPECT_GE(*t, from);
        EXPECT_LT(*t - from, 1e-3 + 1e-12);
        if (w != Waveform::Square || cutoff > 0) {
          EXPECT_NEAR(g.clean(*t), 0.8, 1e-6);
        }
        const double slope = g.clean(*t + 1e-6) - g.clean(*t - 1e-6);
        EXPECT_EQ(slope > 0, edge == Edge::Rising);
      }
      EXPECT_FALSE(g.nextCrossing(0.0, 1.6, Edge::Rising).has_value());
    }
  }
}

TEST(SignalGenerator, NoiseHasItsRms) {
  SignalGenerator a(signal(Waveform::Dc, 1000, 0, 0));
  std::vector<float> v(40000, 0.0f);
  a.addNoise(v.data(), v.size(), 0.01);
  double sum = 0, squares = 0;
  for (float x : v) {
    sum += x;
    squares += double(x) * x;
  }
  EXPECT_NEAR(sum / v.size(), 0.0, 3e-4);
  EXPECT_NEAR(std::sqrt(squares / v.size()), 0.01, 5e-4);
}

}  // namespace
}  // namespace zorvik
