#include "spectrum/spectrum_stage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "config/settings.h"

using namespace zorvik;

namespace {

using Reader = SpectrumStage::Reader;

// An 8-bit record of 1024 samples: a sine between bins 40 and 41, so that refinement moves the peak.
std::string offBinSine() {
  std::string s;
  for (int k = 0; k < 1024; ++k)
    s += static_cast<char>(std::lround(128 + 90 * std::sin(2 * std::acos(-1.0) * 40.4 * k / 1024)));
  return s;
}

// The stage behind an open spectrum window, on a store, counting what it does.
struct StageTest : ::testing::Test {
  MemorySettings settings;
  SpectrumStage stage{[] { return SpectrumStage::Scale{}; }};
  std::string samples = offBinSine();
  int computed = 0, moved = 0, replots = 0;

  void SetUp() override {
    stage.loadSettings(settings);
    stage.visible = [] { return true; };
    stage.onComputed = [this] { ++computed; };
    stage.onSettingsMoved = [this] { ++moved; };
    stage.onPlotChanged = [this] { ++replots; };
  }
  void packet() { stage.spectrum(SegmentData{samples}); }
  std::string stored(const char* section, const char* name) {
    return settings.GetSettingValue(section, name, "<none>");
  }
};

TEST_F(StageTest, ThdTurnsRectangularIntoHammingOnceAndEachPacketComputesOnce) {
  stage.setReaderOpen(Reader::Thd, true);
  packet();
  EXPECT_EQ(computed, 1);
  EXPECT_EQ(moved, 1);
  EXPECT_EQ(stage.settings().WindowFunction, 1);
  EXPECT_EQ(stored("Spectrum", "Window function"), "1");
  EXPECT_TRUE(stage.engine().Refined);
  packet();
  EXPECT_EQ(computed, 2);
  EXPECT_EQ(moved, 1);

  // Choosing Rectangular while the meter reads: the computation it asks for is made with Hamming again.
  stage.setWindowFunction(0);
  EXPECT_EQ(computed, 3);
  EXPECT_EQ(moved, 2);
  EXPECT_EQ(stage.settings().WindowFunction, 1);
  EXPECT_EQ(stored("Spectrum", "Window function"), "1");

  // Another window is no obstacle to the rebuilding and stays.
  stage.setWindowFunction(2);
  packet();
  EXPECT_EQ(stage.settings().WindowFunction, 2);
  EXPECT_EQ(moved, 2);
}

TEST_F(StageTest, ReadersThatWantSinxxAndTheOnesThatDoNot) {
  struct Case {
    const char* what;
    bool mainOpen, mainSinxx, thdOpen;
    int interpolation;
    int window;  // after a packet
  };
  const Case cases[] = {
      {"nobody", false, true, false, 0, 0},
      {"main meter without Sin(x)/x", true, false, false, 0, 0},
      {"main meter closed, its Sin(x)/x checked", false, true, false, 0, 0},
      {"main meter with Sin(x)/x", true, true, false, 0, 1},
      {"Lanczos plot", false, false, false, 2, 1},
      {"THD", false, false, true, 0, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    stage.setReaderOpen(Reader::MainMeter, false);
    stage.setReaderOpen(Reader::Thd, false);
    stage.setInterpolation(0);
    stage.setWindowFunction(0);
    stage.setInterpolation(c.interpolation);
    stage.setMainMeterSinxx(c.mainSinxx);
    stage.setReaderOpen(Reader::MainMeter, c.mainOpen);
    stage.setReaderOpen(Reader::Thd, c.thdOpen);
    packet();
    EXPECT_EQ(stage.settings().WindowFunction, c.window);
    EXPECT_EQ(stored("Spectrum", "Window function"), std::to_string(c.window));
  }
  // Back to "None": the window that Sin(x)/x brought stays.
  stage.setInterpolation(0);
  stage.setReaderOpen(Reader::Thd, false);
  packet();
  EXPECT_EQ(stage.settings().WindowFunction, 1);
}

TEST_F(StageTest, RefinementLastsWhileTheThdMeterIsOpenOrTheNormalisedPlotIsInterpolated) {
  stage.setWindowFunction(1);
  packet();
  EXPECT_FALSE(stage.engine().Refined);
  stage.setReaderOpen(Reader::Thd, true);
  packet();
  EXPECT_TRUE(stage.engine().Refined);
  stage.setReaderOpen(Reader::Thd, false);
  EXPECT_FALSE(stage.refinePeak());
  packet();
  EXPECT_FALSE(stage.engine().Refined);

  // The main meter searches its own band: its Sin(x)/x does not refine the spectrum's peak.
  stage.setMainMeterSinxx(true);
  stage.setReaderOpen(Reader::MainMeter, true);
  packet();
  EXPECT_FALSE(stage.engine().Refined);

  stage.setInterpolation(1);
  EXPECT_FALSE(stage.refinePeak());
  stage.setNormalize(true);
  EXPECT_TRUE(stage.engine().Refined);
}

TEST_F(StageTest, SettingsAreStoredAndReadBackByTheNextStage) {
  stage.setDb(true);
  stage.setDbRangeIndex(9);  // past the list: its last entry
  stage.setNormalize(true);
  stage.setDCfreq(true);
  stage.setDoubled(true);
  stage.setWindowFunction(4);
  stage.setInterpolation(2);
  stage.setMainMeterSinxx(false);
  EXPECT_EQ(replots, 2);   // dB and its range only redraw
  EXPECT_EQ(computed, 0);  // no acquisition yet

  SpectrumStage next([] { return SpectrumStage::Scale{}; });
  next.loadSettings(settings);
  EXPECT_TRUE(next.plot().dB);
  EXPECT_EQ(next.dbRangeIndex(), 6);
  EXPECT_EQ(next.plot().dBRange, 70);
  EXPECT_TRUE(next.plot().normalize);
  EXPECT_TRUE(next.settings().DCfreq);
  EXPECT_TRUE(next.settings().Doubled);
  EXPECT_EQ(next.settings().WindowFunction, 4);
  EXPECT_EQ(next.plot().interpolation, 2);
  EXPECT_FALSE(next.mainMeterSinxx());
  EXPECT_EQ(stored("Meters", "InterpolationMaxFind"), "0");
}

}  // namespace
