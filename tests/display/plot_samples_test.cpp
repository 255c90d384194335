#include <gtest/gtest.h>

#include "display/trace_painter.h"
#include "display_test_util.h"

using namespace zorvik;
using namespace zorvik::test;

namespace {
int code(const std::string& s, int64_t i) {
  return static_cast<unsigned char>(s[static_cast<size_t>(i)]) * 256;
}
}  // namespace

TEST(PlotSamples, SamplesOnAColumnAreTakenAsTheyAre) {
  for (int interp : {0, 1, 2, 3, 4}) {
    DisplayRig rig([interp](DisplaySettings& s) { s.interpolation = interp; });
    const std::string seg = sineSamples(330, 23.7);
    rig.samples(seg);
    const TraceColumns& c = rig.d().columns();
    ASSERT_EQ(c.start, 85);  // 165 - 160 / 2: the record's middle at the screen's middle
    ASSERT_EQ(c.xFirst, 0);
    ASSERT_EQ(c.xLast, 319);
    int between = 0;
    for (int x = 0; x < 320; x += 2)
      EXPECT_EQ(c.Out[static_cast<size_t>(x)], code(seg, 85 + x / 2)) << interp << " " << x;
    for (int x = 1; x < 320; x += 2)
      between += c.Out[static_cast<size_t>(x)] != code(seg, 85 + x / 2) &&
                 c.Out[static_cast<size_t>(x)] != code(seg, 86 + x / 2);
    EXPECT_GT(between, 100) << interp;  // the columns between samples are interpolated
  }
}

TEST(PlotSamples, ShortRecordIsCentredAndNothingIsDrawnOutsideIt) {
  // 100 samples a pixel each: columns 110 to 209.
  DisplayRig one([](DisplaySettings& s) { s.interpolation = 2; });
  one.host.samplesPerDiv = 32;
  one.samples(sineSamples(100, 40));
  EXPECT_EQ(one.d().labels().Ch1InterpTransparant, " 1:1 ");
  EXPECT_EQ(one.litColumns(), std::make_pair(110, 209));

  // Two pixels a sample, Sin(x)/x: columns 60 to 259, whatever the taps.
  for (int points : {1, 5, 8}) {
    DisplayRig two([points](DisplaySettings& s) {
      s.interpolation = 2;
      s.interpolationPoints = points;
    });
    two.samples(sineSamples(100, 40));
    EXPECT_EQ(two.d().labels().Ch1InterpTransparant, "SinX/X");
    EXPECT_EQ(two.litColumns(), std::make_pair(60, 259)) << points;
  }

  // Oversampling: 4096 samples at 512 a division are 256 columns, from 32 on.
  DisplayRig overs;
  overs.host.samplesPerDiv = 512;
  overs.samples(sineSamples(4096, 300));
  EXPECT_EQ(overs.d().labels().Ch1InterpTransparant, "Overs");
  EXPECT_EQ(overs.litColumns(), std::make_pair(32, 287));
}

TEST(PlotSamples, TraceOnTheEdgeRowsDrawsNothing) {
  // Interpolated (Line), 1:1 and oversampled, lines and points. (The kernels' sums of a flat top trace
  // come out a hair below full scale, and that is row 254: drawn.)
  for (int spd : {16, 32, 64})
    for (int edge : {0, 255}) {
      DisplayRig rig([](DisplaySettings& s) {
        s.psetPlot = true;
        s.interpolation = 1;
      });
      rig.host.samplesPerDiv = spd;
      rig.samples(std::string(700, static_cast<char>(edge)));
      EXPECT_EQ(rig.lit(), 0) << edge << " " << spd;
    }
  // A trace that falls onto the bottom edge and stays there draws its fall, then nothing along the edge.
  DisplayRig rig([](DisplaySettings& s) { s.interpolation = 1; });
  rig.samples(byteSamples(330, [](int i) { return i < 165 ? 128 : 0; }));
  const auto [first, last] = rig.litColumns();
  EXPECT_EQ(first, 0);
  EXPECT_LE(last, 2 * (165 - 85) + 2);
  EXPECT_EQ(rig.at(300, 0), 0u);
}

TEST(PlotSamples, RecordLongerThanTheOldBufferIsPlotted) {
  // 20000 samples, and a view that runs past the end of the record: a gap there, no line to the zeros.
  for (int interp : {1, 3}) {
    DisplayRig rig([interp](DisplaySettings& s) {
      s.interpolation = interp;
      s.interpolationPoints = 8;
    });
    const std::string seg = sineSamples(20000, 64);
    rig.d().inputs().hViewFrac = -1.005;
    rig.samples(seg);
    const TraceColumns& c = rig.d().columns();
    ASSERT_EQ(c.start, 19890);  // 10000 + 1.005 x (20000 - 160) / 2 - 80
    EXPECT_EQ(c.Out[0], code(seg, c.start));
    // The trace falls to the bottom edge after its last sample, then nothing more.
    const auto [first, last] = rig.litColumns();
    EXPECT_EQ(first, 0);
    EXPECT_GE(last, 2 * (19999 - 19890)) << interp;
    EXPECT_LE(last, 2 * (19999 - 19890) + 4) << interp;
  }

  // Oversampled 16-bit record of 40000 samples, 128 a column, centred.
  DisplayRig hi;
  hi.host.samplesPerDiv = 4096;
  std::string two(80000, '\0');
  for (size_t i = 0; i < two.size(); i += 2)
    two[i] = static_cast<char>(0x80 + (i / 2 % 200 < 100 ? 20 : -20));
  hi.samples(two, true, true);
  EXPECT_EQ(hi.litColumns(), std::make_pair(4, 315));
}

