#include <gtest/gtest.h>

#include "config/catalogue.h"
#include "config/settings.h"
#include "core/fault.h"

namespace zorvik {
namespace {

TEST(SettingsStore, AMissingValueReadsAsTheCatalogueHoldsIt) {
  MemorySettings s;
  EXPECT_EQ(s.getText("Ch1", "AcqMode"), "PeakNI");
  EXPECT_EQ(s.getText("Ch1", "TrigRiseFall"), "/");
  EXPECT_EQ(s.getInt("Meters", "InterpolationMaxFind"), 1);
  EXPECT_TRUE(s.getBool("Mode", "AutoStart"));  // a Long 1 read as a switch
  EXPECT_FALSE(s.getBool("Spectrum", "Visible"));
  EXPECT_EQ(s.getInt("Meters Colors", "FRH Back"), -2147483633);
  EXPECT_EQ(s.getInt("Plot1", " 2LineWidth"), 1);
  EXPECT_EQ(s.getText("Folders", "Images"), "");

  // The speed the store was given decides the defaults that hang on it.
  EXPECT_EQ(s.cpuMHz(), kDefaultCpuMHz);
  EXPECT_EQ(s.getInt("Spectrum", "Interpolation1"), 0);
  s.setCpuMHz(300);
  EXPECT_EQ(s.getInt("Spectrum", "Interpolation1"), 1);
  EXPECT_EQ(s.getInt("Plot1", " 2LineWidth"), 2);
}

TEST(SettingsStore, AStoredValueWinsUnlessItMakesNoNumber) {
  MemorySettings s;
  s.SaveSettingValue("Spectrum", "DBdiap", "6");
  s.SaveSettingValue("Spectrum", "Window function", "Hann");
  s.SaveSettingValue("Sampling", "PreSamples", "99999999999");
  s.SaveSettingValue("Mode", "TrigDelay", "12.5");
  s.SaveSettingValue("Ch1", "AcqMode", "Sample");
  EXPECT_EQ(s.getInt("Spectrum", "DBdiap"), 6);
  EXPECT_EQ(s.getInt("Spectrum", "Window function"), 0);
  EXPECT_EQ(s.getInt("Sampling", "PreSamples"), 0);  // past the int range
  EXPECT_DOUBLE_EQ(s.getDouble("Mode", "TrigDelay"), 12.5);
  EXPECT_EQ(s.getText("Ch1", "AcqMode"), "Sample");
}

TEST(SettingsStore, OnlyTheReaderOfAComputedDefaultPassesOne) {
  MemorySettings s;
  EXPECT_EQ(s.getInt("Startup Position", "ZorvikWin Left", 412), 412);
  EXPECT_EQ(s.getInt("Sampling", "TimePerDiv", 4), 4);
  EXPECT_DOUBLE_EQ(s.getDouble("Hor", zoomValueName("HorZoom", 5, "Poz"), 0.0), 0.0);
  s.saveInt("Startup Position", "ZorvikWin Left", 30);
  EXPECT_EQ(s.getInt("Startup Position", "ZorvikWin Left", 412), 30);

  // Without one, a computed default has nothing to fall back on.
  EXPECT_THROW(s.getInt("Startup Position", "ZorvikWin Left"), Fault);
  EXPECT_THROW(s.getInt("Sampling", "TimePerDiv"), Fault);
  EXPECT_THROW(s.getText("Ch1", "GroundInput"), Fault);  // stored for the record, never read
}

// A name the catalogue lacks is refused with or without a default, so that a built or misspelt name
// can't read a value nobody writes.
TEST(SettingsStore, ANameTheCatalogueLacksIsRefused) {
  MemorySettings s;
  s.SaveSettingValue("Spectrum", "InterpolationMaxFind", "0");
  EXPECT_THROW(s.getInt("Spectrum", "InterpolationMaxFind"), Fault);  // it lives under "Meters"
  EXPECT_THROW(s.getDouble("Hor", "HorZoom5Poz", 0.0), Fault);        // the zoom is written with its blank
  EXPECT_THROW(s.getBool("Nowhere", "Visible", false), Fault);
  EXPECT_THROW(s.getText("View", "Hor.lab.font size"), Fault);  // the name ends in a blank
  try {
    s.getInt("Meters setting", "XYZ AvgTime");
    FAIL() << "no fault";
  } catch (const Fault& f) {
    EXPECT_STREQ(f.what(), "No setting \"XYZ AvgTime\" in section \"Meters setting\" is known");
  }
}

}  // namespace
}  // namespace zorvik
