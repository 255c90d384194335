#include "display/persistence.h"

#include <gtest/gtest.h>

#include "display_test_util.h"

using namespace zorvik;
using namespace zorvik::test;

namespace {
GradeStyle colourStyle(bool inverted = false, int emphasis = 4) {
  GradeStyle g;
  g.colour = true;
  g.inverted = inverted;
  g.emphasis = emphasis;
  return g;
}
// A display in the memory mode with a grading.
DisplayRig memoRig(int memoMode, int depthItem, bool leaveSingle = true, int acqItem = 0) {
  return DisplayRig([=](DisplaySettings& s) {
    s.memory = 1;
    s.memoMode = memoMode;
    s.memoryDepth = depthItem;
    s.leaveSingle = leaveSingle;
    s.acqPerPlot = acqItem;
    s.interpolation = 0;
  });
}
}  // namespace

TEST(Persistence, ColourGradingFromCounts) {
  // Thresholds 2 ^ (0.8 i): 1, 1.74, 3.03, 5.28, 9.19, 16, 27.9, 48.5, 84.4.
  EXPECT_EQ(Persistence::colourOf(1, 100, colourStyle()), 0x505050u);  // a single hit is grey
  EXPECT_EQ(Persistence::colourOf(100, 100, colourStyle()), 0xFF0000u);
  EXPECT_EQ(Persistence::colourOf(60, 100, colourStyle()), 0xC04000u);
  EXPECT_EQ(Persistence::colourOf(10, 100, colourStyle()), 0x00C040u);
  EXPECT_EQ(Persistence::colourOf(2, 100, colourStyle()), 0x800080u);
  EXPECT_EQ(Persistence::colourOf(2, 1000, colourStyle()), 0x0000FFu);  // past every threshold
  EXPECT_EQ(Persistence::colourOf(10, 100, colourStyle(true)), 0x00FF00u);
  EXPECT_EQ(Persistence::colourOf(100, 100, colourStyle(true)), 0x800080u);
  EXPECT_EQ(Persistence::colourOf(2, 1000, colourStyle(true)), 0xFF0000u);
  // No emphasis: every threshold is 1, so only the largest count is red.
  EXPECT_EQ(Persistence::colourOf(100, 100, colourStyle(false, 0)), 0xFF0000u);
  EXPECT_EQ(Persistence::colourOf(99, 100, colourStyle(false, 0)), 0x0000FFu);
  // The two tables as they are, with their two rows that do not mirror each other.
  EXPECT_EQ(kGradeColors[8], 0x800080u);
  EXPECT_EQ(kGradeColorsInverted[0], 0x800080u);
  EXPECT_EQ(kGradeColors[9], 0x0000FFu);
  EXPECT_EQ(kGradeColorsInverted[9], 0xFF0000u);
}

TEST(Persistence, BrightnessGradingFromCounts) {
  GradeStyle g;
  g.colorItem = 6;  // green and blue
  EXPECT_EQ(Persistence::colourOf(50, 50, g), 0x00FFFFu);
  EXPECT_EQ(Persistence::colourOf(25, 50, g), 0x00A3A3u);  // Round(92 + 71) = 163
  g.inverted = true;
  EXPECT_EQ(Persistence::colourOf(50, 50, g), 0x001919u);  // 25
  g.emphasis = 0;
  g.inverted = false;
  EXPECT_EQ(Persistence::colourOf(1, 50, g), 0x00FFFFu);
}

TEST(Persistence, DecayWithAndWithoutLeaveSingle) {
  Persistence keep, cut;
  const int counts[] = {1, 2, 4, 5, 12, 100};
  for (int i = 0; i < 6; ++i) {
    keep.addHit(i, 50, counts[i]);
    cut.addHit(i, 50, counts[i]);
  }
  keep.decay(0, 5, 1, 8, true);
  cut.decay(0, 5, 1, 8, false);
  // k = 7/8: rounded half to even, or cut.
  const int kept[] = {1, 2, 4, 4, 10, 88};
  const int died[] = {0, 1, 3, 4, 10, 87};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(keep.count(i, 50), kept[i]) << counts[i];
    EXPECT_EQ(cut.count(i, 50), died[i]) << counts[i];
  }
  EXPECT_EQ(cut.max(5), 88);  // the maxima are rounded either way
  // Rows 0 and 255 are counted but neither decayed nor shown.
  keep.addHit(10, 0, 64);
  keep.addHit(10, 255, 64);
  keep.decay(0, 20, 1, 8, false);
  EXPECT_EQ(keep.count(10, 0), 64);
  EXPECT_EQ(keep.count(10, 255), 64);
  // Only columns 0 to 480 exist.
  keep.addHit(480, 5, 3);
  keep.addHit(481, 5, 3);
  keep.addHit(-1, 5, 3);
  EXPECT_EQ(keep.count(480, 5), 3);
  EXPECT_EQ(keep.max(481), 0);
}

