#include "control/clock_limits.h"

#include <gtest/gtest.h>

#include "control/control_fixture.h"

using namespace zorvik;

namespace {

struct ClockLimitsTest : test::ControlFixture {
  ClockLimits& limits() {
    if (!limits_) limits_ = std::make_unique<ClockLimits>(main, timebase());
    return *limits_;
  }
  std::unique_ptr<ClockLimits> limits_;
};

TEST(ClockLimitsRange, PulledIntoTheInstrumentsRangeOnceItIsKnown) {
  DeviceCache c;
  EXPECT_EQ(ClockLimits::limitClock(500, c), 500);  // no range yet
  c.MCl = 800;                                      // 125 MHz at the fastest
  EXPECT_EQ(ClockLimits::limitClock(500, c), 500);  // the slowest is still unknown
  c.MCh = 30000;                                    // 3.33 MHz at the slowest
  EXPECT_EQ(ClockLimits::limitClock(500, c), 125);
  EXPECT_EQ(ClockLimits::limitClock(124.6, c), 125);
  EXPECT_EQ(ClockLimits::limitClock(1, c), 3);  // the whole part of the limit
  EXPECT_EQ(ClockLimits::limitClock(-7, c), 3);
  c.MCl = 900;  // 111.1 MHz: its whole part
  EXPECT_EQ(ClockLimits::limitClock(1e300, c), 111);
  EXPECT_EQ(ClockLimits::limitClock(1e300, DeviceCache{}), 2147483647);
}

TEST_F(ClockLimitsTest, EachLimitIsStoredUnderItsKeysAndReadBack) {
  EXPECT_FALSE(limits().setting(ClockLimits::High).manual);
  deviceLimits();
  const ClockLimits::Setting high = limits().set(ClockLimits::High, true, "500");
  EXPECT_TRUE(high.manual);
  EXPECT_EQ(high.mhz, 125);
  EXPECT_EQ(stored("MCUclock", "Manual max"), "1");
  EXPECT_EQ(stored("MCUclock", "Maximum"), "125");
  const ClockLimits::Setting low = limits().set(ClockLimits::Low, false, "no number");
  EXPECT_EQ(low.mhz, 2);  // 0 is below the slowest clock
  EXPECT_EQ(stored("MCUclock", "Manual min"), "0");
  EXPECT_EQ(stored("MCUclock", "Minimum"), "2");
  EXPECT_EQ(stored("MCUclock", "Maximum"), "125");

  ClockLimits again(main, timebase());
  EXPECT_TRUE(again.setting(ClockLimits::High).manual);
  EXPECT_EQ(again.setting(ClockLimits::High).mhz, 125);
  EXPECT_FALSE(again.setting(ClockLimits::Low).manual);
  EXPECT_EQ(again.setting(ClockLimits::Low).mhz, 2);
}

TEST_F(ClockLimitsTest, OnlineTheTimeBaseIsSetAgainWithinTheNewLimit) {
  link.online = true;
  deviceLimits();
  link.writes.clear();
  limits().set(ClockLimits::High, true, "50");
  EXPECT_DOUBLE_EQ(timebase().model().clock.PeriodFast, 1e-6 / 50);
  ASSERT_FALSE(link.writes.empty());
  bool clockWritten = false;
  for (const auto& [name, value] : link.writes) clockWritten |= name == "MC";
  EXPECT_TRUE(clockWritten);
}

}  // namespace
