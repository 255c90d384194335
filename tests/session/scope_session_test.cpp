// The session core as the window and the CLI hold it: the register table, the packet's stage chain behind
// a live simulated instrument, and the keys that stop what the check boxes stop.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "config/settings.h"
#include "control/trigger_control.h"
#include "display/scope_display.h"
#include "export/animation_recorder.h"
#include "measure/measurement_pass.h"
#include "measure/meter_readings.h"
#include "session/headless_session.h"
#include "sim/event_loop_helpers.h"
#include "spectrum/spectrum_stage.h"
#include "stat/stat_stage.h"

using namespace zorvik;

namespace {

struct ScopeSessionTest : ::testing::Test {
  MemorySettings settings;
  std::unique_ptr<HeadlessSession> session;

  void SetUp() override { settings.saveInt("AutoCalibrating", "StartDelay", 0); }
  void TearDown() override {
    if (session && session->main().Online()) {
      session->link().CloseSession();
      spinUntil([&] { return session->main().state().connectVisible; }, 2000);
    }
  }
  void connect(const std::string& sim) {
    session = std::make_unique<HeadlessSession>(settings, std::vector<std::string>{sim});
    session->main().KeyConnect_Click();
    ASSERT_TRUE(spinUntil([&] { return session->main().sessionState() == SessionState::Ready; }, 5000));
  }
  ScopeSession& core() { return session->session(); }
};

}  // namespace

TEST_F(ScopeSessionTest, EveryRegisterIsWrittenAndEchoedThroughTheOneTable) {
  session = std::make_unique<HeadlessSession>(settings, std::vector<std::string>{});
  const RegisterTable& t = session->main().registers();
  for (const char* r : {"O1", "M1", "T1", "V1", "P1", "S1", "RT", "AP", "AR", "TA", "TW", "TD", "TC", "RS"}) {
    ASSERT_TRUE(t.has(r)) << r;
    for (const RegisterTable::Entry& e : t.entries()) {
      if (e.name == r) {
        EXPECT_TRUE(e.write && e.echo) << r << " lacks its writer or its echo";
      }
    }
  }
  for (const char* r : {"MC", "TS", "QS"}) EXPECT_TRUE(t.has(r)) << r;
}

TEST_F(ScopeSessionTest, SessionStartWritesTheStoredSettingsInOrder) {
  connect("rate=50");
  std::vector<std::string> names;
  for (const auto& w : session->link().writes) names.push_back(w.first);
  // T1 goes out again after S1; the time base follows once the limits are known.
  const std::vector<std::string> head = {"O1", "M1", "T1", "V1", "P1", "S1", "T1",
                                         "RT", "AP", "AR", "TA", "TW", "TD"};
  ASSERT_GE(names.size(), head.size());
  EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + static_cast<long>(head.size())), head);
}

TEST_F(ScopeSessionTest, EveryStageReadsThePacketsOfALiveSession) {
  settings.saveBool("Ch1", "AutoTrigLevel", true);
  connect("rate=max,signal=square,freq=1000000,offset=0.3");
  for (const MeterInfo& m : meterTable()) core().measurement().open.insert(m.meter);
  core().spectrum().visible = [] { return true; };
  core().stat().visible = [] { return true; };
  const int passes = core().measurement().passes();
  core().run().WorkMode_Click(true);
  ASSERT_TRUE(spinUntil([&] { return core().measurement().passes() >= passes + 5; }, 5000));
  core().run().WorkMode_Click(false);
  EXPECT_TRUE(core().spectrum().HaveData());
  EXPECT_GT(core().stat().engine().HistSamples, 0);
  EXPECT_GT(core().measurement().lastPass().n, 0);
  // The auto level moved the trigger level off mid code, and the move went to the instrument.
  bool levelWritten = false;
  for (const auto& w : session->link().writes)
    if (w.first == "S1" && w.second != 127) levelWritten = true;
  EXPECT_TRUE(levelWritten);
  EXPECT_NE(core().trigger().model().level, 127);
}

