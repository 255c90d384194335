#include <gtest/gtest.h>

#include <algorithm>

#include "config/settings.h"
#include "control/trigger_control.h"
#include "measure/measurement_pass.h"
#include "session/headless_session.h"
#include "session/scope_session.h"
#include "signal/packet.h"
#include "sim/event_loop_helpers.h"

using namespace zorvik;

namespace {

// What a packet of plain samples shows of a 10 kHz sine of 1 V peak to peak.
struct Trace {
  double samplesPerCycle = 0;
  int codeSpan = 0;
};

Trace measure(const std::string& packet) {
  PacketInfo info = decodePacket(packet);
  std::string_view s = info.segment1;
  Trace t;
  if (s.size() < 2) return t;
  auto code = [&](size_t i) { return static_cast<int>(static_cast<unsigned char>(s[i])); };
  int lo = 255, hi = 0;
  std::vector<size_t> rises;
  for (size_t i = 0; i < s.size(); ++i) {
    lo = std::min(lo, code(i));
    hi = std::max(hi, code(i));
    if (i > 0 && code(i - 1) < 128 && code(i) >= 128) rises.push_back(i);
  }
  t.codeSpan = hi - lo;
  if (rises.size() >= 2)
    t.samplesPerCycle = static_cast<double>(rises.back() - rises.front()) / (rises.size() - 1);
  return t;
}

struct SimSession : ::testing::Test {
  MemorySettings settings;
  std::unique_ptr<HeadlessSession> session;

  void SetUp() override {
    settings.SaveSettingValue("Ch1", "AcqMode", "Sample");
    settings.saveInt("AutoCalibrating", "StartDelay", 0);
    settings.saveInt("Sampling", "TimePerDiv", 15);  // 100 us a division
  }
  void start() {
    session =
        std::make_unique<HeadlessSession>(settings, std::vector<std::string>{"freq=10000,noise=0,rate=200"});
    session->main().KeyConnect_Click();
    ASSERT_TRUE(spinUntil([&] { return session->main().sessionState() == SessionState::Ready; }, 5000));
  }
  void TearDown() override {
    if (session && session->main().Online()) {
      session->link().CloseSession();
      spinUntil([&] { return !session->main().Online(); }, 2000);
    }
  }
  // A packet taken after everything written so far has been echoed.
  Trace nextTrace() {
    MainController& m = session->main();
    spinFor(50);
    int32_t count = m.PacketCount();
    EXPECT_TRUE(spinUntil([&] { return m.PacketCount() >= count + 2; }, 3000));
    return measure(m.LastPacket());
  }
};

}  // namespace

TEST_F(SimSession, OnlineChangesReachThePacketsAndTheScale) {
  start();
  MainController& m = session->main();
  Trace before = nextTrace();
  EXPECT_NEAR(m.scale().SamplePeriod, 3.125e-6f, 1e-9);  // 100 us over 32 samples
  EXPECT_EQ(m.scale().SamplesPerDiv, 32);
  EXPECT_NEAR(before.samplesPerCycle, 32, 0.5);
  EXPECT_NEAR(before.codeSpan, 160, 3);  // 1 V at 200 mV a division, 32 codes each

  session->control().channel().scrollCH1_Change(8);        // 500 mV
  session->control().timebase().ScrollTimeDiv_Change(14);  // 50 us
  Trace after = nextTrace();
  EXPECT_EQ(m.cache().V1, 500);
  EXPECT_FLOAT_EQ(m.scale().FullScaleVolts, 4.0f);
  EXPECT_NEAR(m.scale().SamplePeriod, 50e-6f / 32, 1e-9);
  EXPECT_NEAR(after.samplesPerCycle, 1e-4 / m.scale().SamplePeriod, 0.5);
  EXPECT_NEAR(after.codeSpan, 64, 3);
  EXPECT_TRUE(session->control().timebase().model().timeDivMarked);
  EXPECT_EQ(session->control().timebase().model().TimeDiv, 14);
  EXPECT_TRUE(session->control().channel().model().voltDivMarked);
  EXPECT_TRUE(session->messages().messages.size() <= 1u);  // the device's greeting only
}

