// The session core against the instrument served by zorvik-sim in a process of its own: the same
// start-up, echoes and packets as in-process, and the device lost when the process dies.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "config/settings.h"
#include "link/stream_obex.h"
#include "session/headless_session.h"
#include "session/link_choice.h"
#include "session/run_control.h"
#include "session/sim_process.h"

using namespace zorvik;

namespace {

struct StreamSession : ::testing::Test {
  MemorySettings settings;
  test::SimProcess sim;
  std::unique_ptr<HeadlessSession> session;

  void SetUp() override { settings.saveInt("AutoCalibrating", "StartDelay", 0); }
  void TearDown() override {
    if (session && session->main().Online()) {
      session->link().CloseSession();
      spinUntil([&] { return session->main().state().connectVisible; }, 3000);
    }
    session.reset();
    sim.kill();
  }
  void startSim(const std::string& options) { ASSERT_TRUE(sim.start({options})) << sim.failure; }
  bool connect() {
    if (!session)
      session = std::make_unique<HeadlessSession>(settings, std::vector<std::string>{}, sim.address());
    main().KeyConnect_Click();
    return spinUntil([&] { return main().sessionState() == SessionState::Ready; }, 10000);
  }
  MainController& main() { return session->main(); }
  bool ended() { return main().sessionState() == SessionState::NoSession && main().state().connectVisible; }
  size_t criticalBoxes() {
    const auto& shown = session->messages().messages;
    return static_cast<size_t>(
        std::count_if(shown.begin(), shown.end(), [](const auto& m) { return m.kind == BoxKind::Critical; }));
  }
};

}  // namespace

TEST_F(StreamSession, TheLifeCycleRunsOverTheStream) {
  startSim("freq=10000,rate=200,VNM=Served");
  ASSERT_TRUE(connect());
  EXPECT_EQ(main().cache().VNM, "Served");
  EXPECT_EQ(main().cache().MCh, 50000);
  std::vector<std::string> names;
  for (const auto& w : session->link().writes) names.push_back(w.first);
  const std::vector<std::string> head = {"O1", "M1", "T1", "V1", "P1", "S1", "T1",
                                         "RT", "AP", "AR", "TA", "TW", "TD"};
  ASSERT_GE(names.size(), head.size());
  EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + static_cast<long>(head.size())), head);

  // Online a writer only writes: the echo from the other process moves the model and the setting.
  session->control().channel().scrollCH1_Change(8);
  ASSERT_TRUE(spinUntil([&] { return main().cache().V1 == 500; }, 3000));
  EXPECT_EQ(settings.getInt("Ch1", "VoltPerDiv", 0), 8);

  session->run().WorkMode_Click(true);
  const size_t before = session->packetLog().size();
  ASSERT_TRUE(spinUntil([&] { return session->packetLog().size() >= before + 10; }, 5000));
  EXPECT_GT(main().SampleCount(), 0);
  session->link().CloseSession();
  ASSERT_TRUE(spinUntil([&] { return ended(); }, 3000));

  // The instrument is free again for the next session.
  ASSERT_TRUE(connect());
  EXPECT_EQ(criticalBoxes(), 0u);
}

// The simulator dies while a packet is on its way: the session ends as for a lost device, the settings
// stay, and once an instrument is served again the program connects and writes them into it.
TEST_F(StreamSession, KillingTheSimulatorMidPacketEndsTheSessionAndKeepsTheSettings) {
  settings.saveInt("Mode", "AutoStart", 1);
  startSim("rate=max");
  ASSERT_TRUE(connect());
  session->control().channel().scrollCH1_Change(8);
  ASSERT_TRUE(spinUntil([&] { return main().cache().V1 == 500; }, 3000));
  auto* stream = streamLink(&session->device());
  ASSERT_NE(stream, nullptr);
  ASSERT_TRUE(spinUntil([&] { return main().PacketCount() >= 5 && stream->partialBytes() > 0; }, 5000));
  sim.kill();
  ASSERT_TRUE(spinUntil([&] { return ended(); }, 5000));
  EXPECT_FALSE(main().Online());
  EXPECT_EQ(settings.getInt("Ch1", "VoltPerDiv", 0), 8);
  EXPECT_EQ(session->control().channel().model().scrollCH1, 8);
  EXPECT_EQ(criticalBoxes(), 0u);

  startSim("rate=max");
  session->link().writes.clear();
  ASSERT_TRUE(connect());
  const auto& writes = session->link().writes;
  EXPECT_TRUE(std::any_of(writes.begin(), writes.end(),
                          [](const auto& w) { return w.first == "V1" && w.second == 500; }));
  EXPECT_EQ(main().cache().V1, 500);
}

// One program at a time: a second is told why, and the first goes on.
TEST_F(StreamSession, ASecondProgramIsToldTheInstrumentIsInUse) {
  startSim("rate=100");
  ASSERT_TRUE(connect());
  MemorySettings otherSettings;
  HeadlessSession other(otherSettings, {}, sim.address());
  other.main().KeyConnect_Click();
  ASSERT_TRUE(spinUntil([&] { return !other.messages().messages.empty(); }, 5000));
  EXPECT_EQ(other.messages().messages.front().text,
            "the instrument closed the connection: the instrument is in use by another program");
  spinFor(100);
  EXPECT_EQ(other.main().sessionState(), SessionState::NoSession);
  EXPECT_EQ(main().sessionState(), SessionState::Ready);
}
