#include <gtest/gtest.h>

#include "display/display_canvas.h"
#include "display/display_geometry.h"
#include "display/display_settings.h"
#include "display_test_util.h"

using namespace zorvik;

namespace {
constexpr QRgb kBlack = 0xFF000000;
bool olive(const QImage& img, int x, int y) {
  return img.pixel(x, y) == kGridOlive;
}
}  // namespace

TEST(DisplayGeometry, ZoomOutOfRangeIsNormalSize) {
  EXPECT_EQ(normalizeZoomIndex(4), 1);
  EXPECT_EQ(normalizeZoomIndex(-1), 1);
  EXPECT_EQ(normalizeZoomIndex(0), 0);
  EXPECT_EQ(normalizeZoomIndex(3), 3);

  MemorySettings store;
  store.saveInt("Startup Position", "Zoom", 4);
  DisplaySettings s;
  s.load(store, 1000);
  EXPECT_EQ(s.zoom, 1);
}

TEST(DisplayGeometry, PictureSizesMarginsAndScale) {
  struct Row {
    int zoom, w, h, wideW, perDiv, margin;
  };
  for (const Row& r : {Row{0, 181, 149, 261, 16, 20}, Row{1, 341, 277, 501, 32, 10},
                       Row{2, 661, 533, 981, 64, 5}, Row{3, 981, 789, 1461, 96, 3}}) {
    const DisplayGeometry normal = DisplayGeometry::make(r.zoom, false),
                          wide = DisplayGeometry::make(r.zoom, true);
    EXPECT_EQ(normal.pictureWidth(), r.w) << r.zoom;
    EXPECT_EQ(normal.pictureHeight(), r.h) << r.zoom;
    EXPECT_EQ(wide.pictureWidth(), r.wideW) << r.zoom;
    EXPECT_EQ(wide.pictureHeight(), r.h) << r.zoom;
    EXPECT_EQ(normal.pixelsPerDiv(), r.perDiv);
    EXPECT_EQ(normal.Margin(), r.margin);
    // Ten blank pixels around the grid at every zoom; row 0 at the bottom.
    EXPECT_EQ(normal.pixelX(0), 10);
    EXPECT_EQ(normal.pixelY(kTraceRows), 10);
    EXPECT_EQ(normal.pixelX(320), r.w - 11);
    EXPECT_EQ(normal.pixelY(0), r.h - 11);
  }
  // At zoom 1 a cell (x, y) is the pixel (x + 10, 266 - y), as the bitmap path writes it.
  const DisplayGeometry g = DisplayGeometry::make(1, false);
  EXPECT_EQ(g.pixelX(57), 67);
  EXPECT_EQ(g.pixelY(100), 166);
}

TEST(GridPicture, DivisionLinesAtEveryZoomAndWidth) {
  for (int zoom = 0; zoom < kZoomCount; ++zoom)
    for (bool wide : {false, true}) {
      const DisplayGeometry g = DisplayGeometry::make(zoom, wide);
      const QImage img = makeGridPicture(g, kBlack, true);
      const int between = g.pixelY(8);  // off every line and tick
      int lines = 0;
      for (int px = 0; px < img.width(); ++px) lines += olive(img, px, between);
      EXPECT_EQ(lines, wide ? 16 : 11) << zoom << wide;
      int rows = 0;
      for (int py = 0; py < img.height(); ++py) rows += olive(img, g.pixelX(8), py);
      EXPECT_EQ(rows, 9) << zoom << wide;
      // The margin stays blank.
      for (int i = 0; i < kPictureMargin; ++i) {
        EXPECT_FALSE(olive(img, i, img.height() / 2));
        EXPECT_FALSE(olive(img, img.width() - 1 - i, img.height() / 2));
        EXPECT_FALSE(olive(img, img.width() / 2, i));
      }
    }
}

TEST(GridPicture, HalfDivisionTicksBesideTheCentreLines) {
  const DisplayGeometry g = DisplayGeometry::make(1, false);
  const QImage img = makeGridPicture(g, kBlack, true);
  // On the vertical centre line, a tick 2 pixels either side at every half division.
  const int cx = g.pixelX(160), half = g.pixelY(16);
  EXPECT_TRUE(olive(img, cx - 2, half));
  EXPECT_TRUE(olive(img, cx + 2, half));
  EXPECT_FALSE(olive(img, cx + 3, half));
  EXPECT_FALSE(olive(img, g.pixelX(32) + 2, half));  // not beside the other division lines
  // On the horizontal centre line, ticks up and down at every half division.
  const int cy = g.pixelY(128), hx = g.pixelX(16);
  EXPECT_TRUE(olive(img, hx, cy - 2));
  EXPECT_TRUE(olive(img, hx, cy + 2));
  EXPECT_FALSE(olive(img, hx, cy + 3));

  // Wide: two tick columns at the thirds, none at the middle; longer ticks from zoom 2.
  const DisplayGeometry w = DisplayGeometry::make(2, true);
  const QImage wi = makeGridPicture(w, kBlack, true);
  const int wh = w.pixelY(16);
  EXPECT_TRUE(olive(wi, w.pixelX(160) + 3, wh));
  EXPECT_TRUE(olive(wi, w.pixelX(320) - 3, wh));
  EXPECT_FALSE(olive(wi, w.pixelX(160) + 4, wh));
  EXPECT_FALSE(olive(wi, w.pixelX(240) + 2, wh));
}

TEST(GridPicture, HiddenGridLeavesTheBackground) {
  const DisplayGeometry g = DisplayGeometry::make(1, true);
  const QRgb back = 0xFF000040;
  const QImage img = makeGridPicture(g, back, false);
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) ASSERT_EQ(img.pixel(x, y), back);
}

TEST(DisplayCanvas, DrawModesWidthsAndClear) {
  DisplayCanvas c;
  c.setup(DisplayGeometry::make(1, false), kBlack, true);
  const DisplayGeometry& g = c.geometry();
  // Copy pen covers the grid, merge pen lets it show through.
  c.point(32, 100, 0xFF00FF00);
  EXPECT_EQ(c.pixel(g.pixelX(32), g.pixelY(100)), 0xFF00FF00u);
  c.setDrawMode(DrawMode::MergePen);
  c.point(64, 100, 0xFF00FF00);
  EXPECT_EQ(c.pixel(g.pixelX(64), g.pixelY(100)), 0xFF7FFF00u);
  c.setDrawMode(DrawMode::CopyPen);
  // A pen of width 3 covers 3 x 3 pixels; both ends of a line are drawn.
  c.setDrawWidth(3);
  c.point(100, 50, 0xFFFF0000);
  EXPECT_EQ(c.pixel(g.pixelX(100) + 1, g.pixelY(50) - 1), 0xFFFF0000u);
  EXPECT_NE(c.pixel(g.pixelX(100) + 2, g.pixelY(50)), 0xFFFF0000u);
  c.setDrawWidth(1);
  c.line(10, 10, 20, 30, 0xFFFFFFFF);
  EXPECT_EQ(c.pixel(g.pixelX(10), g.pixelY(10)), 0xFFFFFFFFu);
  EXPECT_EQ(c.pixel(g.pixelX(20), g.pixelY(30)), 0xFFFFFFFFu);
  // Far outside the surface nothing happens, and clear gives back the picture.
  c.line(-100000, -5, 900000, 7000, 0xFFFFFFFF);
  c.point(1 << 30, -(1 << 30), 0xFFFFFFFF);
  c.clear();
  EXPECT_EQ(c.image(), c.picture());
}
