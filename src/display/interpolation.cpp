#include "display/interpolation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/whole_numbers.h"
#include "display/sample_buffer.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zorvik {

namespace {
constexpr int64_t kTable = 1024;
const double kPiStep = static_cast<double>(kPiF);
const double kLzStep = static_cast<double>(kPiF) / kLanczosWindow;

int32_t finish(double sum) {
  if (sum != sum) sum = 0;
  sum = std::clamp(sum, -32768.0, 32767.0);
  return static_cast<int32_t>(roundHalfEven(sum + 32768));
}

double sumOf(const double* terms, int n) {
  double sum = 0;
  for (int m = 0; m < n; ++m) sum += terms[m];
  return sum;
}
}  // namespace

Interpolator::Interpolator() {
  const size_t n = 2 * kTable + 1;
  sinPi_.resize(n), cosPi_.resize(n), sinLz_.resize(n), cosLz_.resize(n);
  for (size_t j = 0; j < n; ++j) {
    const double k = static_cast<double>(kTable - static_cast<int64_t>(j));
    sinPi_[j] = std::sin(k * kPiStep);
    cosPi_[j] = std::cos(k * kPiStep);
    sinLz_[j] = std::sin(k * kLzStep);
    cosLz_[j] = std::cos(k * kLzStep);
  }
}

void Interpolator::prepareLagrange(int taps) {
  if (lagrangeTaps_ == taps) return;
  binomial_.assign(static_cast<size_t>(taps), 1.0);
  for (int m = 1; m < taps; ++m)
    binomial_[static_cast<size_t>(m)] = binomial_[static_cast<size_t>(m - 1)] * (taps - m) / m;
  lagrangeTaps_ = taps;
}

const double* Interpolator::sinxWeights(double f, int64_t offset, int n, double q, int64_t base, int column) {
  double* w = nullptr;
  if (column >= 0 && column < kMaxColumns && n <= kColumnTaps) {
    // The weights of every column kept: the places of a steady view's columns are the same each packet.
    if (columnTaps_ != n) {
      columnTaps_ = n;
      columnKeys_.assign(static_cast<size_t>(kMaxColumns), Key{});
      columnWeights_.resize(static_cast<size_t>(kMaxColumns) * static_cast<size_t>(n));
    }
    Key& key = columnKeys_[static_cast<size_t>(column)];
    w = columnWeights_.data() + static_cast<std::ptrdiff_t>(column) * n;
    if (key.f == f && key.offset == offset && key.n == n) return w;
    key = {f, offset, n};
  } else {
    for (Weights& k : sinx_)
      if (k.key.f == f && k.key.offset == offset && k.key.n == n) return k.w.data();
    Weights& kept = sinx_[sinxNext_];
    sinxNext_ = (sinxNext_ + 1) % sinx_.size();
    kept.key = {f, offset, n};
    w = kept.w.data();
  }
  const double a = f * kPiStep, sa = std::sin(a), ca = std::cos(a);
  const double* S = sinPi_.data() + base;
  const double* C = cosPi_.data() + base;
  int m = 0;
#if defined(__SSE2__)
  // Two weights at a time, each as the line below computes it.
  const __m128d vca = _mm_set1_pd(ca), vsa = _mm_set1_pd(sa), vq = _mm_set1_pd(q),
                step = _mm_set1_pd(kPiStep);
  __m128d vm = _mm_setr_pd(0, 1);
  for (; m + 2 <= n; m += 2) {
    const __m128d t = _mm_mul_pd(_mm_sub_pd(vq, vm), step);
    const __m128d num =
        _mm_add_pd(_mm_mul_pd(_mm_loadu_pd(S + m), vca), _mm_mul_pd(_mm_loadu_pd(C + m), vsa));
    _mm_storeu_pd(w + m, _mm_div_pd(num, t));
    vm = _mm_add_pd(vm, _mm_set1_pd(2));
  }
#endif
  for (; m < n; ++m) {
    const double t = (q - m) * kPiStep;
    w[m] = (S[m] * ca + C[m] * sa) / t;
  }
  return w;
}

Interpolator::Place Interpolator::place(const SampleBuf& s, float p, int taps) {
  Place r;
  r.i = floorToInt64Saturating(p);
  const int64_t len = s.length();
  r.sample = static_cast<double>(p) == static_cast<double>(r.i);
  if (r.sample || r.i < 0 || r.i >= len) return r;
  r.interpolated = true;
  r.n = static_cast<int>(std::clamp<int64_t>(std::min<int64_t>(taps, len), 1, kMaxTaps));
  r.first = std::max<int64_t>(r.i + 1 - r.n / 2, 0);
  if (r.first + r.n - 1 > len - 1) r.first = len - r.n;
  r.q = static_cast<double>(p) - static_cast<double>(r.first);
  r.f = static_cast<double>(p) - static_cast<double>(r.i);
  r.base = kTable - (r.i - r.first);
  r.tabled = r.base >= 0 && r.base + r.n <= 2 * kTable + 1;
  return r;
}

