#include "session/run_control.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include "config/settings.h"
#include "core/recording_sink.h"
#include "link/fake_obex.h"
#include "session/main_controller.h"

using namespace zorvik;
using zorvik::test::FakeObex;

namespace {

struct RunFixture : ::testing::Test {
  MemorySettings settings;
  RecordingSink sink;
  MainView view;
  FakeObex link;
  MainController main{settings, sink, view};
  std::unique_ptr<RunControl> run;
  void SetUp() override {
    // No wait after a calibration, so that the tests don't sleep.
    settings.saveInt("AutoCalibrating", "StartDelay", 0);
    main.attachLink(&link);
    link.online = true;
    run = std::make_unique<RunControl>(main);
  }
  void TearDown() override { main.attachLink(nullptr); }
  std::vector<std::string> commands() {
    std::vector<std::string> out;
    for (const auto& c : link.calls)
      if (c.rfind("SendCommand", 0) == 0 || c.rfind("SetRepeat", 0) == 0) out.push_back(c);
    return out;
  }
};

}  // namespace

TEST(RunLists, AveragesRegisterAndEntrySearch) {
  EXPECT_EQ(averagesRegister("1"), 0);
  EXPECT_EQ(averagesRegister("256"), 255);
  EXPECT_EQ(averagesRegister("255"), 254);
  EXPECT_EQ(averagesRegister("junk"), 0);
  EXPECT_EQ(averagesList()[averagesEntryFor(averagesList(), 255)], "256");
  EXPECT_EQ(risAveragesList()[averagesEntryFor(risAveragesList(), 254)], "255");
  EXPECT_EQ(averagesList()[averagesEntryFor(averagesList(), 5)], "4");  // the entry at most AP + 1
  EXPECT_EQ(averagesEntryFor(averagesList(), 0), 0);
}

using RunControlTest = RunFixture;

TEST_F(RunControlTest, FirstStartOfASessionCalibratesWhateverThePageSays) {
  settings.saveInt("AutoCalibrating", "KeyStart", 0);
  run->KeyStart_Click();
  run->KeyStart_Click();
  EXPECT_EQ(commands(), (std::vector<std::string>{"SendCommand C", "SendCommand D", "SendCommand D"}));
  EXPECT_EQ(main.state().modeText, "Started");
  EXPECT_EQ(main.PacketCount(), 0);
}

TEST_F(RunControlTest, StartCalibratesUnlessRisOrAcSaySo) {
  main.setFirstCalibrationDone(true);
  run->inputIsAc = [] { return true; };
  settings.saveInt("AutoCalibrating", "KeyStartAC", 0);
  run->KeyStart_Click();
  EXPECT_EQ(commands(), (std::vector<std::string>{"SendCommand D"}));
  settings.saveInt("AutoCalibrating", "KeyStartAC", 1);
  run->KeyStart_Click();
  EXPECT_EQ(commands().size(), 3u);
  EXPECT_EQ(commands()[1], "SendCommand C");
}

TEST_F(RunControlTest, SerialStartOrderAndModeTexts) {
  run->WorkMode_Click(false);
  EXPECT_EQ(main.state().modeText, "Ready");
  EXPECT_TRUE(run->model().keyStartVisible);
  EXPECT_EQ(run->model().frameModeCaption, "Manual: one-time sampling by Start key");
  link.calls.clear();
  run->WorkMode_Click(true);
  EXPECT_EQ(commands(), (std::vector<std::string>{"SendCommand C", "SetRepeatCommand on D"}));
  EXPECT_EQ(main.state().modeText, "Auto");
  EXPECT_EQ(run->model().workModeToolTip, "Press to stop serial acquisitions");
  EXPECT_EQ(settings.GetSettingValue("Mode", "AutoStart", ""), "1");
  run->AutoWait_Click(false);
  EXPECT_EQ(main.state().modeText, "Norm");
  EXPECT_EQ(run->model().frameModeCaption, "NORM: Sampling will be only if the trigger occurs.");
  EXPECT_EQ(link.calls.back(), "Put1 RT=1");
  run->WorkMode_Click(false);
  EXPECT_EQ(commands().back(), "SetRepeatCommand off ");
}

TEST_F(RunControlTest, EchoOfRtAndApMovesTheControls) {
  main.cache().RT = 0x81;
  run->rtEcho();
  EXPECT_FALSE(run->model().AutoWait);
  EXPECT_EQ(run->model().CurrentTriggerModeWin, "Normal");
  run->AutoWait_Click(true);
  EXPECT_EQ(link.calls.back(), "Put1 RT=128");  // the other bits are kept as they came

  main.cache().AP = 255;
  run->apEcho();
  EXPECT_EQ(averagesList()[run->model().averagesIndex], "256");
  EXPECT_EQ(settings.GetSettingValue("Sampling", "AveragesPeaks", ""), "255");
  EXPECT_EQ(main.AveragesPeaks(), 255);
}

TEST_F(RunControlTest, OnlineAveragesWaitForTheEcho) {
  link.online = true;
  run->AveragesPeaks_Click(3);  // "8"
  run->RisAveragesPeaks_Click(0);
  EXPECT_EQ(link.calls.back(), "Put1 AR=0");
  EXPECT_EQ(main.cache().AP, 0);  // the device may refuse; the cache holds what it runs
  EXPECT_NE(main.cache().AR, 0);
  EXPECT_EQ(settings.getInt("Sampling", "AveragesPeaks"), 0);
}

TEST_F(RunControlTest, OfflineAveragesAreStoredAtOnce) {
  link.online = false;
  run->AveragesPeaks_Click(3);  // "8"
  EXPECT_EQ(main.cache().AP, 7);
  EXPECT_EQ(settings.GetSettingValue("Sampling", "AveragesPeaks", ""), "7");
  for (const auto& c : link.calls) EXPECT_NE(c.rfind("Put1 AP", 0), 0u);
}

TEST_F(RunControlTest, PeriodicCalibrationFollowsThePage) {
  run->SetupPeriodicCalibration();
  EXPECT_EQ(link.calls.back(), "SetPeriodicCommand on C 30000");
  run->risWouldRun = [] { return true; };
  run->SetupPeriodicCalibration();
  EXPECT_EQ(link.calls.back(), "SetPeriodicCommand off C 30000");
  settings.saveInt("AutoCalibrating", "PeriodicRIS", 1);
  settings.saveInt("AutoCalibrating", "Interval", 99);  // past the list: its last entry
  run->SetupPeriodicCalibration();
  EXPECT_EQ(link.calls.back(), "SetPeriodicCommand on C 120000");
}
