// The transform against the straight loops it replaces, bit for bit: the bit reversal by counting, then
// stage by stage the twiddle factor u stepped by u = u x s between the butterflies of a stage.
#include "spectrum/fft.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <utility>
#include <vector>

using namespace zorvik;

namespace {

void straightTransform(const std::vector<float>& input, std::vector<float>& re, std::vector<float>& im) {
  re.clear();
  im.clear();
  if (input.size() < 2) return;
  size_t n = 1;
  while (n * 2 <= input.size()) n *= 2;
  std::vector<float> xr(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(n)), xi(n, 0.0f);
  size_t j = n / 2;
  for (size_t i = 1; i + 1 < n; ++i) {
    if (i < j) {
      std::swap(xr[i], xr[j]);
      std::swap(xi[i], xi[j]);
    }
    size_t k = n / 2;
    while (k <= j) {
      j -= k;
      k /= 2;
    }
    j += k;
  }
  for (size_t le = 2; le <= n; le *= 2) {
    const size_t le2 = le / 2;
    float ur = 1, ui = 0;
    const float sr = static_cast<float>(std::cos(6.2831854820251465 / static_cast<double>(le)));
    const float si = static_cast<float>(-std::sin(6.2831854820251465 / static_cast<double>(le)));
    for (size_t jj = 1; jj <= le2; ++jj) {
      for (size_t i = jj - 1; i < n; i += le) {
        const size_t ip = i + le2;
        const float tr = xr[ip] * ur - xi[ip] * ui;
        const float ti = xr[ip] * ui + xi[ip] * ur;
        xr[ip] = xr[i] - tr;
        xi[ip] = xi[i] - ti;
        xr[i] = xr[i] + tr;
        xi[i] = xi[i] + ti;
      }
      const float nr = ur * sr - ui * si;
      ui = ur * si + ui * sr;
      ur = nr;
    }
  }
  re.assign(xr.begin(), xr.begin() + static_cast<std::ptrdiff_t>(n / 2));
  im.assign(xi.begin(), xi.begin() + static_cast<std::ptrdiff_t>(n / 2));
}

bool sameBits(const std::vector<float>& a, const std::vector<float>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

}  // namespace

TEST(Fft, EveryBitAsTheStraightLoopsForEverySize) {
  std::mt19937 rng(16);
  std::uniform_real_distribution<float> u(-3, 3);
  Fft fft;  // one object across sizes: its kept factors follow the size
  std::vector<float> re, im, wantRe, wantIm;
  for (size_t size :
       {2u, 3u, 4u, 8u, 15u, 16u, 32u, 64u, 100u, 128u, 1024u, 2048u, 5000u, 8192u, 16384u, 8192u}) {
    std::vector<float> x(size);
    for (float& v : x) v = u(rng);
    fft.transform(x.data(), x.size(), re, im);
    straightTransform(x, wantRe, wantIm);
    EXPECT_TRUE(sameBits(re, wantRe)) << size;
    EXPECT_TRUE(sameBits(im, wantIm)) << size;
  }
}

TEST(Fft, EveryBitAsTheStraightLoopsForRecordsOfVoltsAndOddValues) {
  // Quantised volts as the spectrum feeds them, then values that meet zero signs, tiny numbers and
  // overflow on the way.
  std::mt19937 rng(3);
  std::uniform_int_distribution<int> code(0, 255);
  std::vector<float> volts(8192), odd(4096);
  for (float& v : volts) v = static_cast<float>(code(rng) - 128) * 1.6f / 256 + 0.25f;
  const float big = std::numeric_limits<float>::max() / 4, tiny = std::numeric_limits<float>::denorm_min();
  for (size_t i = 0; i < odd.size(); ++i) {
    const float kinds[] = {-0.0f, 0.0f, tiny, -tiny, big, -big, 1e-30f, static_cast<float>(i)};
    odd[i] = kinds[(i * 7 + i / 3) % 8];
  }
  for (const std::vector<float>* x : {&volts, &odd}) {
    std::vector<float> re, im, wantRe, wantIm;
    Fft fft;
    fft.transform(x->data(), x->size(), re, im);
    straightTransform(*x, wantRe, wantIm);
    EXPECT_TRUE(sameBits(re, wantRe));
    EXPECT_TRUE(sameBits(im, wantIm));
  }
}
