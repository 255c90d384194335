#include "analysis/analysis_view.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "analysis/analysis_frames.h"
#include "config/catalogue.h"
#include "config/settings.h"
#include "spectrum/plot_columns.h"
#include "spectrum/spectrum_engine.h"
#include "spectrum/spectrum_plot.h"
#include "stat/histogram.h"

using namespace zorvik;

namespace {

// A spectrum of 2048 bins up to 1.024 MHz (500 Hz a bin) with two equal lines two bins apart.
SpectrumEngine twoLines(int first) {
  SpectrumEngine e;
  e.SpecBins = 2048;
  e.SpecAmp.assign(2049, 0.001f);
  e.SpecAmp[static_cast<size_t>(first)] = e.SpecAmp[static_cast<size_t>(first + 2)] = 0.5f;
  e.MaxFreq = 1.024e6f;
  e.FullAmp = 1;
  e.ShownMax = e.PeakAmp = 0.5f;
  e.ScaleValid = true;
  return e;
}

// The lowest row (the highest value) among the columns from..to.
float top(const std::vector<float>& rows, int from, int to) {
  float best = 1e9f;
  for (int x = from; x <= to; ++x)
    if (rows[static_cast<size_t>(x)] != kEmptyColumn) best = std::min(best, rows[static_cast<size_t>(x)]);
  return best;
}

}  // namespace

TEST(AnalysisView, TwoLinesTwoBinsApartAreSeparatedAtTenTimesAndTheMarkersReadTheirDistance) {
  MemorySettings store;
  AnalysisView view(store, "Spectrum");
  view.useStyle(StyleKey::Interpolation, kNoInterpolation);
  const SpectrumEngine e = twoLines(100);  // 50 kHz and 51 kHz
  SpectrumPlotSettings s;
  const PlotFrame frame = spectrumFrame(e, s, true);
  ASSERT_TRUE(frame.valid);

  // In full view both lines fall within one column or two: nothing between them shows.
  const auto columnOf = [&](const PlotRange& r, int bin) {
    return static_cast<int>(std::lround(plotX(r, bin * frame.binWidth))) - PlotGeometry::kMargin;
  };
  PlotRange r = view.range(frame);
  EXPECT_LE(columnOf(r, 102) - columnOf(r, 100), 1);

  // x10 at the left end: ten columns per five bins; a dip stands between the two lines.
  view.hZoom().keyClicked(10, true);
  view.hZoom().setValue(ViewZoom::kMax);
  EXPECT_EQ(store.getInt("Spectrum", "HorZoom"), 10);
  r = view.range(frame);
  EXPECT_NEAR(r.span, 102400, 1e-6);
  const std::vector<float> rows = frameColumns(frame, r, view.style());
  const int a = columnOf(r, 100), b = columnOf(r, 102);
  ASSERT_GE(b - a, 3);
  EXPECT_LT(top(rows, a, a), top(rows, a + 1, b - 1) - 100) << "the columns between the lines are far lower";
  EXPECT_FLOAT_EQ(top(rows, a, a), top(rows, b, b));

  view.setMarkers(frame, 100 * frame.binWidth, 102 * frame.binWidth);
  const PlotTexts texts = spectrumTexts(false);
  EXPECT_EQ(view.markerHorText(texts), "  " + frequencyText(1000));
  EXPECT_EQ(view.markerHorText(texts), "  1kHz");
  // The picture is drawn with both markers in view.
  const QImage picture = view.picture(frame, texts);
  EXPECT_EQ(picture.size(), QSize(PlotGeometry::imageWidth(), PlotGeometry::imageHeight()));
}

TEST(AnalysisView, MarkersFollowTheMouseFromSixPixels) {
  MemorySettings store;
  AnalysisView view(store, "Spectrum");
  const PlotFrame frame = spectrumFrame(twoLines(10), {}, true);
  view.markerDown(frame, 100, 100);
  view.markerMove(frame, 105, 95);  // five pixels: no marker yet
  EXPECT_FALSE(view.markers().vertical);
  EXPECT_FALSE(view.markers().horizontal);
  view.markerMove(frame, 106, 100);
  EXPECT_TRUE(view.markers().vertical);
  EXPECT_FALSE(view.markers().horizontal);
  view.markerMove(frame, 106, 94);
  EXPECT_TRUE(view.markers().horizontal);
  const PlotTexts texts = spectrumTexts(true);
  EXPECT_EQ(view.markerVertText(texts).substr(0, 2), "  ");
  EXPECT_NE(view.markerVertText(texts).find("dB / "), std::string::npos);
  // Markers from outside the axis are brought onto it.
  view.setMarkers(frame, -5, std::nan(""));
  EXPECT_EQ(view.markers().x1, 0);
  EXPECT_EQ(view.markers().x2, 0);
}

