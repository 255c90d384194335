// The render's passes four cells at a time against the colour of each count on its own.
#include <gtest/gtest.h>

#include <random>

#include "display/display_canvas.h"
#include "display/display_geometry.h"
#include "display/persistence.h"

using namespace zorvik;

TEST(PersistenceRender, EveryCellTakesTheColourOfItsCountInBothGradings) {
  std::mt19937 rng(42);
  for (bool colour : {false, true}) {
    for (int emphasis : {0, 3, 5}) {
      for (bool inverted : {false, true}) {
        Persistence p;
        // Columns of small, large and no counts, with empty cells between.
        for (int x = 0; x < 480; ++x) {
          const int scale = x % 3 == 0 ? 3 : x % 3 == 1 ? 5000 : 0;
          if (scale == 0) continue;
          for (int y = 1; y < 255; ++y)
            if (rng() % 3 == 0) p.addHit(x, y, 1 + static_cast<int>(rng() % static_cast<unsigned>(scale)));
        }
        GradeStyle g;
        g.colour = colour;
        g.emphasis = emphasis;
        g.inverted = inverted;
        g.colorItem = 3 + emphasis % 5;
        DisplayCanvas canvas;
        canvas.setup(DisplayGeometry::make(1, true), 0xFF000000, false);
        g.byBitmap = true;
        p.render(canvas, 0, 479, 1, g);
        for (int y = 1; y < 255; ++y) {
          const uint32_t* row = canvas.row(kTraceRows + kPictureMargin - y);
          for (int x = 0; x < 480; ++x) {
            const int32_t c = p.count(x, y);
            if (c <= 0) continue;
            ASSERT_EQ(row[x + kPictureMargin], 0xFF000000u | Persistence::colourOf(c, p.max(x), g))
                << colour << " " << emphasis << " " << inverted << " at " << x << "," << y;
          }
        }
      }
    }
  }
}
