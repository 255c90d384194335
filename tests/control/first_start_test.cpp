#include <gtest/gtest.h>

#include "config/settings.h"
#include "control/scale_lists.h"
#include "control/silent_obex.h"
#include "control/trigger_control.h"
#include "core/recording_sink.h"
#include "session/basic_control.h"
#include "session/main_controller.h"

using namespace zorvik;

// A store with nothing in it: the controllers start from the defaults, some of which they compute.
TEST(FirstStart, TheControlsStandAtTheirDefaults) {
  MemorySettings settings;
  RecordingSink sink;
  MainView view;
  MainController main{settings, sink, view};
  BasicControl control(main);
  TriggerControl trigger(main);

  // The lowest position of the time/div list, 20 ns; without RIS the 500 ns entry at ten times zoom
  // stands in for it.
  const TimebaseModel& t = control.timebase().model();
  EXPECT_EQ(t.ScrollTimeDiv, kTimeDivFirst);
  EXPECT_EQ(t.TimeDiv, kTimeDivRealTime);
  EXPECT_EQ(t.horZoom, 10);

  EXPECT_EQ(main.cache().M1 & 7, 3);  // "PeakNI": peak, not interpolating
  EXPECT_EQ(trigger.model().TrigInd1, "/");
  EXPECT_EQ(main.cache().T1 & 0x30, 0x20);  // the rising edge
}
