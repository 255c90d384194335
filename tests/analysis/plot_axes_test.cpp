#include "analysis/plot_axes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace zorvik;

TEST(PlotAxes, ZoomCutsThePartOfTheRangeAtItsPosition) {
  const PlotRange full{0, 1000, 10, -60};  // 0 to 1 kHz, +10 dB down to -60 dB
  // Vertical: D = 70, Z = 10; at p = 0 the bottom tenth, at p = 1 the top tenth.
  PlotRange r = zoomedRange(full, 1, 0, 10, 0);
  EXPECT_DOUBLE_EQ(r.bottom, -60);
  EXPECT_DOUBLE_EQ(r.top, -53);
  r = zoomedRange(full, 1, 0, 10, 1);
  EXPECT_DOUBLE_EQ(r.top, 10);
  EXPECT_DOUBLE_EQ(r.bottom, 3);
  EXPECT_DOUBLE_EQ(r.left, 0);  // the other axis stands
  EXPECT_DOUBLE_EQ(r.span, 1000);
  // Horizontal: x5 at the right end shows the last fifth.
  r = zoomedRange(full, 5, 1, 1, 0.5);
  EXPECT_DOUBLE_EQ(r.span, 200);
  EXPECT_DOUBLE_EQ(r.left, 800);
  EXPECT_DOUBLE_EQ(r.top, 10);
}

TEST(PlotAxes, BadPositionsAndEmptyRangesAreNotTrusted) {
  const PlotRange full{0, 1000, 1, 0};
  const double nan = std::numeric_limits<double>::quiet_NaN();
  PlotRange r = zoomedRange(full, 2, nan, 2, 7);
  EXPECT_DOUBLE_EQ(r.left, 250);  // NaN: the middle
  EXPECT_DOUBLE_EQ(r.top, 1);     // beyond the top: the top
  r = zoomedRange({0, 0, 0, 0}, 10, 0.5, 10, 0.5);
  EXPECT_DOUBLE_EQ(r.span, 0);
  EXPECT_DOUBLE_EQ(r.top, 0);
}

TEST(PlotAxes, TidyStepsAndGridRows) {
  EXPECT_DOUBLE_EQ(tidyStep(1000, 4), 500);  // 250 a part: the next tidy step
  EXPECT_DOUBLE_EQ(tidyStep(70, 8), 10);
  EXPECT_DOUBLE_EQ(tidyStep(1, 5), 0.2);
  EXPECT_DOUBLE_EQ(tidyStep(0, 5), 0);
  EXPECT_DOUBLE_EQ(tidyStep(std::numeric_limits<double>::infinity(), 5), 0);
  const std::vector<double> ticks = tidyTicks(-67, 3, 10);
  ASSERT_EQ(ticks.size(), 7u);
  EXPECT_DOUBLE_EQ(ticks.front(), -60);
  EXPECT_DOUBLE_EQ(ticks.back(), 0);
  EXPECT_TRUE(tidyTicks(0, 1, 1e-9).empty());  // never a tick per nanovolt
  EXPECT_EQ(gridRows(256, 32), 9);
  EXPECT_EQ(gridRows(20, 32), 2);
}