// Every value of the two windows' sections in the catalogue is read and written by its owner; the
// plot's own are read here from the store and written through the view.
TEST(AnalysisView, EverySettingOfTheSectionsHasItsOwner) {
  const std::set<std::string> elsewhere = {
      "Left",          "Top",       "Height",
      "Width",         "Visible",  // the window's place
      "Vert1Zoom",     "HorZoom",   "Vert1Zoom<Z>Poz",
      "HorZoom<Z>Poz",  // the zoom axes
      "Normalize",     "VertScale", "DC",
      "Double",        "DBdiap",    "Window function"};  // the stage and window
  std::set<std::string> style;
  for (int i = 0; i < kStyleKeys; ++i) style.insert(styleEntry(static_cast<StyleKey>(i)).name);
  for (const CatalogueEntry& entry : catalogueEntries()) {
    for (std::string_view section : catalogueSections(entry)) {
      if (section != "Spectrum" && section != "Stat") continue;
      const std::string name(entry.name);
      EXPECT_TRUE(style.count(name) || elsewhere.count(name)) << section << "/" << name << " has no owner";
    }
  }
  for (const char* section : {"Spectrum", "Stat"}) {
    for (int i = 0; i < kStyleKeys; ++i) {
      const auto key = static_cast<StyleKey>(i);
      const StyleEntry& e = styleEntry(key);
      ASSERT_TRUE(findCatalogueEntry(section, e.name)) << e.name;
      MemorySettings store;
      const int value = e.isBool ? 1 - PlotStyle::load(store, section)[key] : e.max;
      store.SaveSettingValue(section, e.name, e.isBool ? (value ? "True" : "False") : std::to_string(value));
      AnalysisView view(store, section);
      EXPECT_EQ(view.style()[key], value) << section << "/" << e.name << " read";
      view.setStyle(key, e.min);
      EXPECT_EQ(PlotStyle::load(store, section)[key], e.min) << section << "/" << e.name << " written";
    }
  }
}

TEST(AnalysisView, ADamagedStoreIsBroughtIntoRange) {
  MemorySettings store;
  store.SaveSettingValue("Stat", "Line1Color", "99");
  store.SaveSettingValue("Stat", "InterpolationPoints1", "-4");
  store.SaveSettingValue("Stat", "HorZoom", "3");  // no key has it
  store.SaveSettingValue("Stat", "Vert1Zoom", "5");
  store.SaveSettingValue("Stat", "Vert1Zoom 5Poz", "1e300");
  AnalysisView view(store, "Stat");
  EXPECT_EQ(view.style()[StyleKey::LineColor], 7);
  EXPECT_EQ(view.style()[StyleKey::InterpolationPoints], 1);
  EXPECT_EQ(view.hZoom().factor(), 1);
  EXPECT_EQ(view.vZoom().factor(), 5);
  EXPECT_EQ(view.vZoom().value(), ViewZoom::kMax);
}

TEST(AnalysisView, TheHistogramIsDrawnAsBarsByDefault) {
  MemorySettings store;
  AnalysisView view(store, "Stat");
  EXPECT_TRUE(view.style().on(StyleKey::Fill));
  EXPECT_FALSE(view.style().on(StyleKey::Line));
  view.useStyle(StyleKey::Interpolation, kNoInterpolation);
  view.useStyle(StyleKey::Pixel, 0);
  HistogramEngine h;
  const std::string samples(100, '\x80');
  h.BuildHistogram({samples, false, false, true, 1.6f, 0});
  const PlotFrame frame = histogramFrame(h, true, false, true);
  ASSERT_TRUE(frame.valid);
  view.hZoom().keyClicked(10, true);  // 25.6 bins across: each bin about 16 columns wide
  view.hZoom().setValue(0);           // the middle, where level 128 stands
  const QImage picture = view.picture(frame, histogramTexts(h, false));
  const QRgb fill = 0xFF000000u | styleColour(view.style()[StyleKey::FillColor]);
  int filled = 0;
  const int y = PlotGeometry::kMargin + PlotGeometry::kHeight - 20;
  for (int x = PlotGeometry::kMargin; x < PlotGeometry::kMargin + PlotGeometry::kWidth; ++x)
    if (picture.pixel(x, y) == fill) ++filled;
  EXPECT_GE(filled, 12) << "one bar, a bin wide";
  EXPECT_LE(filled, 17);
}

TEST(AnalysisView, MemoryDrawsEveryNthAcquisitionAndItsKeyResetsTheHeldMaximum) {
  MemorySettings store;
  AnalysisView view(store, "Spectrum");
  int memoKeys = 0;
  view.onMemoKey = [&] { ++memoKeys; };
  view.setStyle(StyleKey::MemoMode, 2);
  view.setStyle(StyleKey::AcqPerPlot, 2);   // every fifth
  view.setStyle(StyleKey::MemoryDepth, 3);  // 8: decay by 7/8 each acquisition
  EXPECT_EQ(memoKeys, 0);
  view.setStyle(StyleKey::Memory, 1);
  EXPECT_EQ(memoKeys, 1);
  EXPECT_EQ(store.getInt("Spectrum", "Memory"), 1);
  const PlotFrame frame = spectrumFrame(twoLines(100), {}, true);
  std::vector<bool> drawn;
  for (int i = 0; i < 6; ++i) drawn.push_back(view.acquire(frame));
  // The first four are drawn while the count is below five; then every fifth.
  EXPECT_EQ(drawn, (std::vector<bool>{true, true, true, true, false, true}));
  // The hit under the strongest line: weight 8 a hit, decayed 7/8 between hits, so below 6 × 8.
  const PlotRange r = view.range(frame);
  const int x = static_cast<int>(std::lround(plotX(r, 100 * frame.binWidth))) - PlotGeometry::kMargin;
  int32_t most = 0;
  for (int y = 1; y < 255; ++y) most = std::max(most, view.memoryCount(x, y));  // rows 0 and 255 never decay
  EXPECT_GT(most, 8);
  EXPECT_LT(most, 48);
  view.setStyle(StyleKey::Memory, 0);
  EXPECT_EQ(memoKeys, 2);
  EXPECT_TRUE(view.acquire(frame));
}
