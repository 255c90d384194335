#include "session/timebase_probe.h"

#include <gtest/gtest.h>

using namespace zorvik;
using Writes = std::vector<std::pair<std::string, int32_t>>;

namespace {
TimebaseProbe simProbe(float seconds) {
  TimebaseProbe p;
  p.secondsPerDiv = seconds;
  p.limits = {1000, 800, 50000, 7, 256, 8, 256, 25600};
  return p;
}
}  // namespace

TEST(TimebaseProbe, ReportsTheWritesOfOneRun) {
  TimebaseProbeResult r = runTimebaseProbe(simProbe(100e-6f));
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.writes, (Writes{{"TS", 25600}, {"MC", 6250}, {"QS", 172}}));
  EXPECT_EQ(r.SamplesPerDiv, 16);
  EXPECT_FALSE(r.RisActive);

  TimebaseProbe p = simProbe(100e-6f);
  p.ts = 25600;  // already set: not written again
  p.qsh = 8192;
  p.wide = true;
  r = runTimebaseProbe(p);
  EXPECT_EQ(r.writes, (Writes{{"MC", 3125}, {"QS", 492}}));
  EXPECT_EQ(r.TS, 25600);

  // A refusal writes nothing and reports the cached values.
  p = simProbe(20e-9f);
  p.ts = 77;
  r = runTimebaseProbe(p);
  EXPECT_FALSE(r.ok);
  EXPECT_EQ(r.message, "Time/div not supported.\r\nUse RIS for repetitive sig.");
  EXPECT_TRUE(r.writes.empty());
  EXPECT_EQ(r.TS, 77);
  p.ris = true;
  r = runTimebaseProbe(p);
  EXPECT_TRUE(r.RisActive);
  EXPECT_EQ(r.TS, 8);
}
