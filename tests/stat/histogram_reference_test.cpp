// The histogram's counts against the first loop that counted them code by code, on records of each format.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

#include "stat/histogram.h"

using namespace zorvik;

namespace {

// Code by code; a peak pair paints its band; a hi-res record gives the high bytes of its first half.
std::array<int32_t, 256> countedOneByOne(const std::string& s, bool hiRes, bool peak, int32_t& highest) {
  std::array<int32_t, 256> h{};
  const size_t last = hiRes || peak ? s.size() / 2 : s.size();
  auto code = [&](size_t k) { return static_cast<int>(static_cast<uint8_t>(s[k])); };
  auto count = [&](int bin) { highest = std::max(highest, ++h[static_cast<size_t>(bin)]); };
  if (peak) {
    for (size_t k = 0; k < last && k + 1 < s.size(); k += 2) {
      const int a = code(k), b = code(k + 1), step = a <= b ? 1 : -1;
      for (int v = a;; v += step) {
        count(v);
        if (v == b) break;
      }
    }
  } else {
    for (size_t k = 0; k < last; k += hiRes ? 2 : 1) count(code(k));
  }
  return h;
}

}  // namespace

TEST(HistogramReference, CountsAndTheHighestCountAsCountedOneByOne) {
  std::mt19937 rng(7);
  for (int shape = 0; shape < 3; ++shape) {
    for (size_t length : {0u, 1u, 3u, 37u, 8192u, 16384u, 16385u}) {
      std::string s(length, '\0');
      for (size_t k = 0; k < length; ++k) {
        // Noise, a slow ramp with long runs of one code, and pairs in both orders with wide bands.
        const int v = shape == 0   ? static_cast<int>(rng() % 256)
                      : shape == 1 ? static_cast<int>(k / 97 % 256)
                                   : static_cast<int>(rng() % 256);
        s[k] = static_cast<char>(v);
      }
      for (int format = 0; format < 3; ++format) {
        const bool hiRes = format == 1, peak = format == 2;
        HistogramEngine e;
        e.BuildHistogram({s, hiRes, peak});
        int32_t highest = 0;
        const std::array<int32_t, 256> want = countedOneByOne(s, hiRes, peak, highest);
        EXPECT_EQ(e.HistCount, want) << shape << " " << length << " " << format;
        EXPECT_EQ(e.ShownMaxCount, highest) << shape << " " << length << " " << format;
      }
    }
  }
}
