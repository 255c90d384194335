#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <memory>

#include "sim/event_loop_helpers.h"
#include "sim/event_recorder.h"
#include "sim/simulated_obex.h"

namespace zorvik {
namespace {

// Counts at the default clock (MCd, 10 ns): 12 clocks, 120 ns each.
constexpr int32_t kCountsPerMs = 8333;

class SimAcquisition : public ::testing::Test {
 protected:
  void open(std::string_view options) {
    link = std::make_unique<SimulatedObex>(parseSimConfig(options));
    link->setEventSink(&events);
    bool ok = false;
    link->OpenSession(ok);
    ASSERT_TRUE(spinUntil([&] { return events.count("Start") == 1; }, 1000));
    events.entries.clear();
  }
  // 100 us a sample: 1500 samples take 150 ms.
  void slowTimeBase() {
    link->PutRegister2("MC", 1000);
    link->PutRegister4("TS", 10000 * 256);
    link->PutRegister2("QS", 1500);
  }
  // Runs one "D" and returns how long it took.
  qint64 single(size_t headersBefore, int timeoutMs = 2000) {
    QElapsedTimer clock;
    clock.start();
    link->SendCommand("D", true, true);
    EXPECT_TRUE(spinUntil([&] { return events.count("Header", "D") == headersBefore + 1; }, timeoutMs));
    return clock.elapsed();
  }
  std::vector<const EventRecorder::Entry*> rolls() const {
    std::vector<const EventRecorder::Entry*> out;
    for (const auto& e : events.entries)
      if (e.kind == "Roll") out.push_back(&e);
    return out;
  }

  EventRecorder events;
  std::unique_ptr<SimulatedObex> link;
};

TEST_F(SimAcquisition, WithoutTriggerNormSendsEmptyPacketsAndAutoRunsFree) {
  open("rate=max,fault=notrigger");
  link->PutRegister1("RT", 1);
  link->SetRepeatCommand(true, "D", true);
  ASSERT_TRUE(spinUntil([&] { return events.count("Header", "D") >= 3; }, 2000));
  link->SetRepeatCommand(false, "", false);
  for (const auto& e : events.entries) {
    if (e.name == "D") {
      EXPECT_TRUE(e.value.empty());
    }
  }

  spinFor(20);  // what the repetition had under way
  events.entries.clear();
  link->PutRegister1("RT", 0);
  link->SetRepeatCommand(true, "D", true);
  ASSERT_TRUE(spinUntil([&] { return events.count("Header", "D") >= 3; }, 2000));
  link->SetRepeatCommand(false, "", false);
  for (const auto& e : events.entries) {
    if (e.name != "D") continue;
    ASSERT_GT(e.value.size(), 4u);
    EXPECT_EQ(static_cast<unsigned char>(e.value[0]) & 0x30, 0);
  }
}

TEST_F(SimAcquisition, LongTimeOutsHoldThePacketBack) {
  open("rate=50,fault=notrigger");  // 20 ms pacing
  link->PutRegister1("RT", 1);
  link->PutRegister4("TW", 200 * kCountsPerMs);
  const qint64 took = single(0);
  EXPECT_GE(took, 190);
  EXPECT_LT(took, 1000);
  EXPECT_TRUE(events.lastHeader("D")->value.empty());

  link->PutRegister1("RT", 0);
  link->PutRegister4("TA", 150 * kCountsPerMs);
  EXPECT_GE(single(1), 140);
  EXPECT_FALSE(events.lastHeader("D")->value.empty());
}

TEST_F(SimAcquisition, SlowRecordStreamsWhileTakenThenComesWhole) {
  open("rate=50");
  slowTimeBase();
  link->PutRegister1("RS", 2);
  link->SetParallelTransfer(true);
  EXPECT_GE(single(0), 120);
  const auto pieces = rolls();
  ASSERT_GE(pieces.size(), 5u);
  const EventRecorder::Entry* d = events.lastHeader("D");
  EXPECT_TRUE(d->parallel);
  EXPECT_EQ(events.kinds().back(), "D");
  std::string joined;
  for (const auto* p : pieces) {
    EXPECT_EQ(p->total, joined.empty() ? static_cast<int32_t>(d->value.size()) : 0);
    joined += p->value;
  }
  EXPECT_EQ(joined, d->value);
  EXPECT_EQ(d->value.size(), 1504u);

  // Without RS bit 1, or without parallel transfer, the record comes only whole.
  link->PutRegister1("RS", 0);
  events.entries.clear();
  single(0);
  link->PutRegister1("RS", 2);
  link->SetParallelTransfer(false);
  single(1);
  EXPECT_EQ(rolls().size(), 0u);
  EXPECT_FALSE(events.lastHeader("D")->parallel);
}

TEST_F(SimAcquisition, NewTimeBaseOrStopEndsTheRecordUnderWay) {
  open("rate=50");
  slowTimeBase();
  link->PutRegister1("RS", 2);
  link->SetParallelTransfer(true);
  link->SetRepeatCommand(true, "D", true);
  ASSERT_TRUE(spinUntil([&] { return rolls().size() >= 2; }, 1000));
  link->PutRegister2("QS", 1200);  // the stream starts over with the new length
  ASSERT_TRUE(spinUntil([&] { return events.count("Header", "D") == 1; }, 2000));
  EXPECT_EQ(events.lastHeader("D")->value.size(), 1204u);
  const auto pieces = rolls();
  size_t starts = 0;
  for (const auto* p : pieces) starts += p->total > 0 ? 1 : 0;
  EXPECT_GE(starts, 2u);

  ASSERT_TRUE(spinUntil([&] { return rolls().size() > pieces.size(); }, 1000));
  link->SetRepeatCommand(false, "", false);
  spinFor(250);
  EXPECT_EQ(events.count("Header", "D"), 1u);
}

}  // namespace
}  // namespace zorvik
