#include "control/trigger_control.h"

#include <gtest/gtest.h>

#include "config/settings.h"
#include "core/eng_text.h"
#include "core/recording_sink.h"
#include "link/fake_obex.h"
#include "session/main_controller.h"

using namespace zorvik;
using zorvik::test::FakeObex;

namespace {
struct TriggerFixture : ::testing::Test {
  MemorySettings settings;
  RecordingSink sink;
  MainView view;
  FakeObex link;
  MainController main{settings, sink, view};
  std::unique_ptr<TriggerControl> trig;
  void SetUp() override {
    main.attachLink(&link);
    trig = std::make_unique<TriggerControl>(main);
  }
  void TearDown() override { main.attachLink(nullptr); }
};
using TriggerControlTest = TriggerFixture;
}  // namespace

TEST(TriggerCounts, ConversionFallbacksAndLimit) {
  EXPECT_EQ(countsFromMicros(100000, 0, 0), 416666);  // no clock known: 2000
  EXPECT_EQ(countsFromMicros(100000, 0, 1000), 833333);
  EXPECT_EQ(countsFromMicros(1, 800, 1000), 10);
  EXPECT_EQ(countsFromMicros(1e12, 800, 0), kMaxCounts);
  EXPECT_EQ(microsFromCounts(833333, 1000), 100000);  // rounded, so a stored value comes back as it was
  EXPECT_EQ(microsFromCounts(countsFromMicros(50, 1000, 0), 1000), 50);
}

TEST(EngineeringText, PrefixesAndCarry) {
  EXPECT_EQ(engineeringText(0.0005, "s"), "500\xC2\xB5s");
  EXPECT_EQ(engineeringText(0.02, "V"), "20mV");
  EXPECT_EQ(engineeringText(2e-9, "s"), "2ns");
  EXPECT_EQ(engineeringText(0.9999, "s"), "1s");
  EXPECT_EQ(engineeringText(0, "s"), "0s");
}

TEST_F(TriggerControlTest, PolarityCyclesAndTheBlankComesOnlyFromTheEcho) {
  link.online = false;
  EXPECT_EQ(trig->model().TrigInd1, "/");  // a stored caption this program never wrote
  trig->TrigPolar1_Click();
  EXPECT_EQ(trig->model().TrigInd1, "\\");
  EXPECT_EQ(main.cache().T1 & 0x30, 0x10);
  trig->TrigPolar1_Click();
  EXPECT_EQ(trig->model().TrigInd1, "X");
  trig->TrigPolar1_Click();
  EXPECT_EQ(trig->model().TrigInd1, "/");
  main.cache().T1 = 0xC7;  // no edge, speed 3, hysteresis 3 and 1
  trig->t1Echo();
  EXPECT_EQ(trig->model().TrigInd1, " ");
  EXPECT_EQ(trig->model().TrigPolar1, "No");
  EXPECT_EQ(trig->model().speed, 3);
  EXPECT_EQ(trig->model().hysteresisF, 3);
  EXPECT_EQ(trig->model().hysteresisR, 1);
  trig->TrigPolar1_Click();  // from the blank the key goes to rising
  EXPECT_EQ(trig->model().TrigInd1, "/");
}

TEST_F(TriggerControlTest, OfflineHysteresisIsStored) {
  trig->setHysteresisF(2);
  trig->setHysteresisR(3);
  EXPECT_EQ(settings.getInt("Ch1", "TrigFallHist"), 2);
  EXPECT_EQ(settings.getInt("Ch1", "TrigRiseHist"), 3);
  EXPECT_EQ(main.cache().T1 & 0x0F, 2 + 3 * 4);
}

TEST_F(TriggerControlTest, OnlineWritersOnlyWrite) {
  link.online = true;
  trig->setSpeed(2);
  EXPECT_EQ(link.calls.back(), "Put1 T1=" + std::to_string(0x20 + 2 * 64));
  trig->setLevel(300);
  EXPECT_EQ(link.calls.back(), "Put1 S1=255");
  EXPECT_EQ(main.cache().S1, 127);  // until the echo
  EXPECT_EQ(settings.getInt("Ch1", "TrigPoz"), 127);
  main.cache().S1 = 255;
  trig->s1Echo();
  EXPECT_EQ(settings.getInt("Ch1", "TrigPoz"), 255);
  main.cache().MC = 1000;
  settings.saveInt("Mode", "TimeoutWait", 100000);
  trig->PutGetRegisterTW();
  EXPECT_EQ(link.calls.back(), "Put4 TW=833333");
}

TEST_F(TriggerControlTest, CompensationKeyFollowsSpeedAndPolarity) {
  link.online = false;
  EXPECT_EQ(trig->model().TrigCompensation, 0.0);  // no key yet: 0 ns
  settings.SaveSettingValue("Ch1", "TrigCompens1/", "12");
  trig->setSpeed(1);
  EXPECT_DOUBLE_EQ(trig->model().TrigCompensation, 12e-9);
  trig->stepCompensation(3);
  EXPECT_EQ(settings.GetSettingValue("Ch1", "TrigCompens1/", ""), "15");
}

TEST_F(TriggerControlTest, DelayEchoDisablesTheCentreAndSetsTheToolTip) {
  main.cache().MC = 1000;
  main.cache().TD = 8333;
  double seen = -1;
  trig->onDelay = [&](double s) { seen = s; };
  trig->tdEcho();
  EXPECT_NEAR(seen, 1e-3, 1e-7);  // 8333 counts of 120 ns: 1 ms
  EXPECT_TRUE(trig->model().delayOn);
  EXPECT_EQ(trig->model().keyDelayToolTip, "1ms after trigger.");
  main.cache().TD = 0;
  trig->tdEcho();
  EXPECT_FALSE(trig->model().delayOn);
  EXPECT_EQ(trig->model().keyDelayToolTip, "Delay is OFF. Pre & post sampling are possible");
}

TEST(TriggerMarker, FollowsZoomAndScroll) {
  // Without zoom the marker stands at the level, wherever the scroll is.
  EXPECT_DOUBLE_EQ(TriggerControl::markerTop(100, 1, 7, 0, 10), 100);
  EXPECT_EQ(TriggerControl::levelFromMarker(100, 1, 7, 0, 10), 100);
  // At zoom 2 with the scroll at its middle the view shows the middle half of the range.
  EXPECT_DOUBLE_EQ(TriggerControl::markerTop(128, 2, 5, 0, 10), (128 - 64) * 2);
  EXPECT_EQ(TriggerControl::levelFromMarker(1000, 1, 0, 0, 10), 255);  // dragged past the top
  EXPECT_EQ(TriggerControl::levelFromMarker(0, 2, 0, 0, 0), 0);        // an empty scroll range
}