TEST_F(SimSession, OfflineChoicesAreWrittenAtTheNextSession) {
  {
    HeadlessSession offline(settings, {});
    offline.control().channel().scrollCH1_Change(9);        // 1 V
    offline.control().timebase().ScrollTimeDiv_Change(16);  // 200 us
    EXPECT_FLOAT_EQ(offline.main().scale().FullScaleVolts, 8.0f);
    EXPECT_TRUE(offline.link().writes.empty());
  }
  start();
  Trace t = nextTrace();
  EXPECT_EQ(session->main().cache().V1, 1000);
  EXPECT_NEAR(session->main().scale().SamplePeriod, 200e-6f / 32, 1e-9);
  EXPECT_NEAR(t.samplesPerCycle, 16, 0.5);
  EXPECT_NEAR(t.codeSpan, 32, 3);
}

// The time-outs are written once the clock is known and survive reconnecting unchanged.
TEST_F(SimSession, TimeoutsFollowTheClockAndStayPutAcrossSessions) {
  settings.saveInt("Mode", "TimeoutAuto", 50);
  settings.saveInt("Mode", "TimeoutWait", 500);
  for (int run = 0; run < 3; ++run) {
    start();
    MainController& m = session->main();
    spinFor(100);
    ASSERT_GE(m.cache().MC, 1);
    EXPECT_EQ(m.cache().TA, countsFromMicros(50, m.cache().MC, 0)) << "run " << run;
    EXPECT_EQ(m.cache().TW, countsFromMicros(500, m.cache().MC, 0)) << "run " << run;
    EXPECT_EQ(settings.getInt("Mode", "TimeoutAuto"), 50) << "run " << run;
    EXPECT_EQ(settings.getInt("Mode", "TimeoutWait"), 500) << "run " << run;
    EXPECT_EQ(m.state().fields.at("DeviceTrigPage.CurTrigWaitTime"), "Auto 50, Norm 500");
    TearDown();
    session.reset();
  }
}

// With a meter open the session asks for the status byte, and a firmware fault in it is told.
TEST_F(SimSession, AnOpenMeterAsksForTheFirmwareStatus) {
  session = std::make_unique<HeadlessSession>(settings, std::vector<std::string>{"L_B=255"});
  session->session().measurement().open.insert(Meter::DCV);
  session->main().KeyConnect_Click();
  ASSERT_TRUE(spinUntil([&] { return session->main().sessionState() == SessionState::Ready; }, 5000));
  const auto& shown = session->messages().messages;
  EXPECT_TRUE(std::any_of(shown.begin(), shown.end(),
                          [](const auto& m) { return m.text == "Device firmware error"; }));
}

// Wide asks the instrument for the longer record at once, not at the next change of the time base.
TEST_F(SimSession, WideTakesTheLongerRecordAtOnce) {
  start();
  MainController& m = session->main();
  spinFor(100);
  const int32_t narrow = m.cache().QS;
  ASSERT_GT(narrow, 0);
  ASSERT_TRUE(session->session().keys().press("W", 0));
  EXPECT_TRUE(spinUntil([&] { return m.cache().QS > narrow; }, 2000)) << narrow;
  EXPECT_EQ(session->control().timebase().model().ScreenSamples, 15 * m.scale().SamplesPerDiv);
}

// The frame rate belongs to a session: it is gone when the session ends.
TEST_F(SimSession, TheFrameRateIsClearedAtTheEndOfASession) {
  start();
  MainController& m = session->main();
  ASSERT_TRUE(spinUntil([&] { return m.state().fps > 0; }, 3000));
  session->link().CloseSession();
  ASSERT_TRUE(spinUntil([&] { return m.state().connectVisible; }, 3000));
  EXPECT_EQ(m.state().fps, 0);
}