TEST_F(ScopeSessionTest, TheSerialKeyStopsARecordingAsTheCheckBoxDoes) {
  connect("rate=max");
  int saved = -1;
  core().recorder().onComplete = [&](std::vector<AniGIF::Frame> frames) {
    saved = static_cast<int>(frames.size());
  };
  core().run().WorkMode_Click(true);
  core().recorder().start(1000);
  ASSERT_TRUE(spinUntil([&] { return core().recorder().frame() >= 2; }, 5000));
  core().keys().press("\\", 0);
  EXPECT_FALSE(core().run().model().WorkMode);
  EXPECT_FALSE(core().recorder().recording());
  EXPECT_GE(saved, 2);
}

TEST_F(ScopeSessionTest, StartAndSerialKeysWaitForReadyAsTheirControlsDo) {
  // A limit that never arrives keeps the session setting up, Start and Serial disabled.
  session =
      std::make_unique<HeadlessSession>(settings, std::vector<std::string>{"rate=max,fault=missing:TPl"});
  session->main().KeyConnect_Click();
  ASSERT_TRUE(spinUntil([&] { return session->main().sessionState() == SessionState::SettingUp; }, 5000));
  spinFor(400);  // past the first-time timer
  ASSERT_FALSE(session->main().state().startEnabled);
  core().run().WorkMode_Click(false);
  const bool serialBefore = core().run().model().WorkMode;
  core().keys().press("Backspace", 0);
  core().keys().press("\\", 0);
  spinFor(100);
  EXPECT_EQ(core().run().model().WorkMode, serialBefore);
  for (const std::string& r : session->link().requests) EXPECT_EQ(r.find("D"), std::string::npos) << r;
  EXPECT_TRUE(session->packetLog().empty());
}

TEST_F(ScopeSessionTest, ChannelTimeBaseAndDisplayKeysWorkWithoutAWindow) {
  connect("rate=50");
  const int timeDiv = core().timebase().model().ScrollTimeDiv;
  const bool average = core().channel().model().Average1;
  const int interpolation = core().display().settings().interpolation;
  core().keys().press("Home", 0);
  core().keys().press("A", 0);
  core().keys().press("I", 0);
  EXPECT_NE(core().timebase().model().ScrollTimeDiv, timeDiv);
  EXPECT_NE(core().channel().model().Average1, average);
  EXPECT_NE(core().display().settings().interpolation, interpolation);
}

TEST_F(ScopeSessionTest, ANewPacketClearsTheSelectionSoTheMetersReadTheWholeRecord) {
  connect("rate=max,signal=sine,freq=1000000");
  core().measurement().open.insert(Meter::DCV);
  DisplayMouse& mouse = core().display().mouse();
  mouse.rightDown(10, 20);
  mouse.rightMove(120, 200);
  ASSERT_TRUE(mouse.rightUp());
  ASSERT_TRUE(mouse.selection().visible);
  const int passes = core().measurement().passes();
  core().run().WorkMode_Click(true);
  ASSERT_TRUE(spinUntil([&] { return core().measurement().passes() >= passes + 3; }, 5000));
  core().run().WorkMode_Click(false);
  EXPECT_FALSE(mouse.selection().visible);
  EXPECT_GT(core().measurement().lastPass().n, 50);
}

TEST_F(ScopeSessionTest, NoTriggerClearsThePacketCountWithTheScreen) {
  connect("rate=max");
  core().run().WorkMode_Click(true);
  ASSERT_TRUE(spinUntil([&] { return session->main().PacketCount() >= 3; }, 5000));
  core().run().WorkMode_Click(false);
  spinFor(50);
  ASSERT_GT(session->main().PacketCount(), 0);
  session->main().ObexLinkDLL1_HeaderEvent("D", "", false);
  EXPECT_EQ(session->main().PacketCount(), 0);
  EXPECT_TRUE(session->main().state().noTriggerVisible);
}
