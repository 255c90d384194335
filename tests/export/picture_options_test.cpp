#include "export/picture_options.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "config/settings.h"

using namespace zorvik;

namespace {

// A store that refuses to write, as a full disk or a locked file does.
struct RefusingSettings : MemorySettings {
  bool refuse = false;
  void SaveSettingValue(const std::string& section, const std::string& name,
                        const std::string& value) override {
    if (refuse) throw std::runtime_error("the store refused " + name);
    MemorySettings::SaveSettingValue(section, name, value);
  }
};

using O = PictureOptions;

TEST(PictureOptions, DefaultsThenStoredValuesSurviveANewModel) {
  RefusingSettings settings;
  O options(settings);
  EXPECT_TRUE(options.withLabels());
  EXPECT_FALSE(options.transparentGif());
  EXPECT_FALSE(options.animatedGifRing());
  EXPECT_FALSE(options.autoFileName());

  options.set(O::WithLabels, false);
  options.set(O::TransparentGif, true);
  options.set(O::AutoFileName, true);
  EXPECT_EQ(settings.GetSettingValue("Save", "WithLabels", ""), "False");
  EXPECT_EQ(settings.GetSettingValue("Save", "transparentGIF", ""), "True");
  EXPECT_EQ(settings.GetSettingValue("Save", "AutoFileName", ""), "True");

  const O restarted(settings);
  EXPECT_FALSE(restarted.withLabels());
  EXPECT_TRUE(restarted.transparentGif());
  EXPECT_FALSE(restarted.animatedGifRing());
  EXPECT_TRUE(restarted.autoFileName());
  // The other windows keep their own.
  EXPECT_TRUE(O(settings, "SaveSpectrum").withLabels());
}

TEST(PictureOptions, AFailedStoreLeavesTheOptionAsItWas) {
  RefusingSettings settings;
  O options(settings);
  settings.refuse = true;
  EXPECT_THROW(options.set(O::TransparentGif, true), std::runtime_error);
  EXPECT_FALSE(options.transparentGif());
  settings.refuse = false;
  EXPECT_FALSE(O(settings).transparentGif());
}

TEST(PictureOptions, TheSpectrumAndHistogramKeepNoAutomaticName) {
  RefusingSettings settings;
  O stat(settings, "SaveStat");
  stat.set(O::AnimatedGifRing, true);
  EXPECT_EQ(settings.GetSettingValue("SaveStat", "AnimatedGIFring", ""), "True");
  EXPECT_FALSE(stat.kept(O::AutoFileName));
  EXPECT_ANY_THROW(stat.set(O::AutoFileName, true));
  EXPECT_FALSE(stat.autoFileName());
}

}  // namespace