TEST(Persistence, InfiniteDepthAddsOneAHitAndNeverDecays) {
  DisplayRig rig = memoRig(2, 0);
  for (int i = 0; i < 5; ++i) rig.samples(std::string(400, static_cast<char>(100)));
  EXPECT_EQ(rig.d().persistence().count(150, 100), 5);
  EXPECT_EQ(rig.d().persistence().max(150), 5);
  EXPECT_EQ(rig.at(150, 100), 0xFF0000u);
}

TEST(Persistence, DecayOfTheMemoryModeOverPackets) {
  // Depth 8: a hit weighs 8. A trace that moves away leaves its old row to decay packet by packet.
  for (bool leave : {true, false}) {
    DisplayRig rig = memoRig(2, 3, leave);
    rig.samples(std::string(400, static_cast<char>(100)));
    EXPECT_EQ(rig.d().persistence().count(150, 100), 7);  // 8, decayed once
    for (int i = 0; i < 40; ++i) rig.samples(std::string(400, static_cast<char>(180)));
    EXPECT_EQ(rig.d().persistence().count(150, 100), leave ? 4 : 0) << leave;
    EXPECT_EQ(rig.at(150, 100) != 0u, leave);
    EXPECT_EQ(rig.at(150, 180), 0xFF0000u);
  }
}

TEST(Persistence, AcqPerPlotDrawsEveryFifthPacketAndDecaysEveryOne) {
  DisplayRig rig = memoRig(2, 3, false, 2);  // "/5"
  std::vector<int> drawn;
  int32_t after11 = 0;
  for (int n = 1; n <= 12; ++n) {
    // A mark that only a drawn packet (which starts from a clear display) takes away.
    rig.d().canvas().setPixel(0, 0, 0xFFFFFFFF);
    rig.samples(std::string(400, static_cast<char>(n % 2 ? 90 : 170)));
    if (rig.pixel(0, 0) == 0) drawn.push_back(n);
    EXPECT_EQ(rig.d().DoPlot(), n < 5 || (n - 1) % 5 == 0) << n;
    if (n == 11) after11 = rig.d().persistence().count(150, 90);
  }
  // Packets 1 to 4 (fewer than five so far), then 6 and 11.
  EXPECT_EQ(drawn, (std::vector<int>{1, 2, 3, 4, 6, 11}));
  // Packet 12 was not drawn, but row 90 decayed with it.
  EXPECT_GT(after11, 0);
  EXPECT_EQ(rig.d().persistence().count(150, 90), after11 * 7 / 8);
}

TEST(Persistence, BitmapPathAndPointCallsGiveTheSamePixelsAtZoomOne) {
  auto run = [](bool bitmap) {
    DisplayRig rig([bitmap](DisplaySettings& s) {
      s.memory = 1;
      s.memoMode = 1;
      s.byBitmap = bitmap;
      s.interpolation = 2;
    });
    for (int i = 0; i < 6; ++i) rig.samples(sineSamples(330, 40 + i, 70));
    return rig.d().canvas().snapshot();
  };
  EXPECT_EQ(run(true), run(false));
}

TEST(Persistence, ReplotAndClearIntensityStartAgain) {
  DisplayRig rig = memoRig(2, 1);
  for (int i = 0; i < 3; ++i) rig.samples(std::string(400, static_cast<char>(100)));
  EXPECT_GT(rig.d().persistence().count(150, 100), 0);
  rig.host.replot = true;
  rig.d().PlotSamples(std::string(400, static_cast<char>(60)), 1, true, false);
  EXPECT_FALSE(rig.host.replot);
  EXPECT_EQ(rig.host.packetCount, 0);
  EXPECT_EQ(rig.host.restarts, 1);
  EXPECT_EQ(rig.d().persistence().count(150, 100), 0);
  EXPECT_GT(rig.d().persistence().count(150, 60), 0);
  rig.host.packetCount = 9;
  rig.d().ClearIntensity();
  EXPECT_EQ(rig.host.packetCount, 0);
  EXPECT_EQ(rig.d().persistence().max(150), 0);
  EXPECT_EQ(rig.lit(), 0);
}

TEST(Persistence, MemoryWithoutGradingKeepsEveryTraceOnTheScreen) {
  DisplayRig rig([](DisplaySettings& s) {
    s.memory = 1;
    s.memoMode = 0;
    s.interpolation = 1;
  });
  rig.samples(std::string(400, static_cast<char>(80)));
  rig.samples(std::string(400, static_cast<char>(170)));
  // No grading: full-colour points (ColorPset1, cyan), and the display is not cleared between packets.
  EXPECT_EQ(rig.at(100, 80), 0x00FFFFu);
  EXPECT_EQ(rig.at(100, 170), 0x00FFFFu);
  EXPECT_EQ(rig.d().persistence().max(100), 0);
}
