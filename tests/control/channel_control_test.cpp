#include "control/control_fixture.h"
#include "core/fault.h"

using namespace zorvik;
using zorvik::test::be;

using ChannelTest = zorvik::test::ControlFixture;

TEST_F(ChannelTest, OfflineSensitivityStoresAndTheLastPositionShiftsHalfAsFar) {
  channel().scrollCH1_Change(11);
  const ChannelModel& m = channel().model();
  EXPECT_FLOAT_EQ(m.FullScale, 40.0f);
  EXPECT_FLOAT_EQ(m.OffsetMax, 40.0f);
  EXPECT_FLOAT_EQ(m.OffsetMin, -40.0f);
  EXPECT_EQ(m.hardwShiftToolTip, "Hardware offset: from -40V to 40V");
  channel().scrollCH1_Change(12);
  EXPECT_FLOAT_EQ(m.FullScale, 80.0f);
  EXPECT_FLOAT_EQ(m.OffsetMax, 40.0f);
  EXPECT_FLOAT_EQ(m.OffsetMin, -40.0f);
  EXPECT_TRUE(m.voltDivMarked);
  EXPECT_EQ(cache().V1, 10000);
  EXPECT_FLOAT_EQ(main.scale().FullScaleVolts, 80.0f);
  EXPECT_EQ(stored("Ch1", "VoltPerDiv"), "12");
  channel().scrollCH1_Change(2);  // below the list: its first entry
  EXPECT_EQ(m.scrollCH1, kVoltDivFirst);
  EXPECT_TRUE(link.writes.empty());
}

TEST_F(ChannelTest, OnlineSensitivityOnlyWritesAndTheEchoMovesTheRest) {
  link.online = true;
  channel().scrollCH1_Change(8);
  EXPECT_EQ(link.writes, (std::vector<std::pair<std::string, int32_t>>{{"V1", 500}}));
  EXPECT_FALSE(channel().model().voltDivMarked);
  EXPECT_FLOAT_EQ(main.scale().FullScaleVolts, 1.6f);
  EXPECT_EQ(stored("Ch1", "VoltPerDiv"), "7");

  echo("V1", be(500, 2));
  EXPECT_TRUE(channel().model().voltDivMarked);
  EXPECT_FLOAT_EQ(main.scale().FullScaleVolts, 4.0f);
  EXPECT_EQ(stored("Ch1", "VoltPerDiv"), "8");
  EXPECT_EQ(link.requests, (std::vector<std::string>{"P1h", "P1l"}));
}

TEST_F(ChannelTest, EveryListedSensitivityIsFoundAgainFromItsEcho) {
  link.online = true;
  for (int i = 0; i < kVoltDivCount; ++i) {
    int mv = static_cast<int>(voltDivValue(i) * 1000 + 0.5f);
    echo("V1", be(mv, 2));
    EXPECT_EQ(stored("Ch1", "VoltPerDiv"), std::to_string(i)) << mv << " mV";
  }
}

TEST_F(ChannelTest, EchoOfAV1NotInTheListScalesByItsNumberWithoutAMark) {
  link.online = true;
  channel().scrollCH1_Change(6);
  echo("V1", be(70, 2));
  EXPECT_FLOAT_EQ(channel().model().FullScale, 0.56f);
  EXPECT_FALSE(channel().model().voltDivMarked);
  EXPECT_FLOAT_EQ(main.scale().FullScaleVolts, 0.56f);
  EXPECT_EQ(stored("Ch1", "VoltPerDiv"), "7");
}

TEST_F(ChannelTest, AnUnlistedEchoLeavesNoEntryMarkedWhereverTheTimeScrollPoints) {
  timebase().ScrollTimeDiv_Change(8);
  channel().scrollCH1_Change(9);
  echo("V1", be(70, 2));
  EXPECT_FALSE(channel().model().voltDivMarked);
  echo("V1", be(200, 2));  // a listed value marks its entry again
  EXPECT_TRUE(channel().model().voltDivMarked);
}

TEST_F(ChannelTest, OffsetBytesAreSignedAndFfZeroIsOneFullScaleDown) {
  echo("P1", std::string("\xFF\x00", 2));
  EXPECT_EQ(cache().P1, -256);
  EXPECT_FLOAT_EQ(channel().model().OffsetVolts, -1.6f);
  EXPECT_FLOAT_EQ(main.scale().ZeroVolts, -1.6f);
  EXPECT_EQ(channel().model().VScroll1, kVScroll1Min);
  EXPECT_EQ(stored("Ch1", "Offset"), std::to_string(kVScroll1Min));
}

TEST_F(ChannelTest, OffsetRangeFromTheSessionsTableOrAskedFor) {
  link.online = true;
  cache().P1hTable[8] = 768;
  cache().P1lTable[8] = -512;
  cache().P1hValid[8] = cache().P1lValid[8] = true;
  echo("V1", be(500, 2));
  EXPECT_TRUE(link.requests.empty());
  EXPECT_FLOAT_EQ(channel().model().OffsetMax, 12.0f);
  EXPECT_FLOAT_EQ(channel().model().OffsetMin, -8.0f);
  EXPECT_EQ(channel().model().hardwShiftToolTip, "Hardware offset: from -8V to 12V");

  // An offset outside the new limits is asked for again; its echo sets the scale.
  cache().P1 = 1000;
  echo("V1", be(500, 2));
  EXPECT_EQ(link.requests, std::vector<std::string>{"P1"});
  // Limits that arrive are kept for this position.
  echo("V1", be(200, 2));
  echo("P1h", be(700, 2));
  EXPECT_TRUE(cache().P1hValid[7]);
  EXPECT_EQ(cache().P1hTable[7], 700);
}

