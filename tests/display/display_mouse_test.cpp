#include "display/display_mouse.h"

#include <gtest/gtest.h>

using namespace zorvik;

namespace {
MouseScale scale() {
  MouseScale s;
  s.secondsPerUnit = 1e-6 / 32;  // 1 µs a division
  s.voltsPerRow = 0.5 / 32;      // 0.5 V a division
  s.timeAtLeft = -5e-6;
  return s;
}
}  // namespace

TEST(DisplayMouse, MarkersShowFromSixUnitsWithTheDistanceBesideThem) {
  DisplayMouse m;
  m.leftDown(100, 100);
  m.leftMove(105, 95, scale());  // 5 units: nothing yet
  EXPECT_FALSE(m.vertical().visible);
  EXPECT_FALSE(m.horizontal().visible);

  m.leftMove(164, 100, scale());  // two divisions to the right
  ASSERT_TRUE(m.vertical().visible);
  EXPECT_FALSE(m.horizontal().visible);
  EXPECT_EQ(m.vertical().at, 164);
  EXPECT_EQ(m.vertical().text, "2µS  500kHz");  // the span and the frequency of that period
  EXPECT_TRUE(m.vertical().textAfter);

  m.leftMove(36, 36, scale());  // back left and down
  EXPECT_FALSE(m.vertical().textAfter);
  EXPECT_EQ(m.vertical().text, "2µS  500kHz");
  EXPECT_EQ(m.vertical().textAlong, 68);  // the middle of the movement
  ASSERT_TRUE(m.horizontal().visible);
  EXPECT_EQ(m.horizontal().text, "1V");
  EXPECT_FALSE(m.horizontal().textAfter);
  EXPECT_EQ(m.horizontal().textAlong, 68);

  m.leftUp();
  EXPECT_TRUE(m.vertical().visible);  // the markers stay until the next key down
  m.rightDown(10, 10);
  EXPECT_FALSE(m.vertical().visible);
  EXPECT_FALSE(m.horizontal().visible);
}

TEST(DisplayMouse, SelectionNeedsAnAreaAndPopsItsMenu) {
  DisplayMouse m;
  m.rightDown(50, 200);
  EXPECT_FALSE(m.rightUp());
  m.rightDown(50, 200);
  m.rightMove(50, 100);  // no width
  EXPECT_FALSE(m.selection().visible);
  m.rightMove(20, 100);
  ASSERT_TRUE(m.selection().visible);
  EXPECT_EQ(m.selection().left(), 20);
  EXPECT_EQ(m.selection().right(), 50);
  EXPECT_EQ(m.selection().bottom(), 100);
  EXPECT_EQ(m.selection().top(), 200);
  EXPECT_TRUE(m.rightUp());
  m.leftDown(0, 0);
  EXPECT_FALSE(m.selection().visible);
}

TEST(DisplayMouse, CursorReadOut) {
  EXPECT_EQ(DisplayMouse::cursorText(160, 192, scale()), "0S  1V");
  EXPECT_EQ(DisplayMouse::cursorText(0, 128, scale()), "-5µS  0V");
}

TEST(DisplayMouse, TimeMarkerAddsTheInverseOnlyForARealSpan) {
  EXPECT_EQ(DisplayMouse::timeMarkerText(0.02), "20mS  50Hz");
  EXPECT_EQ(DisplayMouse::timeMarkerText(2.5e-9), "2.5nS  400MHz");
  // No time base known yet (a scale of 0) or a span too small to invert: the time alone, never "inf".
  EXPECT_EQ(DisplayMouse::timeMarkerText(0), "0S");
  EXPECT_EQ(DisplayMouse::timeMarkerText(1e-320).find("Hz"), std::string::npos);
  DisplayMouse m;
  m.leftDown(0, 0);
  m.leftMove(64, 0, MouseScale{});
  ASSERT_TRUE(m.vertical().visible);
  EXPECT_EQ(m.vertical().text, "0S");
}
