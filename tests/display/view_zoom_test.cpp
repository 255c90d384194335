#include "display/view_zoom.h"

#include <gtest/gtest.h>

#include "config/settings.h"

using namespace zorvik;

TEST(ViewZoom, KeysTurnEachOtherOffAndEachFactorRemembersItsPosition) {
  MemorySettings store;
  ViewZoom h(store, ZoomAxis::Horizontal);
  int changes = 0;
  h.onChange = [&] { ++changes; };

  h.keyClicked(5, true);
  EXPECT_EQ(h.factor(), 5);
  EXPECT_TRUE(h.keyOn(5));
  EXPECT_TRUE(h.scrollEnabled());
  EXPECT_EQ(h.value(), 0);  // (min + max) / 2 until one is stored
  EXPECT_EQ(h.largeStep(), 500);
  EXPECT_EQ(h.scrollToolTip(), "Zoomed view pozition");
  EXPECT_EQ(store.GetSettingValue("Hor", "HorZoom", ""), "5");

  h.setValue(700);
  EXPECT_EQ(store.GetSettingValue("Hor", "HorZoom 5Poz", ""), "700");
  EXPECT_DOUBLE_EQ(h.frac(), 0.7);

  h.keyClicked(2, true);  // the other key: x5 goes off, x2 has its own position
  EXPECT_FALSE(h.keyOn(5));
  EXPECT_EQ(h.value(), 0);
  h.keyClicked(5, false);  // a key that is already off changes nothing
  EXPECT_EQ(h.factor(), 2);
  h.keyClicked(5, true);
  EXPECT_EQ(h.value(), 700);

  // Off with no other key on: a full view, and the stored factor reads 1.
  h.keyClicked(5, false);
  EXPECT_EQ(h.factor(), 1);
  EXPECT_FALSE(h.scrollEnabled());
  EXPECT_EQ(h.scrollToolTip(), "Full view");
  EXPECT_EQ(store.GetSettingValue("Hor", "HorZoom", ""), "1");
  EXPECT_EQ(changes, 5);
}

TEST(ViewZoom, RestoreSwitchOffAndBadStoredValues) {
  MemorySettings store;
  store.SaveSettingValue("Ch1", "VertZoom", "4");  // no x4 key vertically
  ViewZoom v(store, ZoomAxis::Vertical);
  v.restore();
  EXPECT_EQ(v.factor(), 1);

  store.SaveSettingValue("Ch1", "VertZoom", "10");
  store.SaveSettingValue("Ch1", "VertZoom 10Poz", "1e300");
  v.restore();
  EXPECT_EQ(v.factor(), 10);
  EXPECT_EQ(v.value(), ViewZoom::kMax);  // limited to the scroll
  EXPECT_DOUBLE_EQ(v.frac(), 0.5);       // Value / (Max - Min) vertically
  store.SaveSettingValue("Ch1", "VertZoom 10Poz", "nan");
  v.setZoom(10);
  EXPECT_EQ(v.value(), 0);

  v.switchOff();
  EXPECT_EQ(v.factor(), 1);
  EXPECT_EQ(store.GetSettingValue("Ch1", "VertZoom", ""), "1");
  EXPECT_EQ(ViewZoom::keyToolTip(ZoomAxis::Horizontal, 4), "five times expand");
  EXPECT_EQ(ViewZoom::keyToolTip(ZoomAxis::Vertical, 10), "ten times vert expand");
}

TEST(ViewZoom, SelectionPicksTheFactorFromTheTables) {
  struct Case {
    int present;
    double r;
    int h;
  };
  for (const Case& c : {Case{1, 12, 10},
                        {1, 5, 5},
                        {1, 4.5, 4},
                        {1, 3, 2},
                        {1, 1.9, 1},
                        {2, 5, 10},
                        {2, 3, 5},
                        {2, 2.2, 4},
                        {2, 1.5, 2},
                        {4, 2.5, 10},
                        {4, 1.3, 5},
                        {4, 1.2, 4},
                        {5, 2, 10},
                        {5, 1.9, 5},
                        {10, 50, 10}})
    EXPECT_EQ(horizontalZoomForSelection(c.present, c.r), c.h) << c.present << " at r " << c.r;
  EXPECT_EQ(verticalZoomForSelection(1, 10), 10);
  EXPECT_EQ(verticalZoomForSelection(1, 6), 5);
  EXPECT_EQ(verticalZoomForSelection(1, 2), 2);
  EXPECT_EQ(verticalZoomForSelection(2, 2.5), 5);
  EXPECT_EQ(verticalZoomForSelection(2, 2.4), 2);
  // No steps from 5 or 10.
  EXPECT_EQ(verticalZoomForSelection(5, 100), 5);
  EXPECT_EQ(verticalZoomForSelection(10, 100), 10);
}

TEST(ViewZoom, TheSelectionsMiddleBecomesTheViewsMiddleAsFarAsTheScrollGoes) {
  // From a full view, a point 0.3 across: at x2 the view's middle can stand from 0.25 to 0.75, so 0.3
  // is 0.8 of the way to the left end.
  EXPECT_EQ(viewValueCentring(ZoomAxis::Horizontal, 1, 0, 0.3, 2), 800);
  EXPECT_EQ(viewValueCentring(ZoomAxis::Horizontal, 1, 0, 0.5, 10), 0);
  EXPECT_EQ(viewValueCentring(ZoomAxis::Horizontal, 1, 0, 0.0, 2), ViewZoom::kMax);  // the left end, limited
  EXPECT_EQ(viewValueCentring(ZoomAxis::Vertical, 1, 0, 0.7, 2), 800);               // towards the top
  EXPECT_EQ(viewValueCentring(ZoomAxis::Vertical, 1, 0, 1.0, 5), ViewZoom::kMax);
  // From a zoomed view at its left end, its own middle stays where it is.
  EXPECT_EQ(viewValueCentring(ZoomAxis::Horizontal, 2, ViewZoom::kMax, 0.5, 4), 667);
  EXPECT_EQ(viewValueCentring(ZoomAxis::Horizontal, 2, 0, 0.5, 1), 0);
}
