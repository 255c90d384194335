#include "display/interpolation.h"

#include <gtest/gtest.h>

#include <cmath>

#include "display/sample_buffer.h"
#include "display_test_util.h"

using namespace zorvik;
using namespace zorvik::test;

namespace {

// The kernels term by term, a sine per term and the product of every Lagrange weight.
int32_t reference(Interpolation kind, const SampleBuf& s, float p, int taps) {
  const int64_t i = static_cast<int64_t>(std::floor(p));
  if (static_cast<double>(p) == static_cast<double>(i)) return s.at(i);
  const int64_t len = s.length();
  taps = static_cast<int>(std::min<int64_t>(taps, len));
  int64_t first = std::max<int64_t>(i + 1 - taps / 2, 0), last = first + taps - 1;
  if (last > len - 1) last = len - 1, first = last - taps + 1;
  double sum = 0;
  for (int64_t k = first; k <= last; ++k) {
    const double v = s.at(k) - 0x8000;
    const double t = (static_cast<double>(p) - static_cast<double>(k)) * static_cast<double>(kPiF);
    if (kind == Interpolation::SinX) sum += std::sin(t) / t * v;
    if (kind == Interpolation::Lanczos) sum += (std::sin(t) / t) * v * 1.3 * std::sin(t / 1.3) / t;
    if (kind == Interpolation::Lagrange) {
      double w = 1;
      for (int64_t j = first; j <= last; ++j)
        if (j != k) w *= (static_cast<double>(p) - static_cast<double>(j)) / static_cast<double>(k - j);
      sum += w * v;
    }
  }
  sum = std::clamp(sum, -32768.0, 32767.0);
  return static_cast<int32_t>(std::nearbyint(sum + 32768));
}

}  // namespace

TEST(Interpolation, KernelsGiveTheSumsOfTheirTerms) {
  SampleBuf s;
  s.fill(sineSamples(600, 17.3, 90), false);
  Interpolator fast;
  struct Case {
    Interpolation kind;
    int taps;
  };
  for (const Case& c : {Case{Interpolation::SinX, 32}, Case{Interpolation::SinX, 256},
                        Case{Interpolation::Lanczos, 32}, Case{Interpolation::Lanczos, 256},
                        Case{Interpolation::Lagrange, 4}, Case{Interpolation::Lagrange, 16}}) {
    int worst = 0;
    // Points all over the record, the ends too, where the window is pulled inside it.
    for (int k = 0; k < 2400; ++k) {
      const float p = static_cast<float>(k * 0.2497 + 0.01);
      const int d = std::abs(fast.at(c.kind, s, p, c.taps) - reference(c.kind, s, p, c.taps));
      worst = std::max(worst, d);
    }
    EXPECT_EQ(worst, 0) << static_cast<int>(c.kind) << " taps " << c.taps;
  }
}

TEST(Interpolation, SumsAreClampedAndPointsOutsideTheRecordReadZero) {
  SampleBuf s;
  // A full-scale step rings past the top of the scale: clamped to 65535, never wrapped.
  s.fill(byteSamples(200, [](int i) { return i < 100 ? 0 : 255; }), false);
  Interpolator in;
  int top = 0, low = 65535;
  for (int k = 0; k < 400; ++k) {
    const int32_t v = in.at(Interpolation::SinX, s, static_cast<float>(80 + k * 0.1 + 0.05), 256);
    top = std::max(top, v);
    low = std::min(low, v);
  }
  EXPECT_EQ(top, 65535);
  EXPECT_EQ(low, 0);
  EXPECT_EQ(in.at(Interpolation::Lanczos, s, -0.5f, 32), 0);
  EXPECT_EQ(in.at(Interpolation::Lanczos, s, 200.5f, 32), 0);
  // More taps than samples: the window is the whole record.
  SampleBuf tiny;
  tiny.fill(std::string(8, static_cast<char>(128)), false);
  EXPECT_EQ(in.at(Interpolation::Lagrange, tiny, 3.5f, 256), 0x8000);
  EXPECT_EQ(in.at(Interpolation::SinX, tiny, 7.5f, 256), reference(Interpolation::SinX, tiny, 7.5f, 256));
}

TEST(SampleBuf, GrowsWithTheRecordAndReadsZeroOutsideIt) {
  SampleBuf s;
  s.fill(std::string(30000, '\x40'), false);
  EXPECT_EQ(s.length(), 30000);
  EXPECT_EQ(s.at(29999), 0x4000);
  EXPECT_EQ(s.at(30000), 0);
  EXPECT_EQ(s.at(-1), 0);
  s.repeatLast();
  EXPECT_EQ(s.at(30000), 0x4000);
  // A shorter record after it leaves nothing of the longer one behind.
  s.fill("\x01\x02\x03\x04\x05", true);
  EXPECT_EQ(s.length(), 2);
  EXPECT_EQ(s.at(0), 0x0102);
  EXPECT_EQ(s.at(1), 0x0304);
  for (int64_t i : {2, 3, 100, 29999, 30000}) EXPECT_EQ(s.at(i), 0) << i;
}
