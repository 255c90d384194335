#include "control/control_fixture.h"

using namespace zorvik;
using zorvik::test::be;
using Writes = std::vector<std::pair<std::string, int32_t>>;

namespace {
struct TimebaseTest : zorvik::test::ControlFixture {
  std::vector<int> zooms;
  int scaleChanges = 0;
  void SetUp() override {
    ControlFixture::SetUp();
    timebase().onHorZoom = [this](int z) { zooms.push_back(z); };
    timebase().onScale.add([this] { ++scaleChanges; });
  }
  std::string field(const std::string& name) {
    auto it = main.state().fields.find(name);
    return it == main.state().fields.end() ? "<none>" : it->second;
  }
};
}  // namespace

TEST_F(TimebaseTest, CommonEndWritesTsMcQsThenCalibrates) {
  link.online = true;
  link.serialActive = true;
  deviceLimits();
  timebase().SetupTimeDiv();  // 100 us a division
  EXPECT_EQ(link.writes, (Writes{{"TS", 25600}, {"MC", 6250}, {"QS", 172}}));
  EXPECT_EQ(link.commands, std::vector<std::string>{"C"});
  EXPECT_FALSE(timebase().model().timeDivMarked);
  EXPECT_EQ(main.scale().SamplesPerDiv, 16);
  EXPECT_EQ(field("DeviceSamplingPage.CurSamplesPerDiv"), "16");
  // What the device already has is not written again, except the clock.
  link.writes.clear();
  cache().TS = 25600;
  cache().QS = 172;
  timebase().SetupTimeDiv();
  EXPECT_EQ(link.writes, (Writes{{"MC", 6250}}));
}

TEST_F(TimebaseTest, RefusalShowsTheBoxAndWritesNothing) {
  link.online = true;
  deviceLimits();
  TimebaseRuleResult r = timebase().PutGetRegisterMCTSRS(20e-9f);
  EXPECT_FALSE(r.ok());
  EXPECT_TRUE(link.writes.empty());
  ASSERT_EQ(sink.messages.size(), 1u);
  EXPECT_EQ(sink.messages[0].kind, BoxKind::InfoBox);
  EXPECT_EQ(sink.messages[0].title, "ZORVIK 1");
  EXPECT_EQ(sink.messages[0].key, "ZORVIK 1");
  EXPECT_EQ(sink.messages[0].text, "Time/div not supported.\r\nUse RIS for repetitive sig.");
}

TEST_F(TimebaseTest, OnlineSetupWaitsForTheMissingLimits) {
  link.online = true;
  echo("TOv", be(7, 4));
  timebase().SetupTimeDiv();
  EXPECT_EQ(link.requests, (std::vector<std::string>{"MCl", "MCh", "TOl", "TMl", "TMh", "TPl"}));
  EXPECT_TRUE(link.writes.empty());
}

TEST_F(TimebaseTest, FastPositionsWithoutRisStandOnZoomAndStepItDown) {
  timebase().ScrollTimeDiv_Change(7);
  EXPECT_EQ(timebase().model().TimeDiv, kTimeDivRealTime);
  EXPECT_EQ(timebase().model().ScrollTimeDiv, 7);
  EXPECT_FLOAT_EQ(main.scale().SamplePeriod, 500e-9f / 16);
  EXPECT_TRUE(sink.messages.empty());
  timebase().ScrollTimeDiv_Change(8);  // 2 to none
  timebase().ScrollTimeDiv_Change(4);
  timebase().ScrollTimeDiv_Change(8);  // 10 by a jump of 4 to 4
  timebase().ScrollTimeDiv_Change(5);
  timebase().ScrollTimeDiv_Change(9);  // 5 by a jump of 4 to none
  EXPECT_EQ(zooms, (std::vector<int>{2, 1, 10, 4, 5, 1}));
  EXPECT_TRUE(link.writes.empty());
  EXPECT_EQ(stored("Sampling", "TimePerDiv"), "9");

  // With RIS the position samples itself, and a zoom that stood in for it goes.
  zooms.clear();
  timebase().ScrollTimeDiv_Change(6);
  timebase().EnableRIS_Click(true);
  EXPECT_EQ(zooms, (std::vector<int>{4, 1}));
  EXPECT_EQ(timebase().model().TimeDiv, 6);
  EXPECT_TRUE(timebase().model().fastEntriesEnabled);
  EXPECT_TRUE(timebase().risWouldRun());
  EXPECT_EQ(cache().RS, 3);
  EXPECT_EQ(stored("Sampling", "RIS"), "1");
}

TEST_F(TimebaseTest, ClockEchoMarksTheEntryTheDeviceRuns) {
  timebase().ScrollTimeDiv_Change(18);
  link.online = true;
  echo("TS", be(25600, 4));
  echo("MC", be(6250, 2));
  EXPECT_FLOAT_EQ(main.scale().SamplePeriod, 6.25e-6f);
  EXPECT_EQ(timebase().model().TimeDiv, 15);
  EXPECT_EQ(timebase().model().ScrollTimeDiv, 15);
  EXPECT_TRUE(timebase().model().timeDivMarked);
  // 128 us is within 10 % of no entry: the controls stay.
  echo("MC", be(8000, 2));
  EXPECT_EQ(timebase().model().TimeDiv, 15);
}

TEST_F(TimebaseTest, ClockEchoKeepsAFastPositionThatStandsOnZoom) {
  link.online = true;
  deviceLimits();
  timebase().ScrollTimeDiv_Change(5);
  EXPECT_EQ(link.writes, (Writes{{"TS", 256}, {"MC", 3125}, {"QS", 172}}));
  echo("TS", be(256, 4));
  echo("MC", be(3125, 2));
  EXPECT_EQ(timebase().model().TimeDiv, kTimeDivRealTime);
  EXPECT_TRUE(timebase().model().timeDivMarked);
  EXPECT_EQ(timebase().model().ScrollTimeDiv, 5);
  EXPECT_EQ(timebase().model().horZoom, 5);
}

