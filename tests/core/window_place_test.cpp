#include "core/window_place.h"

#include <gtest/gtest.h>

using namespace zorvik;

namespace {
const PlaceRect kArea{0, 0, 1920, 1040};
const PlaceRect kMain{100, 50, 900, 700};
}  // namespace

TEST(WindowPlace, NewWindowsStandBesideTheMainWindowAndCascade) {
  const PlaceRect meter{0, 0, 200, 120};
  EXPECT_EQ(besideMain(meter, kMain, kArea, {}), (PlacePoint{1000, 50}));
  // Three windows already open on that spot and its cascade: the fourth goes one step further each time.
  std::vector<PlacePoint> open{{1000, 50}, {1024, 74}, {1048, 98}};
  EXPECT_EQ(besideMain(meter, kMain, kArea, open), (PlacePoint{1072, 122}));
  // A window elsewhere does not move it.
  EXPECT_EQ(besideMain(meter, kMain, kArea, {{5, 5}}), (PlacePoint{1000, 50}));
}

TEST(WindowPlace, NoRoomOnTheRightGoesLeftElseOverTheMainWindowAndStaysInTheArea) {
  const PlaceRect wide{0, 0, 1100, 500};
  const PlaceRect rightMain{700, 100, 900, 700};
  EXPECT_EQ(besideMain({0, 0, 500, 300}, rightMain, kArea, {}), (PlacePoint{200, 100}));
  // Neither side holds it: over the main window's right part, pulled into the area.
  EXPECT_EQ(besideMain(wide, rightMain, kArea, {}), (PlacePoint{500, 100}));
  // The cascade stops at the area's corner instead of leaving the screen.
  const PlaceRect big{0, 0, 1900, 1000};
  EXPECT_EQ(besideMain(big, kMain, kArea, {}), (PlacePoint{0, 40}));
  EXPECT_EQ(besideMain(big, kMain, kArea, {{0, 40}}), (PlacePoint{20, 40}));
  EXPECT_EQ(besideMain(big, kMain, kArea, {{0, 40}, {20, 40}}), (PlacePoint{20, 40}));
}

TEST(WindowPlace, IntoAreaPullsBackAndKeepsTheCornerOfATooLargeWindow) {
  EXPECT_EQ(intoArea({1800, 900, 400, 300}, kArea), (PlacePoint{1520, 740}));
  EXPECT_EQ(intoArea({-50, -10, 400, 300}, kArea), (PlacePoint{0, 0}));
  EXPECT_EQ(intoArea({300, 200, 2500, 1200}, kArea), (PlacePoint{0, 0}));
  EXPECT_EQ(intoArea({300, 200, 400, 300}, {100, 30, 1820, 1010}), (PlacePoint{300, 200}));
}
