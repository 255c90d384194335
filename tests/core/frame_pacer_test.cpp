#include "core/frame_pacer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace zorvik;

namespace {

// A window's event loop in miniature: changes come at their times, a timer fires when armed, and a paint
// shows the change count it saw.
struct Loop {
  FramePacer pacer;
  int64_t timerAt = -1;
  int64_t shown = 0;  // the change the last paint showed

  void runUntil(int64_t t) {
    if (timerAt >= 0 && timerAt <= t) {
      const int64_t at = timerAt;
      timerAt = -1;
      paint(at);
    }
  }
  void change(int64_t t) {
    runUntil(t);
    const int wait = pacer.changed(t);
    if (wait == 0) paint(t);
    if (wait > 0) timerAt = t + wait;
  }
  void paint(int64_t t) {
    pacer.painted(t);
    shown = pacer.changes();
  }
};

}  // namespace

TEST(FramePacer, AStreamFasterThanTheScreenIsPaintedOnceAFrameAndItsLastChangeIsShown) {
  Loop loop;
  // Ten thousand packets a second for two seconds: a change every 0.1 ms (here whole ms, ten at a time).
  for (int64_t t = 0; t < 2000; ++t)
    for (int k = 0; k < 10; ++k) loop.change(t);
  EXPECT_EQ(loop.pacer.changes(), 20000);
  EXPECT_LE(loop.pacer.paints(), 2 * 60 + 1);
  EXPECT_GE(loop.pacer.paints(), 2 * 60 - 2);
  // Nothing is left unpainted once the stream stops: the waiting paint comes within a frame.
  loop.runUntil(2000 + 17);
  EXPECT_FALSE(loop.pacer.waiting());
  EXPECT_EQ(loop.shown, loop.pacer.changes());
}

TEST(FramePacer, AChangeAfterAQuietSpellIsPaintedAtOnce) {
  FramePacer p(50);  // 20 ms a frame
  EXPECT_EQ(p.changed(0), 0);
  p.painted(0);
  EXPECT_EQ(p.changed(5), 15);  // inside the frame: wait for its end
  EXPECT_EQ(p.changed(6), -1);  // already waiting
  p.painted(20);
  EXPECT_EQ(p.changed(500), 0);
  p.painted(500);
  // A clock that went back does not hold the picture for ever.
  EXPECT_EQ(p.changed(100), 0);
}

TEST(FramePacer, ScreensThatReportNoRateAreTakenAsSixty) {
  for (double bad : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), 1e9}) {
    FramePacer p(bad);
    EXPECT_DOUBLE_EQ(p.rate(), 60) << bad;
  }
  FramePacer p;
  p.setRate(144);
  EXPECT_NEAR(p.rate(), 144, 1e-9);
}
