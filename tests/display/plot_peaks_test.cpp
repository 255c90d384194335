#include <gtest/gtest.h>

#include "display/peak_resampler.h"
#include "display/trace_painter.h"
#include "display_test_util.h"

using namespace zorvik;
using namespace zorvik::test;

namespace {
std::string pairs(int n, const std::function<std::pair<int, int>(int)>& f) {
  std::string s;
  for (int i = 0; i < n; ++i) {
    auto [lo, hi] = f(i);
    s += static_cast<char>(lo);
    s += static_cast<char>(hi);
  }
  return s;
}
void peaks(DisplayRig& rig, const std::string& seg, bool half = false) {
  ++rig.host.packetCount;
  rig.d().PlotPeaks(seg, 1, half);
}
}  // namespace

TEST(PlotPeaks, BlockCopyCentresAShortRecord) {
  DisplayRig rig;
  rig.host.samplesPerDiv = 32;
  peaks(rig, pairs(100, [](int) { return std::make_pair(100, 150); }));
  EXPECT_EQ(rig.litColumns(), std::make_pair(110, 209));
  // A column is a line from its minimum to its maximum, in the peak colour (blue) at b(50).
  const uint32_t colour = static_cast<uint32_t>(peakBrightness(50));
  EXPECT_EQ(rig.at(150, 100), colour);
  EXPECT_EQ(rig.at(150, 125), colour);
  EXPECT_EQ(rig.at(150, 150), colour);
  EXPECT_EQ(rig.at(150, 151), 0u);
  // Half-rate pairs at the same sampling period are twice as wide.
  DisplayRig half;
  half.host.samplesPerDiv = 64;
  peaks(half, pairs(100, [](int) { return std::make_pair(100, 150); }), true);
  EXPECT_EQ(half.litColumns(), std::make_pair(110, 209));
}

TEST(PlotPeaks, JointsCloseTheGapsBetweenColumns) {
  DisplayRig rig;
  rig.host.samplesPerDiv = 32;
  // Alternating high and low spans that do not overlap: every column joins the one before.
  peaks(rig, pairs(400, [](int i) { return i % 2 ? std::make_pair(150, 160) : std::make_pair(100, 110); }));
  for (int x = 101; x <= 103; x += 2)
    for (int y = 110; y <= 160; ++y)
      ASSERT_TRUE(rig.at(x - 1, y) != 0u || rig.at(x, y) != 0u) << x << " " << y;
  // Equal minimum and maximum is a point; on an edge row nothing.
  DisplayRig flat;
  flat.host.samplesPerDiv = 32;
  peaks(flat, pairs(400, [](int i) { return i < 200 ? std::make_pair(0, 0) : std::make_pair(90, 90); }));
  EXPECT_EQ(flat.at(100, 0), 0u);
  EXPECT_EQ(flat.at(250, 90), 0x0000FFu);
}

TEST(PlotPeaks, NeighboursMergeBelowAColumnAndBetweenColumnsTheChosenPairShows) {
  PeakResampler r;
  PeakColumns c;
  PeakRequest q;
  q.samplesPerDiv = 128;  // four pairs a column: merged twice
  ASSERT_TRUE(r.run(pairs(2000, [](int i) { return std::make_pair(100 - i % 4, 110 + i % 4); }), q, c));
  EXPECT_EQ(c.ratio, 1);
  for (int x = 0; x < 320; ++x) {
    ASSERT_EQ(c.lo[static_cast<size_t>(x)], 97);
    ASSERT_EQ(c.hi[static_cast<size_t>(x)], 113);
  }
  // Two columns a pair: between two pairs CopyMin takes the narrower (the later on a tie), LineMax both.
  const std::string seg =
      pairs(400, [](int i) { return i % 2 ? std::make_pair(120, 130) : std::make_pair(100, 140); });
  q.samplesPerDiv = 16;
  ASSERT_TRUE(r.run(seg, q, c));
  ASSERT_EQ(c.start, 120);
  EXPECT_EQ(c.lo[1], 120);  // between pair 120 (100..140) and 121 (120..130)
  EXPECT_EQ(c.hi[1], 130);
  EXPECT_EQ(c.lo[3], 120);  // between 121 and 122: the narrower is the earlier one
  q.lineMax = true;
  ASSERT_TRUE(r.run(seg, q, c));
  EXPECT_EQ(c.lo[1], 100);
  EXPECT_EQ(c.hi[1], 140);
  EXPECT_EQ(c.lo[2], 120);  // a whole position copies its pair
  // Too short, or a scale that makes no number: nothing.
  EXPECT_FALSE(r.run(std::string(15, 'a'), q, c));
  q.samplesPerDiv = 0;
  EXPECT_FALSE(r.run(seg, q, c));
}

TEST(PlotPeaks, VerticalZoomScalesAroundThePan) {
  PeakResampler r;
  PeakColumns c;
  PeakRequest q;
  q.samplesPerDiv = 32;
  q.vZoom = 5;
  ASSERT_TRUE(r.run(pairs(400, [](int) { return std::make_pair(120, 140); }), q, c));
  EXPECT_EQ(c.lo[10], 88);  // (120 - 128) x 5 + 128
  EXPECT_EQ(c.hi[10], 188);
  q.vViewFrac = 0.1;  // pan = 128 - 4 x 256 x 0.1
  ASSERT_TRUE(r.run(pairs(400, [](int) { return std::make_pair(20, 250); }), q, c));
  EXPECT_EQ(c.lo[10], 0);
  EXPECT_EQ(c.hi[10], 255);
}
