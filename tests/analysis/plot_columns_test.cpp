#include "spectrum/plot_columns.h"

#include <gtest/gtest.h>

using namespace zorvik;

// Lagrange through a quadratic's values gives the quadratic between them; a zoomed axis starts at its
// left edge.
TEST(PlotColumns, LagrangeFollowsAPolynomialAndTheAxisStartsAtItsLeft) {
  std::vector<float> values;
  for (int i = 0; i < 16; ++i) values.push_back(static_cast<float>(0.01 * i * i));
  // 16 bins of 1 across 8 (from 4): 2 columns a bin on a plot 17 wide.
  const ColumnAxis axis{1, 8, 4, 0, 4};
  const std::vector<float> rows = plotColumns(values, 16, axis, false, kLagrange, 2, 17, 400);
  for (int x = 0; x < 17; ++x) {
    const double b = 4 + x * 0.5;
    EXPECT_NEAR(rows[static_cast<size_t>(x)], (4 - 0.01 * b * b) * 100, 1e-3) << x;
  }
  const std::vector<float> plain = plotColumns(values, 16, axis, false, kNoInterpolation, 2, 17, 400);
  EXPECT_NEAR(plain[0], (4 - 0.16) * 100, 1e-3);  // bin 4 at the left edge
  EXPECT_EQ(plain[1], kEmptyColumn);
}
