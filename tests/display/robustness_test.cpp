#include <gtest/gtest.h>

#include <random>

#include "display_test_util.h"

using namespace zorvik;
using namespace zorvik::test;

// Any bytes under any settings and view: the plotters draw or skip, never read or write out of bounds
// (run under the sanitizers by the test script).
TEST(DisplayRobustness, AnyRecordUnderAnySettingsPlots) {
  std::mt19937 rng(7);
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  const int spds[] = {1, 3, 16, 32, 100, 256, 4096, 32767};
  const int hzooms[] = {1, 2, 4, 5, 10};
  const float vzooms[] = {1, 2, 5, 10};
  for (int run = 0; run < 200; ++run) {
    DisplayRig rig([&](DisplaySettings& s) {
      s.zoom = pick(-1, 4);
      s.wide = pick(0, 1);
      s.interpolation = pick(0, 4);
      s.interpolationPoints = pick(1, 8);
      s.speed = {pick(0, 3), pick(0, 3), pick(0, 3), pick(0, 3)};
      s.lineWidth = {pick(1, 4), pick(1, 4), pick(1, 4), pick(1, 4)};
      s.memory = pick(0, 1);
      s.memoMode = pick(0, 2);
      s.memoryDepth = pick(0, 3);
      s.acqPerPlot = pick(0, 3);
      s.psetPlot = pick(0, 1);
      s.peakDecimation = pick(0, 1);
      s.peakInterpolation = pick(0, 1);
      s.risRainbow = pick(0, 1);
      s.byBitmap = pick(0, 1);
      s.emphasizeInvert = pick(0, 1);
    });
    rig.host.samplesPerDiv = spds[pick(0, 7)];
    rig.host.ts = pick(-5, 600);
    PlotInputs& in = rig.d().inputs();
    in.hZoom = hzooms[pick(0, 4)];
    in.vZoom = vzooms[pick(0, 3)];
    in.hViewFrac = pick(-150, 150) / 100.0;
    in.vViewFrac = pick(-80, 80) / 100.0;
    const int length = pick(0, 1) ? pick(0, 40) : pick(0, 12000);
    std::string seg(static_cast<size_t>(length), '\0');
    for (char& c : seg) c = static_cast<char>(pick(0, 255));
    for (int n = 0; n < 3; ++n) {
      switch (pick(0, 2)) {
        case 0:
          rig.samples(seg, pick(0, 1), pick(0, 1));
          break;
        case 1:
          ++rig.host.packetCount;
          rig.d().PlotPeaks(seg, 1, pick(0, 1));
          break;
        default:
          rig.d().PlotSamples(seg, 2, true, false);
          break;
      }
    }
    const TraceColumns& c = rig.d().columns();
    ASSERT_GE(c.xFirst, 0);
    ASSERT_LT(c.xLast, rig.d().plotWidth());
  }
}
