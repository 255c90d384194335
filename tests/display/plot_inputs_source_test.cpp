#include "control/plot_inputs_source.h"

#include <gtest/gtest.h>

#include "control/channel_control.h"
#include "control/timebase_control.h"
#include "control/trigger_control.h"

using namespace zorvik;

TEST(PlotInputsSource, ScaleDelayAndTheLevelRowUnderTheVerticalZoom) {
  ChannelModel ch;
  ch.ZoomVoltPerDiv = 0.05f;
  ch.ZoomCentre = -0.1f;
  TimebaseModel tb;
  tb.HScrollCenterValue = 40;
  tb.HScrollCenterMax = 332;
  TriggerModel trig;
  trig.level = 160;
  trig.DelaySeconds = 0.002;

  PlotInputs in;
  fillPlotInputs(in, ch, tb, trig);
  EXPECT_FLOAT_EQ(in.voltPerDiv, 0.05f);
  EXPECT_FLOAT_EQ(in.voltOffset, -0.1f);
  EXPECT_EQ(in.PreSamples, 40);
  EXPECT_EQ(in.hScrollCenterMax, 332);
  EXPECT_EQ(in.DelayTime, 0.0f);  // a delay that is off does not move the time
  EXPECT_EQ(in.triggerLevelRow, 160);

  trig.delayOn = true;
  in.vZoom = 2;  // the view's middle: the level's distance from the centre doubles
  fillPlotInputs(in, ch, tb, trig);
  EXPECT_FLOAT_EQ(in.DelayTime, 0.002f);
  EXPECT_EQ(in.triggerLevelRow, 192);
  in.vViewFrac = 0.5;  // the view panned up: the level moves down by half the screen
  fillPlotInputs(in, ch, tb, trig);
  EXPECT_EQ(in.triggerLevelRow, 64);
  trig.level = 250;
  in.vViewFrac = 0;
  fillPlotInputs(in, ch, tb, trig);
  EXPECT_EQ(in.triggerLevelRow, -1);
}
