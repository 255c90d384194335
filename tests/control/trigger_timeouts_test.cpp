#include "control/trigger_timeouts.h"

#include <gtest/gtest.h>

#include <memory>

#include "config/settings.h"
#include "control/trigger_control.h"
#include "core/recording_sink.h"
#include "link/fake_obex.h"
#include "session/main_controller.h"

using namespace zorvik;

namespace {

using T = TriggerTimeouts;

TEST(TriggerTimeouts, TypedValuesInTheirUnitsBecomeWholeMicroseconds) {
  EXPECT_EQ(T::micros("1,5", T::Milliseconds), 1500);  // a comma stands for the point
  EXPECT_EQ(T::micros("250", T::Microseconds), 250);
  EXPECT_EQ(T::micros("400", T::Nanoseconds), 0);
  EXPECT_EQ(T::micros("1500", T::Nanoseconds), 2);  // rounded, not cut
  EXPECT_EQ(T::micros("-3", T::Milliseconds), 0);
  EXPECT_EQ(T::micros("5e9", T::Milliseconds), 2000000000);
  EXPECT_EQ(T::micros("soon", T::Milliseconds), 0);
  EXPECT_EQ(T::micros("12us", T::Microseconds), 12);  // read as far as it is a number
}

TEST(TriggerTimeouts, EachTimeoutIsStoredAndWrittenToItsRegister) {
  MemorySettings settings;
  RecordingSink sink;
  MainView view;
  test::FakeObex link;
  MainController main{settings, sink, view};
  main.attachLink(&link);
  TriggerControl trigger(main);
  link.online = true;
  main.cache().MC = 1000;
  T timeouts(settings, trigger);

  EXPECT_EQ(timeouts.set(T::Auto, "2", T::Milliseconds), 2000);
  EXPECT_EQ(settings.GetSettingValue("Mode", "TimeoutAuto", ""), "2000");
  EXPECT_EQ(link.calls.back(), "Put4 TA=16666");
  EXPECT_EQ(timeouts.set(T::Norm, "100000", T::Microseconds), 100000);
  EXPECT_EQ(settings.GetSettingValue("Mode", "TimeoutWait", ""), "100000");
  EXPECT_EQ(link.calls.back(), "Put4 TW=833333");
  EXPECT_EQ(settings.GetSettingValue("Mode", "TimeoutAuto", ""), "2000");
  main.attachLink(nullptr);
}

}  // namespace
