// The run modes of the whole program against the simulated instrument: what the status shows and which
// packets arrive in Norm, Auto and single acquisitions, and when a slow time base streams roll chunks.
#include <gtest/gtest.h>

#include <memory>
#include <numeric>

#include "config/settings.h"
#include "session/headless_session.h"
#include "sim/event_loop_helpers.h"

using namespace zorvik;

namespace {

constexpr int kTimeDiv200ms = 25;
// The default Auto time-out (50 us) is shorter than a cycle of the default signal; this one is not.
constexpr int kLongAutoMicros = 20000;

struct RunModes : ::testing::Test {
  MemorySettings settings;
  std::unique_ptr<HeadlessSession> session;

  void SetUp() override { settings.saveInt("AutoCalibrating", "StartDelay", 0); }
  void TearDown() override { close(); }

  // serial: AutoStart; autoRun: NoWaiting (Auto rather than Norm).
  void start(const std::string& sim, bool serial, bool autoRun) {
    close();
    settings.saveInt("Mode", "AutoStart", serial ? 1 : 0);
    settings.saveInt("Mode", "NoWaiting", autoRun ? 1 : 0);
    session = std::make_unique<HeadlessSession>(settings, std::vector<std::string>{"rate=max," + sim});
    session->main().KeyConnect_Click();
    ASSERT_TRUE(spinUntil([&] { return session->main().sessionState() == SessionState::Ready; }, 5000));
  }
  void close() {
    if (!session) return;
    if (session->main().Online()) {
      session->link().CloseSession();
      spinUntil([&] { return session->main().state().connectVisible; }, 2000);
    }
    session.reset();
  }
  // Waits for n more "D" headers, then stops the repetition and lets what it had under way arrive.
  void collect(size_t n) {
    const size_t before = session->packetLog().size();
    EXPECT_TRUE(spinUntil([&] { return session->packetLog().size() >= before + n; }, 3000));
    session->link().SetRepeatCommand(false, "", false);
    spinFor(30);
  }
  const MainState& state() { return session->main().state(); }
  const std::vector<PacketRecord>& log() { return session->packetLog(); }
};

}  // namespace

TEST_F(RunModes, NormWithoutTriggerShowsNoTriggerAndDrawsNothing) {
  start("fault=notrigger", true, false);
  collect(3);
  for (const PacketRecord& p : log()) {
    EXPECT_EQ(p.length, 0u);
    EXPECT_FALSE(p.triggered);
    EXPECT_EQ(p.statusText, "Norm");
  }
  EXPECT_TRUE(state().noTriggerVisible);
  EXPECT_EQ(state().modeColor, kColorRed);
  EXPECT_EQ(session->main().PacketCount(), 0);
  EXPECT_EQ(session->main().SampleCount(), 0);
}

TEST_F(RunModes, AutoRunsFreeWithoutTriggerAndTriggersOnASine) {
  start("fault=notrigger", true, true);
  collect(3);
  for (const PacketRecord& p : log()) {
    EXPECT_GT(p.length, 4u);
    EXPECT_FALSE(p.triggered);
    EXPECT_FALSE(p.parallel);
    EXPECT_EQ(p.statusText, "Auto");
  }
  EXPECT_TRUE(state().noTriggerVisible);
  EXPECT_GT(session->main().SampleCount(), 0);

  // The same on a healthy comparator, with a time-out longer than a cycle of the 1 kHz sine.
  settings.saveInt("Mode", "TimeoutAuto", kLongAutoMicros);
  start("", true, true);
  collect(3);
  for (const PacketRecord& p : log()) EXPECT_TRUE(p.triggered);
  EXPECT_FALSE(state().noTriggerVisible);
  EXPECT_EQ(state().modeColor, kColorWhite);
  EXPECT_EQ(session->link().rollChunks, 0);  // a 100 us/div record is far too short to stream
}

