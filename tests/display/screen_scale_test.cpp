#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "display/display_canvas.h"
#include "display/display_geometry.h"
#include "display/trigger_level_text.h"
#include "display/wheel_zoom.h"

using namespace zorvik;

TEST(ScreenScale, WholeRatioOfTheScreen) {
  EXPECT_EQ(wholePixelRatio(1), 1);
  EXPECT_EQ(wholePixelRatio(1.25), 1);
  EXPECT_EQ(wholePixelRatio(1.5), 2);
  EXPECT_EQ(wholePixelRatio(2), 2);
  EXPECT_EQ(wholePixelRatio(3), 3);
  // Nonsense from a platform never gives a picture of no pixels or of billions.
  EXPECT_EQ(wholePixelRatio(0), 1);
  EXPECT_EQ(wholePixelRatio(-2), 1);
  EXPECT_EQ(wholePixelRatio(std::numeric_limits<double>::quiet_NaN()), 1);
  EXPECT_EQ(wholePixelRatio(1e9), 8);
}

TEST(ScreenScale, AStoredZoomAtRatioOneIsUntouched) {
  for (int zoom = 0; zoom < kZoomCount; ++zoom)
    for (bool wide : {false, true}) {
      const DisplayGeometry z = DisplayGeometry::make(zoom, wide);
      const DisplayGeometry s = screenGeometry(z, ScreenScale{});
      EXPECT_EQ(s.zoomIndex, zoom);
      EXPECT_EQ(s.pictureWidth(), z.pictureWidth());
      EXPECT_EQ(s.pixelX(17), z.pixelX(17));
    }
}

TEST(ScreenScale, RatioDrawsTheZoomAtDevicePixelsWithTheSameWindowSize) {
  const DisplayGeometry z = DisplayGeometry::make(1, false);
  const DisplayGeometry s = screenGeometry(z, ScreenScale{2, 0, 0});
  EXPECT_EQ(s.zoomIndex, kScreenZoom);  // not a stored zoom: no one-to-one pixel paths
  EXPECT_EQ(s.halfScale(), 4);
  EXPECT_EQ(s.margin(), 20);
  EXPECT_EQ(s.pictureWidth(), 681);
  EXPECT_EQ(s.pictureHeight(), 553);
  // The window keeps the stored zoom's size in its own pixels.
  EXPECT_EQ(s.windowWidth(), z.pictureWidth());
  EXPECT_EQ(s.windowHeight(), z.pictureHeight());
  // Every logical point lands on twice the window pixel it had.
  for (int x : {0, 1, 160, 320}) EXPECT_EQ(s.pixelX(x), 2 * z.pixelX(x)) << x;
  for (int y : {0, 127, 256}) EXPECT_EQ(s.pixelY(y), 2 * z.pixelY(y)) << y;
}

TEST(ScreenScale, FitTakesTheLargestScaleTheRoomHolds) {
  // 341 x 277 is the normal size exactly: scale 2. One pixel less in either direction: scale 1.
  EXPECT_EQ(fitHalfScale(341, 277, false, 1), 2);
  EXPECT_EQ(fitHalfScale(340, 277, false, 1), 1);
  EXPECT_EQ(fitHalfScale(341, 276, false, 1), 1);
  // The narrower side decides; wide needs more width for the same scale.
  EXPECT_EQ(fitHalfScale(2000, 533, false, 1), 4);
  EXPECT_EQ(fitHalfScale(981, 2000, false, 1), 6);
  EXPECT_EQ(fitHalfScale(981, 2000, true, 1), 4);
  // Margins in device pixels grow with the ratio.
  EXPECT_EQ(fitHalfScale(681, 553, false, 2), 4);
  EXPECT_EQ(fitHalfScale(680, 553, false, 2), 3);
  // Too small a room still draws something; a huge one stays bounded.
  EXPECT_EQ(fitHalfScale(0, 0, false, 1), 1);
  EXPECT_EQ(fitHalfScale(-5, 100000, false, 1), 1);
  EXPECT_EQ(fitHalfScale(1 << 30, 1 << 30, false, 3), kMaxFitHalfScale);

  for (int room : {150, 341, 500, 777, 1234, 3000})
    for (bool wide : {false, true}) {
      DisplayGeometry g = screenGeometry(DisplayGeometry::make(3, wide), ScreenScale{1, room, room});
      if (g.halfScale() == 1) continue;
      EXPECT_LE(g.pictureWidth(), room);
      EXPECT_LE(g.pictureHeight(), room);
      ++g.half;  // the next scale would not fit
      EXPECT_TRUE(g.pictureWidth() > room || g.pictureHeight() > room) << room;
    }
}

