#include "control/scale_lists.h"

#include <gtest/gtest.h>

#include "core/fault.h"

using namespace zorvik;

TEST(ScaleLists, EntriesInEngineeringText) {
  EXPECT_EQ(voltDivText(kVoltDivFirst), "20mV");
  EXPECT_EQ(voltDivText(8), "500mV");
  EXPECT_EQ(voltDivText(9), "1V");
  EXPECT_EQ(voltDivText(kVoltDivLast), "10V");
  EXPECT_EQ(timeDivText(kTimeDivFirst), "20ns");
  EXPECT_EQ(timeDivText(kTimeDivRealTime), "500ns");
  EXPECT_EQ(timeDivText(10), "2\xC2\xB5s");
  EXPECT_EQ(timeDivText(kTimeDivLast), "500ms");
  EXPECT_FLOAT_EQ(timeDivValue(15), 100e-6f);
  EXPECT_THROW(voltDivValue(13), Fault);
  EXPECT_THROW(timeDivValue(-1), Fault);
  EXPECT_THROW(timeDivText(27), Fault);
}

TEST(ScaleLists, ZoomForFastPositionsAndItsStepsDown) {
  EXPECT_EQ(fallbackZoom(7), 2);
  EXPECT_EQ(fallbackZoom(6), 4);
  EXPECT_EQ(fallbackZoom(5), 5);
  EXPECT_EQ(fallbackZoom(4), 10);
  struct Pair {
    int zoom, jump, after;
  };
  const Pair pairs[] = {{2, 1, 1},  {2, 5, 1},  {4, 1, 2},  {4, 2, 1},  {5, 1, 4},  {5, 2, 2},   {5, 3, 1},
                        {10, 1, 5}, {10, 2, 1}, {10, 3, 2}, {10, 4, 4}, {10, 5, 1}, {10, 22, 1}, {1, 3, 1}};
  for (const Pair& p : pairs) EXPECT_EQ(zoomAfterRise(p.zoom, p.jump), p.after) << p.zoom << " by " << p.jump;
}
