#include "core/progress_line.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace zorvik;

TEST(ProgressLine, RewritesOnATerminalOnlyWhenThePercentMovesAndWipesAtTheEnd) {
  std::ostringstream out;
  {
    ProgressLine p(out, true, "packets", 400);
    for (int i = 1; i <= 8; ++i) p.step(i);  // 0 % and 1 % and 2 %: three lines, not eight
  }
  EXPECT_EQ(out.str(), "\rpackets: 1/400 (0%)\rpackets: 4/400 (1%)\rpackets: 8/400 (2%)\r\x1b[K");
  std::ostringstream quiet;
  {
    ProgressLine p(quiet, false, "packets", 400);
    p.step(200);
  }
  EXPECT_EQ(quiet.str(), "");  // a script's stderr stays clean
}