TEST_F(ChannelTest, OffsetScrollFitsTheRangeAndWritesWhenSet) {
  link.online = true;
  cache().P1hTable[8] = 768;
  cache().P1lTable[8] = -768;
  cache().P1hValid[8] = cache().P1lValid[8] = true;
  echo("V1", be(500, 2));  // full scale 4 V, offset -12 V to 12 V
  echo("P1", be(128, 2));  // 2 V
  const ChannelModel& m = channel().model();
  EXPECT_FLOAT_EQ(m.OffsetVolts, 2.0f);
  EXPECT_EQ(m.VScroll1, 167);           // -1000 + 2000 x 14 / 24
  EXPECT_EQ(m.VScroll1LargeStep, 333);  // one full scale of 2000 - 2 steps
  EXPECT_EQ(stored("Ch1", "Offset"), "167");

  channel().VScroll1_Scroll(500);  // dragging: the display only
  EXPECT_FLOAT_EQ(main.scale().ZeroVolts, 6.0f);
  EXPECT_TRUE(link.writes.empty());
  channel().VScroll1_Change(500);
  EXPECT_EQ(link.writes.back(), (std::pair<std::string, int32_t>{"P1", 384}));
  channel().KeyNulOffset1_Click();
  EXPECT_EQ(link.writes.back(), (std::pair<std::string, int32_t>{"P1", 0}));
}

TEST_F(ChannelTest, OfflineOffsetStoresItsPositionAndTheCache) {
  channel().VScroll1_Change(-500);  // half way down the offline range of one full scale
  EXPECT_FLOAT_EQ(channel().model().OffsetVolts, -0.8f);
  EXPECT_EQ(cache().P1, -128);
  EXPECT_EQ(stored("Ch1", "Offset"), "-500");
  channel().HardwShift1_Click(false);
  channel().stepVScroll(1);
  EXPECT_EQ(channel().model().VScroll1, -500);
  EXPECT_EQ(stored("Ch1", "ShiftEnable"), "False");
}

TEST_F(ChannelTest, ModeChecksGiveTheCodeInTheirOrderAndStoreTheText) {
  EXPECT_EQ(cache().M1, 3);  // peak pairs, not interlaced, until told otherwise
  channel().NIpeak1_Click(true);
  EXPECT_EQ(cache().M1, 2);
  EXPECT_EQ(stored("Ch1", "AcqMode"), "PeakInt");
  channel().Average1_Click(true);
  EXPECT_FALSE(channel().model().Peak1);
  EXPECT_EQ(cache().M1, 0);
  channel().HiRes1_Click(true);
  EXPECT_EQ(cache().M1, 1);
  EXPECT_EQ(stored("Ch1", "AcqMode"), "HiRes");
  channel().HiRes1_Click(false);
  EXPECT_EQ(cache().M1, 4);
  EXPECT_EQ(stored("Ch1", "AcqMode"), "Sample");
}

TEST_F(ChannelTest, UnknownModeEchoMovesNothingButAsksForTheLimits) {
  link.online = true;
  cache().TS = 25600;
  echo("M1", be(5, 1));
  EXPECT_TRUE(channel().model().Peak1);
  EXPECT_EQ(stored("Ch1", "AcqMode"), "<none>");
  EXPECT_EQ(link.requests, (std::vector<std::string>{"QSh", "TCh"}));
}

TEST_F(ChannelTest, CouplingBitsAndTheNewZeroAfterTheBandLimit) {
  channel().OpenClose1_Click(false);
  EXPECT_EQ(cache().O1, 2);
  EXPECT_EQ(stored("Ch1", "CloseInput"), "0");
  EXPECT_TRUE(channel().inputIsAc());

  link.online = true;
  link.serialActive = true;
  channel().FilterH1_Click(true);
  EXPECT_EQ(link.writes.back(), (std::pair<std::string, int32_t>{"O1", 6}));
  EXPECT_TRUE(link.commands.empty());
  echo("O1", be(6, 1));
  EXPECT_EQ(link.commands, std::vector<std::string>{"C"});
  echo("O1", be(0x0D, 1));  // ground and the low band limit; the high one unchanged
  EXPECT_EQ(link.commands.size(), 1u);
  EXPECT_TRUE(channel().model().Ground1);
  EXPECT_TRUE(channel().model().OpenClose1);
  EXPECT_EQ(stored("Ch1", "FilterInputL"), "1");
}

TEST_F(ChannelTest, VerticalZoomScale) {
  channel().setVertZoom(2, 5, 0, 10);
  EXPECT_FLOAT_EQ(channel().model().ZoomVoltPerDiv, 0.1f);
  EXPECT_NEAR(channel().model().ZoomCentre, 0.0f, 1e-6);
  channel().setVertZoom(2, 10, 0, 10);  // the top half
  EXPECT_FLOAT_EQ(channel().model().ZoomCentre, 0.4f);
  channel().setVertZoom(1, 0, 0, 0);
  EXPECT_FLOAT_EQ(channel().model().ZoomCentre, 0.0f);
  EXPECT_THROW(channel().setVertZoom(0, 0, 0, 10), Fault);
}
