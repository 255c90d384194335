#include "spectrum/fft.h"

#include <cmath>
#include <utility>

namespace zorvik {

void Transform(const std::vector<float>& input, std::vector<float>& re, std::vector<float>& im) {
  re.clear();
  im.clear();
  if (input.size() < 2) return;
  size_t n = 1;
  while (n * 2 <= input.size()) n *= 2;
  std::vector<float> xr(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(n));
  std::vector<float> xi(n, 0.0f);
  // Bit reversal by counting.
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
  constexpr double kTwoPi = 6.2831854820251465;  // the 32-bit float of 2 pi
  std::vector<float> wr(n / 2), wi(n / 2);
  for (size_t le = 2; le <= n; le *= 2) {
    const size_t le2 = le / 2;
    // The stage's twiddle factors by the recurrence u = u x s, laid out first so that the butterflies of
    // a block run over neighbouring entries; each butterfly is computed as before, so the result is too.
    float ur = 1, ui = 0;
    const float sr = static_cast<float>(std::cos(kTwoPi / static_cast<double>(le)));
    const float si = static_cast<float>(-std::sin(kTwoPi / static_cast<double>(le)));
    for (size_t k = 0; k < le2; ++k) {
      wr[k] = ur;
      wi[k] = ui;
      const float nr = ur * sr - ui * si;
      ui = ur * si + ui * sr;
      ur = nr;
    }
    for (size_t block = 0; block < n; block += le) {
      float* ar = xr.data() + block;
      float* ai = xi.data() + block;
      float* br = ar + le2;
      float* bi = ai + le2;
      for (size_t k = 0; k < le2; ++k) {
        const float tr = br[k] * wr[k] - bi[k] * wi[k];
        const float ti = br[k] * wi[k] + bi[k] * wr[k];
        br[k] = ar[k] - tr;
        bi[k] = ai[k] - ti;
        ar[k] += tr;
        ai[k] += ti;
      }
    }
  }
  re.assign(xr.begin(), xr.begin() + static_cast<std::ptrdiff_t>(n / 2));
  im.assign(xi.begin(), xi.begin() + static_cast<std::ptrdiff_t>(n / 2));
}

}  // namespace zorvik