TEST(ScreenScale, CanvasDrawsAtTheScreenAndSavesAtTheZoomsSize) {
  DisplayCanvas c;
  c.setScreen(ScreenScale{2, 0, 0});
  c.setup(DisplayGeometry::make(1, false), 0xFF000000, true);
  EXPECT_EQ(c.width(), 681);
  EXPECT_EQ(c.zoomGeometry().pictureWidth(), 341);
  // A line at logical row 128 across the screen: drawn at the device rows of the scaled geometry.
  c.line(0, 128, 320, 128, 0xFFFF0000);
  EXPECT_EQ(c.pixel(c.geometry().pixelX(100), c.geometry().pixelY(128)), 0xFFFF0000u);
  const QImage saved = c.zoomImage();
  EXPECT_EQ(saved.size(), QSize(341, 277));
  // Taken down, the line is still there.
  EXPECT_GT(qRed(saved.pixel(DisplayGeometry::make(1, false).pixelX(100), 138)), 60);
  // The screen's scale stays for the next setup (a new zoom); without it the surface is the zoom's own.
  c.setup(DisplayGeometry::make(2, false), 0xFF000000, true);
  EXPECT_EQ(c.width(), 1321);
  c.setScreen(ScreenScale{});
  c.setup(DisplayGeometry::make(2, false), 0xFF000000, true);
  EXPECT_EQ(c.width(), 661);
  EXPECT_EQ(c.zoomImage().size(), QSize(661, 533));
}

TEST(TriggerLevelText, VoltsOfTheLevelsRow) {
  PlotInputs in;
  in.voltPerDiv = 0.5f;
  in.voltOffset = 0;
  in.triggerLevelRow = 128 + 64;  // two divisions up
  EXPECT_EQ(triggerLevelText(in), "1V");
  in.triggerLevelRow = 128;
  EXPECT_EQ(triggerLevelText(in), "0V");
  in.voltOffset = 0.25f;
  in.triggerLevelRow = 128 - 16;  // half a division under an offset of 0.25 V: zero, not a rounding rest
  EXPECT_EQ(triggerLevelText(in), "0V");
  in.triggerLevelRow = 0;
  EXPECT_EQ(triggerLevelText(in), "-1.75V");
  in.triggerLevelRow = 256;
  EXPECT_EQ(triggerLevelText(in), "2.25V");
  // Off the screen, or no scale to read it by: no text.
  in.triggerLevelRow = -1;
  EXPECT_EQ(triggerLevelText(in), "");
  in.triggerLevelRow = 257;
  EXPECT_EQ(triggerLevelText(in), "");
  in.triggerLevelRow = 100;
  in.voltPerDiv = 0;
  EXPECT_EQ(triggerLevelText(in), "");
  in.voltPerDiv = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(triggerLevelText(in), "");
}

TEST(WheelZoom, StepsAlongTheKeysAndOff) {
  const std::vector<int> h = {2, 4, 5, 10}, v = {2, 5, 10};
  EXPECT_EQ(wheelZoomFactor(h, 1, 1), 2);
  EXPECT_EQ(wheelZoomFactor(h, 2, 1), 4);
  EXPECT_EQ(wheelZoomFactor(h, 4, 2), 10);
  EXPECT_EQ(wheelZoomFactor(h, 10, 1), 10);  // stays at the largest
  EXPECT_EQ(wheelZoomFactor(h, 5, -1), 4);
  EXPECT_EQ(wheelZoomFactor(h, 2, -1), 1);  // below the smallest: every key off
  EXPECT_EQ(wheelZoomFactor(h, 1, -3), 1);
  EXPECT_EQ(wheelZoomFactor(v, 2, 1), 5);
  EXPECT_EQ(wheelZoomFactor(v, 1, 100), 10);
  EXPECT_EQ(wheelZoomFactor(v, 1, std::numeric_limits<int>::min()), 1);
  EXPECT_EQ(wheelZoomFactor(v, 3, 1), 2);  // a factor the keys lack counts as no zoom
  EXPECT_EQ(wheelZoomFactor({}, 5, 1), 1);
}

TEST(WheelZoom, ScrollMovesTheViewWithinItsRange) {
  // Horizontally the larger value shows earlier times: turning away moves the view later.
  EXPECT_EQ(wheelScrollValue(ZoomAxis::Horizontal, 0, 1, 60), -60);
  EXPECT_EQ(wheelScrollValue(ZoomAxis::Vertical, 0, 1, 60), 60);
  EXPECT_EQ(wheelScrollValue(ZoomAxis::Horizontal, -980, 1, 60), ViewZoom::kMin);
  EXPECT_EQ(wheelScrollValue(ZoomAxis::Vertical, 990, 2, 60), ViewZoom::kMax);
  EXPECT_EQ(wheelScrollValue(ZoomAxis::Vertical, 0, std::numeric_limits<int>::min(), 1 << 30),
            ViewZoom::kMin);
}

TEST(WheelZoom, NotchesFromAFineWheelAddUp) {
  int rest = 0;
  EXPECT_EQ(takeWheelNotches(rest, 40), 0);
  EXPECT_EQ(takeWheelNotches(rest, 40), 0);
  EXPECT_EQ(takeWheelNotches(rest, 50), 1);
  EXPECT_EQ(rest, 10);
  EXPECT_EQ(takeWheelNotches(rest, -250), -2);  // 10 - 250 = -240
  EXPECT_EQ(rest, 0);
  EXPECT_EQ(takeWheelNotches(rest, 360), 3);
  rest = 0;
  EXPECT_EQ(takeWheelNotches(rest, -130), -1);
  EXPECT_EQ(rest, -10);
  EXPECT_EQ(takeWheelNotches(rest, std::numeric_limits<int>::max()), 1'000'000 / 120);
}