TEST_F(TimebaseTest, MemoryLimitsAreLookedUpByRowAndColumn) {
  link.online = true;
  deviceLimits();
  DeviceCache& c = cache();
  c.TS = 25600;  // real time above the RIS range: class 4
  c.RS = 1;
  c.AP = 1;
  c.M1 = 3;
  ASSERT_EQ(c.limitRow(), 33);
  ASSERT_EQ(c.limitColumn(), 11);
  c.QShTable[33][11] = 100;
  c.QS = 172;
  timebase().limitsOfMode();
  EXPECT_EQ(c.QSh, 100);
  EXPECT_EQ(field("DeviceMemPage.OknoMaxSamples"), "100");
  EXPECT_EQ(link.requests, std::vector<std::string>{"TCh"});
  EXPECT_EQ(link.writes, (Writes{{"MC", 6250}}));  // the rule ran again for the smaller memory

  link.requests.clear();
  c.M1 = 4;
  timebase().limitsOfMode();
  EXPECT_EQ(link.requests, (std::vector<std::string>{"QSh", "TCh"}));
}

TEST_F(TimebaseTest, TheRulesMemoryIsThatOfTheSamplingPeriodAboutToBeSet) {
  link.online = true;
  deviceLimits();
  DeviceCache& c = cache();
  c.TS = 8;  // RIS now: class 1
  c.QShTable[c.limitRow(8)][c.limitColumn()] = 100000;
  c.QShTable[c.limitRow(25600)][c.limitColumn()] = 325;
  TimebaseRuleResult r = timebase().PutGetRegisterMCTSRS(100e-6f);
  EXPECT_EQ(r.TS, 25600);
  EXPECT_EQ(r.QS, 325);
}

TEST_F(TimebaseTest, PresamplesKeepTheirShareOfTheLimit) {
  link.online = true;
  settings.saveInt("Sampling", "PreSamples", 250);
  cache().TS = 25600;
  cache().QS = 1000;
  echo("TCh", be(800, 4));  // the first limit: the stored share comes back
  EXPECT_EQ(link.writes, (Writes{{"TC", 200}}));
  EXPECT_EQ(timebase().model().HScrollCenterMax, 800);
  EXPECT_EQ(timebase().model().HScrollCenterToolTip, "25% presamples");
  EXPECT_TRUE(timebase().model().HScrollCenterEnabled);
  echo("TC", be(200, 2));
  EXPECT_EQ(stored("Sampling", "PreSamples"), "250");
  echo("TCh", be(400, 4));
  EXPECT_EQ(link.writes.back(), (std::pair<std::string, int32_t>{"TC", 100}));
  // Never more presamples than samples.
  echo("QS", be(300, 2));
  EXPECT_EQ(cache().TCh, 300);
  EXPECT_EQ(field("DeviceMemPage.OknoMaxPreSamples"), "300");
  EXPECT_EQ(field("DeviceMemPage.OknoSamples"), "300");
}

TEST_F(TimebaseTest, CentreOfTheRecordWithAndWithoutDelay) {
  cache().QS = 1000;
  cache().TC = 200;
  {
    RecordScale scale = main.scale();
    scale.SamplePeriod = 1e-6f;
    main.setScale(scale);
  }
  timebase().setDelaySeconds(0);
  EXPECT_FLOAT_EQ(timebase().model().CentreTime, 300e-6f);
  timebase().setDelaySeconds(1e-3);
  EXPECT_FLOAT_EQ(timebase().model().CentreTime, 1.5e-3f);
}

TEST_F(TimebaseTest, OfflineControlsStoreAndScaleAtOnce) {
  timebase().ScrollTimeDiv_Change(18);
  EXPECT_EQ(stored("Sampling", "TimePerDiv"), "18");
  EXPECT_FLOAT_EQ(main.scale().SamplePeriod, 1e-3f / 16);
  EXPECT_GT(scaleChanges, 0);
  timebase().stepTimeDiv(100);
  EXPECT_EQ(timebase().model().ScrollTimeDiv, kTimeDivLast);
  timebase().SampleMemoDepth_Click(2);
  EXPECT_EQ(stored("Sampling", "MemoDepth"), "2");
  timebase().PutGetRegisterQS(500);
  EXPECT_EQ(cache().QS, 500);
  EXPECT_EQ(field("Spectrum.OknoSamples"), "500");
  EXPECT_TRUE(link.writes.empty());
}

TEST_F(TimebaseTest, RsEchoSetsRisAndTheRuleFollowsTheDevice) {
  link.online = true;
  deviceLimits();
  echo("RS", be(1, 1));  // the device allows RIS although the check is off
  EXPECT_TRUE(timebase().model().EnableRIS);
  EXPECT_EQ(link.writes, (Writes{{"RS", 3}}));
  EXPECT_EQ(stored("Sampling", "RIS"), "1");
  EXPECT_FALSE(timebase().model().RealtmDraw);
  EXPECT_EQ(stored("Sampling", "Paral"), "0");
  link.writes.clear();
  echo("RS", be(3, 1));
  EXPECT_TRUE(timebase().model().fastEntriesEnabled);
  EXPECT_TRUE(timebase().model().RealtmDraw);
  ASSERT_FALSE(link.writes.empty());
  EXPECT_EQ(link.writes[1].first, "MC");
}
