// Built with -ffp-contract=off: a multiply and an add fused into one instruction would round once instead
// of twice and move the lines' last bits.
#include "spectrum/fft.h"

#include <cmath>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#include <immintrin.h>
#define ZORVIK_FFT_AVX 1
#endif

namespace zorvik {

namespace {

constexpr double kTwoPi = 6.2831854820251465;  // the 32-bit float of 2 pi

// One butterfly on entries a and b with the twiddle factor w, in the order of the straight loop.
inline void butterfly(float& ar, float& ai, float& br, float& bi, float wr, float wi) {
  const float tr = br * wr - bi * wi;
  const float ti = br * wi + bi * wr;
  br = ar - tr;
  bi = ai - ti;
  ar += tr;
  ai += ti;
}

// One stage of le2 butterflies a block, block by block.
void stageScalar(float* xr, float* xi, size_t n, size_t le2, const float* wr, const float* wi) {
  for (size_t block = 0; block < n; block += 2 * le2)
    for (size_t k = 0; k < le2; ++k)
      butterfly(xr[block + k], xi[block + k], xr[block + k + le2], xi[block + k + le2], wr[k], wi[k]);
}

#if defined(__SSE2__)

// Four butterflies side by side, each lane as the scalar butterfly.
inline void butterfly4(__m128& ar, __m128& ai, __m128& br, __m128& bi, __m128 wr, __m128 wi) {
  const __m128 tr = _mm_sub_ps(_mm_mul_ps(br, wr), _mm_mul_ps(bi, wi));
  const __m128 ti = _mm_add_ps(_mm_mul_ps(br, wi), _mm_mul_ps(bi, wr));
  br = _mm_sub_ps(ar, tr);
  bi = _mm_sub_ps(ai, ti);
  ar = _mm_add_ps(ar, tr);
  ai = _mm_add_ps(ai, ti);
}

// The bit reversal and the first two stages: four groups of four entries at a time, a group's entry e
// in lane g of vector e, then turned back into memory order.
void firstStages(const float* input, const uint32_t* rev, float* xr, float* xi, size_t n, const float* twr,
                 const float* twi) {
  const __m128 w1r = _mm_set1_ps(twr[0]), w1i = _mm_set1_ps(twi[0]);
  const __m128 w20r = _mm_set1_ps(twr[1]), w20i = _mm_set1_ps(twi[1]);
  const __m128 w21r = _mm_set1_ps(twr[2]), w21i = _mm_set1_ps(twi[2]);
  for (size_t g = 0; g < n; g += 16) {
    const uint32_t* r = rev + g;
    __m128 r0 = _mm_setr_ps(input[r[0]], input[r[4]], input[r[8]], input[r[12]]);
    __m128 r1 = _mm_setr_ps(input[r[1]], input[r[5]], input[r[9]], input[r[13]]);
    __m128 r2 = _mm_setr_ps(input[r[2]], input[r[6]], input[r[10]], input[r[14]]);
    __m128 r3 = _mm_setr_ps(input[r[3]], input[r[7]], input[r[11]], input[r[15]]);
    __m128 i0 = _mm_setzero_ps(), i1 = _mm_setzero_ps(), i2 = _mm_setzero_ps(), i3 = _mm_setzero_ps();
    butterfly4(r0, i0, r1, i1, w1r, w1i);
    butterfly4(r2, i2, r3, i3, w1r, w1i);
    butterfly4(r0, i0, r2, i2, w20r, w20i);
    butterfly4(r1, i1, r3, i3, w21r, w21i);
    _MM_TRANSPOSE4_PS(r0, r1, r2, r3);
    _MM_TRANSPOSE4_PS(i0, i1, i2, i3);
    _mm_storeu_ps(xr + g, r0);
    _mm_storeu_ps(xr + g + 4, r1);
    _mm_storeu_ps(xr + g + 8, r2);
    _mm_storeu_ps(xr + g + 12, r3);
    _mm_storeu_ps(xi + g, i0);
    _mm_storeu_ps(xi + g + 4, i1);
    _mm_storeu_ps(xi + g + 8, i2);
    _mm_storeu_ps(xi + g + 12, i3);
  }
}

// One stage of le2 butterflies a block (le2 a multiple of 4), four at a time.
void stage4(float* xr, float* xi, size_t n, size_t le2, const float* wr, const float* wi) {
  for (size_t block = 0; block < n; block += 2 * le2) {
    float* ar = xr + block;
    float* ai = xi + block;
    float* br = ar + le2;
    float* bi = ai + le2;
    for (size_t k = 0; k < le2; k += 4) {
      __m128 a_r = _mm_loadu_ps(ar + k), a_i = _mm_loadu_ps(ai + k);
      __m128 b_r = _mm_loadu_ps(br + k), b_i = _mm_loadu_ps(bi + k);
      butterfly4(a_r, a_i, b_r, b_i, _mm_loadu_ps(wr + k), _mm_loadu_ps(wi + k));
      _mm_storeu_ps(ar + k, a_r);
      _mm_storeu_ps(ai + k, a_i);
      _mm_storeu_ps(br + k, b_r);
      _mm_storeu_ps(bi + k, b_i);
    }
  }
}

// Two stages at once, of q and 2q butterflies a block (q a multiple of 4): the four entries k, k + q,
// k + 2q and k + 3q of a block of 4q meet only each other in these two stages, so they stay in registers.
void stagePair4(float* xr, float* xi, size_t n, size_t q, const float* twr, const float* twi) {
  const float* wAr = twr + (q - 1);
  const float* wAi = twi + (q - 1);
  const float* wBr = twr + (2 * q - 1);
  const float* wBi = twi + (2 * q - 1);
  for (size_t block = 0; block < n; block += 4 * q) {
    float* pr = xr + block;
    float* pi = xi + block;
    for (size_t k = 0; k < q; k += 4) {
      __m128 r0 = _mm_loadu_ps(pr + k), i0 = _mm_loadu_ps(pi + k);
      __m128 r1 = _mm_loadu_ps(pr + k + q), i1 = _mm_loadu_ps(pi + k + q);
      __m128 r2 = _mm_loadu_ps(pr + k + 2 * q), i2 = _mm_loadu_ps(pi + k + 2 * q);
      __m128 r3 = _mm_loadu_ps(pr + k + 3 * q), i3 = _mm_loadu_ps(pi + k + 3 * q);
      const __m128 aR = _mm_loadu_ps(wAr + k), aI = _mm_loadu_ps(wAi + k);
      butterfly4(r0, i0, r1, i1, aR, aI);
      butterfly4(r2, i2, r3, i3, aR, aI);
      butterfly4(r0, i0, r2, i2, _mm_loadu_ps(wBr + k), _mm_loadu_ps(wBi + k));
      butterfly4(r1, i1, r3, i3, _mm_loadu_ps(wBr + k + q), _mm_loadu_ps(wBi + k + q));
      _mm_storeu_ps(pr + k, r0);
      _mm_storeu_ps(pi + k, i0);
      _mm_storeu_ps(pr + k + q, r1);
      _mm_storeu_ps(pi + k + q, i1);
      _mm_storeu_ps(pr + k + 2 * q, r2);
      _mm_storeu_ps(pi + k + 2 * q, i2);
      _mm_storeu_ps(pr + k + 3 * q, r3);
      _mm_storeu_ps(pi + k + 3 * q, i3);
    }
  }
}

#endif

#if defined(ZORVIK_FFT_AVX)

// The same with eight butterflies abreast, where the processor has AVX (multiplies and adds apart, as
// above: no fused instructions).
__attribute__((target("avx"))) inline void butterfly8(__m256& ar, __m256& ai, __m256& br, __m256& bi,
                                                      __m256 wr, __m256 wi) {
  const __m256 tr = _mm256_sub_ps(_mm256_mul_ps(br, wr), _mm256_mul_ps(bi, wi));
  const __m256 ti = _mm256_add_ps(_mm256_mul_ps(br, wi), _mm256_mul_ps(bi, wr));
  br = _mm256_sub_ps(ar, tr);
  bi = _mm256_sub_ps(ai, ti);
  ar = _mm256_add_ps(ar, tr);
  ai = _mm256_add_ps(ai, ti);
}

// One stage of le2 butterflies a block, le2 a multiple of 8.
__attribute__((target("avx"))) void stage8(float* xr, float* xi, size_t n, size_t le2, const float* wr,
                                           const float* wi) {
  for (size_t block = 0; block < n; block += 2 * le2) {
    float* ar = xr + block;
    float* ai = xi + block;
    float* br = ar + le2;
    float* bi = ai + le2;
    for (size_t k = 0; k < le2; k += 8) {
      __m256 a_r = _mm256_loadu_ps(ar + k), a_i = _mm256_loadu_ps(ai + k);
      __m256 b_r = _mm256_loadu_ps(br + k), b_i = _mm256_loadu_ps(bi + k);
      butterfly8(a_r, a_i, b_r, b_i, _mm256_loadu_ps(wr + k), _mm256_loadu_ps(wi + k));
      _mm256_storeu_ps(ar + k, a_r);
      _mm256_storeu_ps(ai + k, a_i);
      _mm256_storeu_ps(br + k, b_r);
      _mm256_storeu_ps(bi + k, b_i);
    }
  }
}

// Two stages at once as stagePair4, q a multiple of 8.
__attribute__((target("avx"))) void stagePair8(float* xr, float* xi, size_t n, size_t q, const float* twr,
                                               const float* twi) {
  const float* wAr = twr + (q - 1);
  const float* wAi = twi + (q - 1);
  const float* wBr = twr + (2 * q - 1);
  const float* wBi = twi + (2 * q - 1);
  for (size_t block = 0; block < n; block += 4 * q) {
    float* pr = xr + block;
    float* pi = xi + block;
    for (size_t k = 0; k < q; k += 8) {
      __m256 r0 = _mm256_loadu_ps(pr + k), i0 = _mm256_loadu_ps(pi + k);
      __m256 r1 = _mm256_loadu_ps(pr + k + q), i1 = _mm256_loadu_ps(pi + k + q);
      __m256 r2 = _mm256_loadu_ps(pr + k + 2 * q), i2 = _mm256_loadu_ps(pi + k + 2 * q);
      __m256 r3 = _mm256_loadu_ps(pr + k + 3 * q), i3 = _mm256_loadu_ps(pi + k + 3 * q);
      const __m256 aR = _mm256_loadu_ps(wAr + k), aI = _mm256_loadu_ps(wAi + k);
      butterfly8(r0, i0, r1, i1, aR, aI);
      butterfly8(r2, i2, r3, i3, aR, aI);
      butterfly8(r0, i0, r2, i2, _mm256_loadu_ps(wBr + k), _mm256_loadu_ps(wBi + k));
      butterfly8(r1, i1, r3, i3, _mm256_loadu_ps(wBr + k + q), _mm256_loadu_ps(wBi + k + q));
      _mm256_storeu_ps(pr + k, r0);
      _mm256_storeu_ps(pi + k, i0);
      _mm256_storeu_ps(pr + k + q, r1);
      _mm256_storeu_ps(pi + k + q, i1);
      _mm256_storeu_ps(pr + k + 2 * q, r2);
      _mm256_storeu_ps(pi + k + 2 * q, i2);
      _mm256_storeu_ps(pr + k + 3 * q, r3);
      _mm256_storeu_ps(pi + k + 3 * q, i3);
    }
  }
}

// Rows of eight into columns of eight.
__attribute__((target("avx"))) inline void transpose8(__m256 (&v)[8]) {
  const __m256 t0 = _mm256_unpacklo_ps(v[0], v[1]), t1 = _mm256_unpackhi_ps(v[0], v[1]);
  const __m256 t2 = _mm256_unpacklo_ps(v[2], v[3]), t3 = _mm256_unpackhi_ps(v[2], v[3]);
  const __m256 t4 = _mm256_unpacklo_ps(v[4], v[5]), t5 = _mm256_unpackhi_ps(v[4], v[5]);
  const __m256 t6 = _mm256_unpacklo_ps(v[6], v[7]), t7 = _mm256_unpackhi_ps(v[6], v[7]);
  const __m256 u0 = _mm256_shuffle_ps(t0, t2, 0x44), u1 = _mm256_shuffle_ps(t0, t2, 0xEE);
  const __m256 u2 = _mm256_shuffle_ps(t1, t3, 0x44), u3 = _mm256_shuffle_ps(t1, t3, 0xEE);
  const __m256 u4 = _mm256_shuffle_ps(t4, t6, 0x44), u5 = _mm256_shuffle_ps(t4, t6, 0xEE);
  const __m256 u6 = _mm256_shuffle_ps(t5, t7, 0x44), u7 = _mm256_shuffle_ps(t5, t7, 0xEE);
  v[0] = _mm256_permute2f128_ps(u0, u4, 0x20);
  v[1] = _mm256_permute2f128_ps(u1, u5, 0x20);
  v[2] = _mm256_permute2f128_ps(u2, u6, 0x20);
  v[3] = _mm256_permute2f128_ps(u3, u7, 0x20);
  v[4] = _mm256_permute2f128_ps(u0, u4, 0x31);
  v[5] = _mm256_permute2f128_ps(u1, u5, 0x31);
  v[6] = _mm256_permute2f128_ps(u2, u6, 0x31);
  v[7] = _mm256_permute2f128_ps(u3, u7, 0x31);
}

// The bit reversal and the first three stages, eight groups of eight entries at a time, a group's entry e
// in lane g of vector e. Entry e of group g is input[rev(8g) + rev3(e) n / 8] (rev3 reverses three bits),
// so taking the groups whose rev(8g) are eight neighbours b0 to b0 + 7 loads each vector whole; turned
// back into memory order, lane l's group lands at rev(b0 + l).
__attribute__((target("avx"))) void firstStages8(const float* input, const uint32_t* rev, float* xr,
                                                 float* xi, size_t n, const float* twr, const float* twi) {
  static constexpr size_t kRev3[8] = {0, 4, 2, 6, 1, 5, 3, 7};
  __m256 wr[7], wi[7];
  for (int k = 0; k < 7; ++k) {
    wr[k] = _mm256_set1_ps(twr[k]);
    wi[k] = _mm256_set1_ps(twi[k]);
  }
  const size_t eighth = n / 8;
  for (size_t b0 = 0; b0 < eighth; b0 += 8) {
    __m256 re[8], im[8];
    for (int e = 0; e < 8; ++e) {
      re[e] = _mm256_loadu_ps(input + b0 + kRev3[e] * eighth);
      im[e] = _mm256_setzero_ps();
    }
    for (int e = 0; e < 8; e += 2) butterfly8(re[e], im[e], re[e + 1], im[e + 1], wr[0], wi[0]);
    for (int e = 0; e < 8; e += 4) {
      butterfly8(re[e], im[e], re[e + 2], im[e + 2], wr[1], wi[1]);
      butterfly8(re[e + 1], im[e + 1], re[e + 3], im[e + 3], wr[2], wi[2]);
    }
    for (int e = 0; e < 4; ++e) butterfly8(re[e], im[e], re[e + 4], im[e + 4], wr[3 + e], wi[3 + e]);
    transpose8(re);
    transpose8(im);
    for (int lane = 0; lane < 8; ++lane) {
      const size_t at = rev[b0 + static_cast<size_t>(lane)];
      _mm256_storeu_ps(xr + at, re[lane]);
      _mm256_storeu_ps(xi + at, im[lane]);
    }
  }
}

bool haveAvx() {
  return __builtin_cpu_supports("avx");
}

#endif

}  // namespace

void Fft::prepare(size_t n) {
  if (n == n_) return;
  n_ = n;
  // Bit reversal by counting: entry i takes entry rev[i], as the exchanges of the straight loop leave it.
  rev_.resize(n);
  for (size_t i = 0; i < n; ++i) rev_[i] = static_cast<uint32_t>(i);
  size_t j = n / 2;
  for (size_t i = 1; i + 1 < n; ++i) {
    if (i < j) {
      rev_[i] = static_cast<uint32_t>(j);
      rev_[j] = static_cast<uint32_t>(i);
    }
    size_t k = n / 2;
    while (k <= j) {
      j -= k;
      k /= 2;
    }
    j += k;
  }
  // Each stage's twiddle factors by the recurrence u = u x s from u = 1.
  twr_.assign(n > 1 ? n - 1 : 0, 0.0f);
  twi_.assign(n > 1 ? n - 1 : 0, 0.0f);
  for (size_t le = 2; le <= n; le *= 2) {
    const size_t le2 = le / 2;
    float ur = 1, ui = 0;
    const float sr = static_cast<float>(std::cos(kTwoPi / static_cast<double>(le)));
    const float si = static_cast<float>(-std::sin(kTwoPi / static_cast<double>(le)));
    for (size_t k = 0; k < le2; ++k) {
      twr_[le2 - 1 + k] = ur;
      twi_[le2 - 1 + k] = ui;
      const float nr = ur * sr - ui * si;
      ui = ur * si + ui * sr;
      ur = nr;
    }
  }
  xr_.assign(n, 0.0f);
  xi_.assign(n, 0.0f);
}

void Fft::transform(const float* input, size_t size, std::vector<float>& re, std::vector<float>& im) {
  re.clear();
  im.clear();
  if (size < 2) return;
  size_t n = 1;
  while (n * 2 <= size) n *= 2;
  prepare(n);
  float* xr = xr_.data();
  float* xi = xi_.data();
  const float* twr = twr_.data();
  const float* twi = twi_.data();
  size_t le2 = 1;
#if defined(ZORVIK_FFT_AVX)
  if (n >= 64 && haveAvx()) {
    firstStages8(input, rev_.data(), xr, xi, n, twr, twi);
    // Stages 4 to 9 stay inside blocks of 512 entries: each block goes through them while it is in the
    // first-level cache, before the later stages sweep the whole array.
    le2 = 8;
    constexpr size_t kBlock = 512;
    if (n >= kBlock) {
      for (size_t b = 0; b < n; b += kBlock)
        for (size_t q = 8; q * 4 <= kBlock; q *= 4) stagePair8(xr + b, xi + b, kBlock, q, twr, twi);
      le2 = kBlock;
    }
    for (; le2 * 4 <= n; le2 *= 4) stagePair8(xr, xi, n, le2, twr, twi);
    if (le2 < n) stage8(xr, xi, n, le2, twr + (le2 - 1), twi + (le2 - 1));
    le2 = n;
  }
#endif
#if defined(__SSE2__)
  if (n >= 16 && le2 < n) {
    firstStages(input, rev_.data(), xr, xi, n, twr, twi);
#if defined(ZORVIK_FFT_AVX)
    const bool avx = haveAvx();
#else
    const bool avx = false;
#endif
    for (le2 = 4; le2 * 4 <= n; le2 *= 4) {
#if defined(ZORVIK_FFT_AVX)
      if (avx && le2 >= 8) {
        stagePair8(xr, xi, n, le2, twr, twi);
        continue;
      }
#endif
      stagePair4(xr, xi, n, le2, twr, twi);
    }
    if (le2 < n) {
#if defined(ZORVIK_FFT_AVX)
      if (avx && le2 >= 8) {
        stage8(xr, xi, n, le2, twr + (le2 - 1), twi + (le2 - 1));
        le2 = n;
      }
#endif
      if (le2 < n) stage4(xr, xi, n, le2, twr + (le2 - 1), twi + (le2 - 1));
    }
    le2 = n;
  }
#endif
  if (le2 < n) {
    for (size_t i = 0; i < n; ++i) {
      xr[i] = input[rev_[i]];
      xi[i] = 0.0f;
    }
    for (; le2 < n; le2 *= 2) stageScalar(xr, xi, n, le2, twr + (le2 - 1), twi + (le2 - 1));
  }
  re.assign(xr, xr + n / 2);
  im.assign(xi, xi + n / 2);
}

void Transform(const std::vector<float>& input, std::vector<float>& re, std::vector<float>& im) {
  Fft fft;
  fft.transform(input.data(), input.size(), re, im);
}

}  // namespace zorvik
