#include "sim/delivery_plan.h"

#include <gtest/gtest.h>

namespace zorvik {
namespace {

// 100 us a sample: 1500 samples take 150 ms.
AcquisitionSetup slow(uint8_t mode = 0) {
  AcquisitionSetup s;
  s.MC = 1000;
  s.TS = 10000 * 256;
  s.QS = 1500;
  s.RS = 2;
  s.M1 = mode;
  return s;
}

RecordPlacement placedAt(double start, double decided, const AcquisitionSetup& s) {
  RecordPlacement p;
  p.triggered = true;
  p.start = start;
  p.decided = decided;
  p.end = start + s.recordSeconds();
  return p;
}

size_t packetBytes(uint8_t mode, size_t samples) {
  if (mode == 1 || mode == 3) return 4 + 2 * samples;
  if (mode == 2) return 4 + 2 * (samples / 2);
  return 4 + samples;
}

TEST(SimDeliveryPlan, StreamsOnlyLongRecordsAtRsBitOneUnderParallelTransfer) {
  DeliveryPlan plan;
  auto streams = [&](const AcquisitionSetup& s, bool parallel, bool hasData = true) {
    RecordPlacement p = placedAt(0.001, 0.001, s);
    p.hasData = hasData;
    plan.make(s, p, 0, hasData ? packetBytes(0, s.recordLength()) : 0, parallel);
    return plan.streamed();
  };
  EXPECT_TRUE(streams(slow(), true));
  EXPECT_FALSE(streams(slow(), false));
  EXPECT_FALSE(streams(slow(), true, false));  // an empty "D" has nothing to stream
  AcquisitionSetup s = slow();
  s.RS = 1;
  EXPECT_FALSE(streams(s, true));
  s.RS = 2;
  s.QS = 900;  // 90 ms
  EXPECT_FALSE(streams(s, true));
  EXPECT_EQ(plan.items().size(), 1u);
  EXPECT_FALSE(plan.items()[0].roll);
  EXPECT_NEAR(plan.items()[0].due, 0.001 + 0.09, 1e-12);
}

TEST(SimDeliveryPlan, PiecesTileThePacketAtWholeSamplesAsTheyAreTaken) {
  DeliveryPlan plan;
  for (uint8_t mode = 0; mode < 5; ++mode) {
    const AcquisitionSetup s = slow(mode);
    // 500 presamples (50 ms) from arming on, then the trigger 20 ms later.
    const RecordPlacement place = placedAt(0.02, 0.07, s);
    const size_t bytes = packetBytes(mode, 1500);
    plan.make(s, place, 0, bytes, true);
    const auto& items = plan.items();
    ASSERT_GE(items.size(), 6u) << int(mode);
    size_t at = 0;
    double due = 0;
    for (size_t i = 0; i + 1 < items.size(); ++i) {
      ASSERT_TRUE(items[i].roll);
      ASSERT_EQ(items[i].begin, at);
      ASSERT_GT(items[i].end, at);
      ASSERT_EQ((items[i].end - 4) % (mode == 0 || mode == 4 ? 1 : 2), 0u) << int(mode);
      ASSERT_GE(items[i].due, due);
      at = items[i].end;
      due = items[i].due;
    }
    EXPECT_EQ(at, bytes);
    EXPECT_FALSE(items.back().roll);
    EXPECT_EQ(items.back().end, bytes);
    EXPECT_NEAR(items.back().due, 0.17, 1e-9);
    // What was in memory before the trigger leaves with it; the rest a piece every 25 ms.
    EXPECT_NEAR(items[0].due, 0.07, 1e-9);
    EXPECT_NEAR(items[items.size() - 2].due - items[items.size() - 3].due, 0.025, 1e-3);
  }
}

}  // namespace
}  // namespace zorvik
