#include "measure/measurement_pass.h"

#include <gtest/gtest.h>

#include <string>

using namespace zorvik;

namespace {
SegmentData segment(const std::string& bytes) {
  SegmentData s;
  s.bytes = bytes;
  return s;
}
}  // namespace

TEST(MeasurementPass, OnlyWhatSomebodyLooksAtIsComputed) {
  MeasurementPass pass([] { return MeasureInputs{}; });
  const std::string square(50, static_cast<char>(60));
  const std::string record = square + std::string(50, static_cast<char>(200));
  pass.sampleCountChanged(100);
  pass.measure(segment(record));
  EXPECT_EQ(pass.passes(), 1);
  EXPECT_FALSE(pass.calc().DCValid);  // no meter, no auto level: nothing ran
  EXPECT_FALSE(pass.calc().TopFound);

  pass.open = {Meter::RRV};
  pass.measure(segment(record));
  EXPECT_FALSE(pass.calc().DCValid);
  EXPECT_TRUE(pass.calc().TopFound);
  EXPECT_EQ(pass.calc().TopCode8, 200);

  pass.open = {Meter::VDB};
  pass.measure(segment(record));
  EXPECT_TRUE(pass.calc().DCValid);
  EXPECT_TRUE(pass.calc().HasAC);
}

TEST(MeasurementPass, AutoLevelFollowsTheMeanAboveAQuarterDivision) {
  MeasureInputs in;
  in.autoLevel = true;
  in.FullScaleVolts = 1.6f;
  MeasurementPass pass([&] { return in; });
  int level = -1;
  pass.onAutoLevel = [&](int l) { level = l; };

  // 8 codes peak to peak: exactly a quarter division, the level stays.
  std::string quarter;
  for (int i = 0; i < 40; ++i) quarter += static_cast<char>(i % 2 ? 100 : 108);
  pass.run(segment(quarter), 40, in);
  EXPECT_EQ(level, -1);

  std::string wider;
  for (int i = 0; i < 40; ++i) wider += static_cast<char>(i % 2 ? 100 : 109);
  pass.run(segment(wider), 40, in);
  EXPECT_EQ(level, 104);  // (100 + 109) / 2, truncated
}