int32_t Interpolator::at(Interpolation kind, const SampleBuf& s, float p, int taps, int column) {
  const Place at = place(s, p, taps);
  if (!at.interpolated) return at.sample ? s.at(at.i) : 0;
  const int n = at.n;
  const int64_t i = at.i, first = at.first, base = at.base;
  const bool tabled = at.tabled;
  // p - k for k = first + m is q - m, exact in double; the angle of term m is (i - first - m + f) x step:
  // the table's multiple plus one angle a per point.
  const double q = at.q, f = at.f;
  const int32_t* d = s.data() + first;
  double* terms = terms_.data();

  if (kind == Interpolation::Lagrange) {
    // In barycentric form: the product over j != k of (p - j) / (k - j) is
    // c x (-1)^(taps-1-m) x C(taps-1, m) / (q - m), with c = q (q - 1) ... (q - taps + 1) / (taps - 1)!.
    prepareLagrange(n);
    double c = q;
    for (int j = 1; j < n; ++j) c *= (q - j) / j;
    for (int m = 0; m < n; ++m) {
      const double sign = ((n - 1 - m) & 1) ? -1.0 : 1.0;
      terms[m] = c * sign * binomial_[static_cast<size_t>(m)] / (q - m) * (d[m] - 0x8000);
    }
    return finish(sumOf(terms, n));
  }

  if (kind == Interpolation::SinX && tabled) {
    const double* w = sinxWeights(f, i - first, n, q, base, column);
    // The terms made two at a time, then added in the window's order.
    int m = 0;
#if defined(__SSE2__)
    const __m128i mid = _mm_set1_epi32(0x8000);
    for (; m + 2 <= n; m += 2) {
      const __m128i codes = _mm_sub_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(d + m)), mid);
      _mm_storeu_pd(terms + m, _mm_mul_pd(_mm_loadu_pd(w + m), _mm_cvtepi32_pd(codes)));
    }
#endif
    for (; m < n; ++m) terms[m] = w[m] * (d[m] - 0x8000);
    return finish(sumOf(terms, n));
  }
  const double a = f * kPiStep, sa = std::sin(a), ca = std::cos(a);
  if (kind == Interpolation::SinX) {
    for (int m = 0; m < n; ++m) {
      const double t = (q - m) * kPiStep;
      terms[m] = std::sin(t) / t * (d[m] - 0x8000);
    }
    return finish(sumOf(terms, n));
  }
  const double b = f * kLzStep, sb = std::sin(b), cb = std::cos(b);
  if (tabled) {
    const double *S = sinPi_.data() + base, *C = cosPi_.data() + base;
    const double *SL = sinLz_.data() + base, *CL = cosLz_.data() + base;
    for (int m = 0; m < n; ++m) {
      const double t = (q - m) * kPiStep;
      terms[m] =
          (S[m] * ca + C[m] * sa) / t * (d[m] - 0x8000) * kLanczosWindow * (SL[m] * cb + CL[m] * sb) / t;
    }
  } else {
    for (int m = 0; m < n; ++m) {
      const double t = (q - m) * kPiStep;
      terms[m] = std::sin(t) / t * (d[m] - 0x8000) * kLanczosWindow * std::sin(t / kLanczosWindow) / t;
    }
  }
  return finish(sumOf(terms, n));
}

void Interpolator::sinxColumns(const SampleBuf& s, int taps, const float* points, int first, int last,
                               int step, int32_t* out) {
  // Columns whose weights are kept are summed four at a time, one column a lane: each lane adds its
  // terms in the window's order, as at() does, so the values are the same; the four sums no longer wait
  // on one another.
  struct Pending {
    int x;
    const double* w;
    const int32_t* d;
  };
  Pending group[4];
  int count = 0, groupN = 0;
  auto flush = [&] {
    if (count == 0) return;
    double sums[4] = {0, 0, 0, 0};
#if defined(__SSE2__)
    if (count == 4) {
      __m128d lo = _mm_setzero_pd(), hi = _mm_setzero_pd();
      for (int m = 0; m < groupN; ++m) {
        const __m128d w01 = _mm_set_pd(group[1].w[m], group[0].w[m]);
        const __m128d w23 = _mm_set_pd(group[3].w[m], group[2].w[m]);
        const __m128d c01 = _mm_set_pd(group[1].d[m] - 0x8000, group[0].d[m] - 0x8000);
        const __m128d c23 = _mm_set_pd(group[3].d[m] - 0x8000, group[2].d[m] - 0x8000);
        lo = _mm_add_pd(lo, _mm_mul_pd(w01, c01));
        hi = _mm_add_pd(hi, _mm_mul_pd(w23, c23));
      }
      _mm_storeu_pd(sums, lo);
      _mm_storeu_pd(sums + 2, hi);
    } else
#endif
    {
      for (int k = 0; k < count; ++k) {
        double sum = 0;
        for (int m = 0; m < groupN; ++m) sum += group[k].w[m] * (group[k].d[m] - 0x8000);
        sums[k] = sum;
      }
    }
    for (int k = 0; k < count; ++k) out[group[k].x] = finish(sums[k]);
    count = 0;
  };
  for (int x = first; x <= last; x += step) {
    const float p = points[x];
    const Place at = place(s, p, taps);
    if (!at.interpolated || !at.tabled || x >= kMaxColumns || at.n > kColumnTaps) {
      out[x] = this->at(Interpolation::SinX, s, p, taps, x);
      continue;
    }
    if (count > 0 && at.n != groupN) flush();
    groupN = at.n;
    group[count++] = {x, sinxWeights(at.f, at.i - at.first, at.n, at.q, at.base, x), s.data() + at.first};
    if (count == 4) flush();
  }
  flush();
}

}  // namespace zorvik
