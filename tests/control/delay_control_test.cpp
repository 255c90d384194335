#include "control/delay_control.h"

#include <gtest/gtest.h>

#include "config/settings.h"
#include "control/trigger_control.h"
#include "core/recording_sink.h"
#include "link/fake_obex.h"
#include "session/main_controller.h"

using namespace zorvik;

TEST(DelayControl, DigitsOffAndRestore) {
  MemorySettings settings;
  RecordingSink sink;
  MainView view;
  test::FakeObex link;
  MainController main(settings, sink, view);
  main.attachLink(&link);
  main.cache().MC = 1000;
  TriggerControl trigger(main);
  DelayControl delay(main, trigger);

  delay.setWeight(100);
  delay.step(1);
  delay.step(1);
  delay.setWeight(7);  // not a digit weight: back to 1
  delay.step(-1);
  EXPECT_EQ(delay.delayMicros(), 199);
  EXPECT_EQ(main.cache().TD, countsFromMicros(199, 1000, 0));  // offline: stored at once
  EXPECT_TRUE(trigger.model().delayOn);

  EXPECT_FALSE(delay.restoreEnabled());
  delay.KeyDelayOff_Click();
  EXPECT_EQ(delay.delayMicros(), 0);
  EXPECT_EQ(main.cache().TD, 0);
  EXPECT_FALSE(trigger.model().delayOn);
  EXPECT_TRUE(delay.restoreEnabled());
  delay.KeyDelayRestore_Click();
  EXPECT_EQ(delay.delayMicros(), 199);

  delay.KeyDelayOff_Click();
  delay.step(-1);  // never below 0
  EXPECT_EQ(delay.delayMicros(), 0);
  main.attachLink(nullptr);
}
