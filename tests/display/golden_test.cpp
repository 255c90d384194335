#include <gtest/gtest.h>

#include <QImage>
#include <cstdlib>
#include <filesystem>

#include "display_test_util.h"

using namespace zorvik;
using namespace zorvik::test;

namespace {

std::string goldenPath(const std::string& name) {
  // From the build's own record of the source tree: __FILE__ may be relative under a compiler cache.
  return (std::filesystem::path(ZORVIK_SOURCE_DIR).parent_path() / "tests" / "golden" / name).string();
}

// Compares with the stored picture; ZORVIK_UPDATE_GOLDEN=1 writes it anew after a wanted change.
void expectGolden(const QImage& image, const std::string& name) {
  const std::string path = goldenPath(name);
  if (std::getenv("ZORVIK_UPDATE_GOLDEN")) {
    ASSERT_TRUE(image.save(QString::fromStdString(path), "PNG"));
    return;
  }
  QImage golden(QString::fromStdString(path));
  ASSERT_FALSE(golden.isNull()) << path;
  golden = golden.convertToFormat(QImage::Format_RGB32);
  ASSERT_EQ(golden.size(), image.size());
  int differ = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) differ += golden.pixel(x, y) != image.pixel(x, y);
  EXPECT_EQ(differ, 0) << name;
}

}  // namespace

TEST(Golden, SineWithSinXAndTheGrid) {
  // The plot speed test's packet: 330 samples at 32 a division... here 16, so it fills the screen.
  DisplayRig rig([](DisplaySettings& s) {
    s.gridVisible = true;
    s.varBright = true;
    s.interpolation = 2;
    s.interpolationPoints = 5;
    s.gridFore = true;
  });
  rig.samples(byteSamples(
      330, [](int k) { return static_cast<int>(std::lround(80 * std::sin(10.2 * (k + 5) / 50) + 127)); }));
  ASSERT_EQ(rig.d().canvas().width(), 341);
  ASSERT_EQ(rig.d().canvas().height(), 277);
  expectGolden(rig.d().canvas().image(), "sine_sinx_zoom1.png");
}

TEST(Golden, ColourGradedPeaksOnTheWideScreen) {
  DisplayRig rig([](DisplaySettings& s) {
    s.gridVisible = true;
    s.wide = true;
    s.memory = 1;
    s.memoMode = 2;
    s.memoryDepth = 2;
  });
  rig.host.samplesPerDiv = 32;
  for (int n = 0; n < 12; ++n) {
    std::string seg;
    for (int i = 0; i < 600; ++i) {
      const int mid = static_cast<int>(std::lround(128 + 70 * std::sin(i / 30.0 + n * 0.05)));
      const int spread = 4 + (i * 7 + n * 13) % 9;
      seg += static_cast<char>(mid - spread);
      seg += static_cast<char>(mid + spread);
    }
    ++rig.host.packetCount;
    rig.d().PlotPeaks(seg, 1, false);
  }
  ASSERT_EQ(rig.d().canvas().width(), 501);
  expectGolden(rig.d().canvas().image(), "peaks_colour_wide_zoom1.png");
}