TEST(PlotSamples, OversamplingAveragesAndTheFanKeepsEverySample) {
  const std::string alternating = byteSamples(2048, [](int i) { return i % 2 ? 140 : 100; });
  DisplayRig avg([](DisplaySettings& s) { s.psetPlot = true; });
  avg.host.samplesPerDiv = 64;
  avg.samples(alternating);
  const TraceColumns& c = avg.d().columns();
  for (int x = 0; x < 320; ++x) ASSERT_EQ(c.Y[static_cast<size_t>(x)], 120);
  EXPECT_EQ(c.fanCount, 0);

  // Sample mode with peak decimation: every sample of a column is a point.
  DisplayRig fan([](DisplaySettings& s) {
    s.psetPlot = true;
    s.linePlot = false;
    s.peakDecimation = true;
  });
  fan.host.samplesPerDiv = 64;
  fan.samples(alternating, false);
  EXPECT_EQ(fan.d().columns().fanCount, 2);
  for (int x : {0, 100, 319}) {
    EXPECT_NE(fan.at(x, 100), 0u);
    EXPECT_NE(fan.at(x, 140), 0u);
    EXPECT_EQ(fan.at(x, 120), 0u);
  }
}

TEST(PlotSamples, VerticalZoomAndPan) {
  DisplayRig rig([](DisplaySettings& s) { s.interpolation = 0; });
  rig.host.samplesPerDiv = 32;
  rig.d().inputs().vZoom = 2;
  rig.samples(std::string(400, static_cast<char>(144)));  // half a division above the middle
  EXPECT_EQ(rig.d().columns().Y[100], 160);
  rig.d().inputs().vViewFrac = 0.25;  // the view a quarter of the scroll up: the trace goes down
  rig.samples(std::string(400, static_cast<char>(144)));
  EXPECT_EQ(rig.d().columns().Y[100], 96);
  // Past the top: clipped and not drawn.
  rig.d().inputs().vViewFrac = 0;
  rig.samples(std::string(400, static_cast<char>(220)));
  EXPECT_EQ(rig.d().columns().Y[100], 255);
  EXPECT_EQ(rig.lit(), 0);
}

TEST(PlotSamples, VectorPassColoursAndLineWidthPerZoom) {
  DisplayRig rig([](DisplaySettings& s) {
    s.zoom = 2;
    s.varBright = true;
    s.interpolation = 1;
  });
  rig.samples(std::string(330, static_cast<char>(128)));
  // A flat trace in full green (LineColor 2), two pixels wide at zoom 2.
  const DisplayGeometry& g = rig.d().canvas().geometry();
  EXPECT_EQ(rig.pixel(g.pixelX(100), g.pixelY(128)), 0x00FF00u);
  EXPECT_EQ(rig.pixel(g.pixelX(100), g.pixelY(128) + 1), 0x00FF00u);
  EXPECT_EQ(rig.pixel(g.pixelX(100), g.pixelY(128) + 2), 0u);
  // The steep step of a square wave is dimmer than the flat parts.
  DisplayRig step([](DisplaySettings& s) {
    s.varBright = true;
    s.interpolation = 0;
  });
  step.host.samplesPerDiv = 32;
  step.samples(byteSamples(330, [](int i) { return i < 165 ? 50 : 200; }));
  EXPECT_EQ(step.at(10, 50), 0x00FF00u);
  const uint32_t dim = static_cast<uint32_t>(vectorBrightness(150)) << 8;
  EXPECT_TRUE(step.at(159, 120) == dim || step.at(160, 120) == dim);
}

TEST(PlotSamples, RisRainbowColoursTheInterleavedPasses) {
  // TS 128: four passes, each through every fourth column, in red, green, blue, yellow; the later passes
  // draw over the earlier ones.
  DisplayRig rig([](DisplaySettings& s) {
    s.risRainbow = true;
    s.linePlot = false;
    s.interpolation = 2;
    s.gridFore = false;  // copy pen: a later pass replaces the colour
  });
  rig.host.ts = 128;
  rig.samples(std::string(330, static_cast<char>(128)));
  EXPECT_EQ(rig.at(0, 128), 0xFF0000u);
  EXPECT_EQ(rig.at(1, 128), 0x00FF00u);
  EXPECT_EQ(rig.at(2, 128), 0x0000FFu);
  EXPECT_EQ(rig.at(100, 128), 0xFFFF00u);
  // Outside 0 < TS < 512 there are no passes.
  rig.host.ts = 512;
  rig.samples(std::string(330, static_cast<char>(128)));
  EXPECT_EQ(rig.lit(), 0);
}
