#include "stat/histogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace zorvik;

namespace {
HistogramInput input(const std::string& s, bool hiRes = false, bool peak = false) {
  HistogramInput in;
  in.samples = s;
  in.IsHiRes = hiRes;
  in.IsPeak = peak;
  return in;
}
}  // namespace

TEST(Histogram, EachFormatCountsItsWay) {
  HistogramEngine h;
  const std::string flat(40, static_cast<char>(100));
  h.BuildHistogram(input(flat));
  EXPECT_EQ(h.HistSamples, 40);
  EXPECT_EQ(h.HistCount[100], 40);
  EXPECT_EQ(h.ShownMaxCount, 40);
  EXPECT_TRUE(h.ScaleValid);
  EXPECT_FLOAT_EQ(h.LevelLow, -0.8f);
  EXPECT_FLOAT_EQ(h.LevelHigh, 0.8f);

  // 40 samples of 16 bits: only the high bytes of the first half count, 20 of the 40.
  std::string words;
  for (int i = 0; i < 40; ++i) words += std::string{static_cast<char>(100), static_cast<char>(7)};
  h.BuildHistogram(input(words, true));
  EXPECT_EQ(h.HistSamples, 40);
  EXPECT_EQ(h.HistCount[100], 20);
  EXPECT_EQ(h.HistCount[7], 0);

  // A peak pair paints the band it swept, either way round; only the pairs of the first half count.
  const std::string pairs = {10, 13, 13, 10, 50, 50, 50, 50};
  h.BuildHistogram(input(pairs, false, true));
  for (int b = 10; b <= 13; ++b) EXPECT_EQ(h.HistCount[static_cast<size_t>(b)], 2) << b;
  EXPECT_EQ(h.HistCount[50], 0);

  h.BuildHistogram(input(""));
  EXPECT_FALSE(h.ScaleValid);
  EXPECT_EQ(h.ShownMaxCount, 0);
}

TEST(Histogram, TheHighestCountMovesTheScaleOnlyPastFivePercent) {
  HistogramEngine h;
  h.BuildHistogram(input(std::string(100, 'a')));
  EXPECT_EQ(h.ShownMaxCount, 100);
  EXPECT_EQ(h.HeldMaxCount, 105);
  h.BuildHistogram(input(std::string(104, 'a')));
  EXPECT_EQ(h.ShownMaxCount, 100);
  h.BuildHistogram(input(std::string(110, 'a')));
  EXPECT_EQ(h.ShownMaxCount, 110);
  EXPECT_EQ(h.HeldMaxCount, 116);  // 115.5 rounded
  h.resetHeldMax();
  h.BuildHistogram(input(std::string(50, 'a')));
  EXPECT_EQ(h.ShownMaxCount, 50);
  EXPECT_EQ(h.HeldMaxCount, 53);  // 52.5 rounded
}

TEST(Histogram, ScaleModeAndQuantities) {
  HistogramEngine h;
  std::string s(60, static_cast<char>(100));
  s += std::string(60, static_cast<char>(30));  // as many at 30: the lower level is the mode
  s += std::string(10, static_cast<char>(200));
  h.BuildHistogram(input(s));
  h.HeldMaxCount = 80;
  EXPECT_DOUBLE_EQ(histogramTop(h, false, true), 130 * 1.05);  // the whole record
  EXPECT_DOUBLE_EQ(histogramTop(h, true, false), 60 * 1.05);
  EXPECT_DOUBLE_EQ(histogramTop(h, true, true), 80 * 1.05);

  EXPECT_EQ(histogramModeBin(h), 30);
  EXPECT_FLOAT_EQ(static_cast<float>(histogramLevel(h, 0)), -0.8f);  // the default 1.6 V around 0
  EXPECT_FLOAT_EQ(static_cast<float>(histogramLevel(h, 128)), 0.0f);

  EXPECT_EQ(histogramQuantity(59.5, 130, false), "60 smp");
  EXPECT_EQ(histogramQuantity(13, 130, true), "10.0%");
  EXPECT_EQ(histogramQuantity(1, 130, true), "00.8%");
  EXPECT_EQ(histogramQuantity(5, 0, true), "00.0%");  // an empty record has no percent
}

// The file of the Stat window and of zorvik-cli histogram: 256 lines, each count behind its sign blank.
TEST(Histogram, CsvHasEveryBinWithItsLeadingBlank) {
  HistogramEngine h;
  h.BuildHistogram(input(std::string(3, static_cast<char>(0)) + std::string(12, static_cast<char>(255))));
  const std::string csv = histogramCsvText(h);
  EXPECT_EQ(csv.substr(0, 6), " 3\r 0\r");
  EXPECT_EQ(csv.substr(csv.size() - 7), " 0\r 12\r");
  EXPECT_EQ(std::count(csv.begin(), csv.end(), '\r'), 256);
  EXPECT_EQ(csv.find('\n'), std::string::npos);
}