TEST_F(RunModes, SingleShowsStartedThenStopped) {
  settings.saveInt("Mode", "TimeoutAuto", kLongAutoMicros);
  start("", false, true);
  EXPECT_EQ(state().modeText, "Ready");
  session->run().KeyStart_Click();
  EXPECT_EQ(state().modeText, "Started");
  ASSERT_TRUE(spinUntil([&] { return !log().empty(); }, 3000));
  spinFor(30);
  ASSERT_EQ(log().size(), 1u);  // one press, one packet
  EXPECT_TRUE(log()[0].triggered);
  EXPECT_EQ(log()[0].statusText, "Stopped");
  EXPECT_EQ(state().modeText, "Stopped");

  // Norm without a trigger: the empty answer ends the single acquisition too, with the indicator.
  start("fault=notrigger", false, false);
  session->run().KeyStart_Click();
  ASSERT_TRUE(spinUntil([&] { return !log().empty(); }, 3000));
  EXPECT_EQ(log()[0].length, 0u);
  EXPECT_EQ(log()[0].statusText, "Stopped");
  EXPECT_TRUE(state().noTriggerVisible);
}

TEST_F(RunModes, SlowTimeBaseStreamsRollChunksThatAddUpToThePackets) {
  settings.saveInt("Sampling", "TimePerDiv", kTimeDiv200ms);
  start("", true, true);
  collect(2);
  const RecordingObex& link = session->link();
  ASSERT_GE(log().size(), 2u);
  long long streamed = 0;
  for (const PacketRecord& p : log()) {
    EXPECT_TRUE(p.parallel);
    streamed += static_cast<long long>(p.length);
  }
  // Every chunk belongs to a packet that then came whole: the chunks carry each packet exactly once.
  EXPECT_EQ(link.rollBytes, streamed);
  // The record (a little over ten divisions of 200 ms) in chunks of 25 ms of record time.
  const MainController& m = session->main();
  EXPECT_FLOAT_EQ(m.scale().SamplePeriod * static_cast<float>(m.scale().SamplesPerDiv), 0.2f);
  const double recordSeconds = m.cache().QS * static_cast<double>(m.scale().SamplePeriod);
  EXPECT_GT(recordSeconds, 2.0);
  const double chunksPerPacket = static_cast<double>(link.rollChunks) / static_cast<double>(log().size());
  EXPECT_NEAR(chunksPerPacket, recordSeconds / 0.025, 1.0);
}

TEST_F(RunModes, ARollStreamSetsTheSampleCountBeforeItsSamplesArrive) {
  settings.saveInt("Sampling", "TimePerDiv", kTimeDiv200ms);
  start("", true, true);
  ASSERT_TRUE(spinUntil([&] { return session->link().rollChunks >= 2; }, 5000));
  // The first chunk's header announces the record: the time base is laid out for it already.
  EXPECT_GT(session->main().SampleCount(), 100);
  EXPECT_EQ(session->main().state().curSamples, session->main().SampleCount());
  session->link().SetRepeatCommand(false, "", false);
}

TEST_F(RunModes, SlowTimeBaseWithoutRsBit1ComesOnlyWhole) {
  settings.saveInt("Sampling", "TimePerDiv", kTimeDiv200ms);
  settings.saveInt("Sampling", "ROLL", 0);
  start("", true, true);
  collect(2);
  EXPECT_EQ(session->main().cache().RS & 2, 0);
  EXPECT_EQ(session->link().rollChunks, 0);
  for (const PacketRecord& p : log()) EXPECT_FALSE(p.parallel);
  EXPECT_GT(session->main().SampleCount(), 0);
}

TEST_F(RunModes, RunStopsAtTheAskedCountAlsoWhenPacketsStream) {
  // A streamed packet is counted but not drawn: the count must still stop the serial run.
  settings.saveInt("Sampling", "TimePerDiv", kTimeDiv200ms);
  session = std::make_unique<HeadlessSession>(settings, std::vector<std::string>{"rate=max"});
  SessionOptions options;
  options.packets = 3;
  options.timeoutSeconds = 5;
  SessionResult r = session->run(options);
  EXPECT_TRUE(r.error.empty()) << r.error;
  EXPECT_EQ(r.packets, 3);
  ASSERT_EQ(r.packetLog.size(), 3u);
  for (const PacketRecord& p : r.packetLog) EXPECT_TRUE(p.parallel);
  EXPECT_EQ(r.statusText, "Auto");
}
