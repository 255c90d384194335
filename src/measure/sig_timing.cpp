#include "measure/sig_timing.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "measure/sig_calc.h"

namespace zorvik {

namespace {

// A slot of an edge list, the list grown to hold it.
int32_t& slot(std::vector<int32_t>& list, int32_t index) {
  if (static_cast<size_t>(index) >= list.size()) list.resize(static_cast<size_t>(index) + 1, 0);
  return list[static_cast<size_t>(index)];
}

}  // namespace

// The walk of the record as a sequence of values V, step t reading A = V[t - 1] and B = V[t] with the
// 1-based index i of the character it stands on:
//   peak pairs: V the sums of the pairs, t from 2, i = 2t - 1;
//   hi-res: V the 16-bit codes, t from 1, i = 2t - 1;
//   bytes with pair sums: V[t] = code t + code t + 1, t from 1, i = t + 1;
//   bytes: V the codes, t from 1, i = t.
// Only the steps that cross a level in either direction (A < X <= B or A > X >= B) can add to a list;
// the others are found side by side and skipped.
template <typename F>
void SigTiming::walkCrossing(std::string_view s, const RecordShape& shape, bool pairSums,
                             std::initializer_list<int32_t> levels, F&& f) {
  const uint8_t* p = reinterpret_cast<const uint8_t*>(s.data());
  const size_t n = s.size();
  size_t count, first;
  values_.resize(n + 1);
  int32_t* v = values_.data();
  if (shape.IsPeak) {
    count = n / 2;
    first = 2;
    for (size_t t = 0; t < count; ++t) v[t] = p[2 * t] + p[2 * t + 1];
  } else if (shape.IsHiRes) {
    count = n / 2;
    first = 1;
    for (size_t t = 0; t < count; ++t) v[t] = p[2 * t] * 256 + p[2 * t + 1];
  } else if (pairSums) {
    count = n > 0 ? n - 1 : 0;
    first = 1;
    for (size_t t = 0; t < count; ++t) v[t] = p[t] + p[t + 1];
  } else {
    count = n;
    first = 1;
    for (size_t t = 0; t < count; ++t) v[t] = p[t];
  }
  if (count <= first) return;
  // One bit a step from `first` on: whether it crosses a level (or one of two; the same level twice when
  // one is given).
  const size_t steps = count - first;
  flags_.assign((steps + 63) / 64, 0);
  uint64_t* bits = flags_.data();
  const int32_t x0 = *levels.begin(), x1 = levels.size() > 1 ? *(levels.begin() + 1) : x0;
  auto crosses = [&](int32_t a, int32_t b) {
    return ((a < x0) & (b >= x0)) | ((a > x0) & (b <= x0)) | ((a < x1) & (b >= x1)) | ((a > x1) & (b <= x1));
  };
  size_t k = 0;
#if defined(__SSE2__)
  const __m128i l0 = _mm_set1_epi32(x0), l1 = _mm_set1_epi32(x1);
  auto crosses4 = [](__m128i a, __m128i b, __m128i x) {
    // a < x <= b, or a > x >= b
    const __m128i up = _mm_andnot_si128(_mm_cmplt_epi32(b, x), _mm_cmplt_epi32(a, x));
    const __m128i down = _mm_andnot_si128(_mm_cmpgt_epi32(b, x), _mm_cmpgt_epi32(a, x));
    return _mm_or_si128(up, down);
  };
  for (; k + 4 <= steps; k += 4) {
    const int32_t* at = v + first + k;
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at - 1));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const int m = _mm_movemask_ps(_mm_castsi128_ps(_mm_or_si128(crosses4(a, b, l0), crosses4(a, b, l1))));
    bits[k / 64] |= static_cast<uint64_t>(m) << (k % 64);
  }
#endif
  for (; k < steps; ++k)
    if (crosses(v[first + k - 1], v[first + k])) bits[k / 64] |= uint64_t{1} << (k % 64);
  auto index = [&](size_t t) { return shape.IsPeak || shape.IsHiRes ? 2 * t - 1 : pairSums ? t + 1 : t; };
  for (size_t w = 0; w < flags_.size(); ++w) {
    for (uint64_t word = bits[w]; word != 0; word &= word - 1) {
      const size_t t = first + w * 64 + static_cast<size_t>(__builtin_ctzll(word));
      f(index(t), v[t - 1], v[t]);
    }
  }
}

void SigTiming::FindCrossings(std::string_view samples, const RecordShape& shape, int levelMode,
                              int triggerByte, const SigCalc& calc) {
  RiseList.clear();
  FallList.clear();
  if (samples.size() < 32) return;
  const bool wide = shape.IsHiRes && !shape.IsPeak;
  switch (levelMode) {
    case 1:
      level_ = wide ? (calc.MinCode16 + calc.MaxCode16) / 2 : calc.MinCode8 + calc.MaxCode8;
      break;
    case 2:
      level_ = wide ? (calc.BaseCode16 + calc.TopCode16) / 2 : calc.BaseCode8 + calc.TopCode8;
      break;
    case 3:
      level_ = wide ? triggerByte * 256 : triggerByte * 2;
      break;
    default:
      level_ = wide ? 32768 : 256;
      break;
  }
  const int32_t L = level_;
  walkCrossing(samples, shape, true, {L}, [&](size_t i, int32_t A, int32_t B) {
    const int32_t pos = static_cast<int32_t>(shape.IsPeak    ? (shape.OneCharSample ? i : i / 2)
                                             : shape.IsHiRes ? i / 2
                                                             : i);
    // Strictly from the other side: a signal resting on the level counts once, on arrival.
    if (A < L && L <= B)
      RiseList.push_back(pos);
    else if (A > L && B <= L)
      FallList.push_back(pos);
  });
}

void SigTiming::CalcPeriod(bool negativePolarity, float SamplePeriod) {
  const int32_t r = static_cast<int32_t>(RiseList.size()), f = static_cast<int32_t>(FallList.size());
  PeriodCount = r > f ? f : f > r ? r : f - 1;
  if (PeriodCount < 1) return;
  // The polarity picks the list; a list of fewer than two entries gives way to the other.
  if (!(negativePolarity && f >= 2) && r >= 2)
    Period = static_cast<float>(RiseList[static_cast<size_t>(r - 1)] - RiseList[0]) * SamplePeriod /
             static_cast<float>(r - 1);
  else
    Period = static_cast<float>(FallList[static_cast<size_t>(f - 1)] - FallList[0]) * SamplePeriod /
             static_cast<float>(f - 1);
}

void SigTiming::CalcPulseWidth(bool negativePolarity, float SamplePeriod) {
  PulseCount = 0;
  int64_t sum = 0;
  if (RiseList.empty() || FallList.empty()) return;
  const std::vector<int32_t>& starts = negativePolarity ? FallList : RiseList;
  const std::vector<int32_t>& ends = negativePolarity ? RiseList : FallList;
  // Each pulse runs from a start to the first end strictly after it; both lists ascend.
  for (int32_t s : starts) {
    auto e = std::upper_bound(ends.begin(), ends.end(), s);
    if (e == ends.end()) break;
    sum += *e - s;
    ++PulseCount;
  }
  if (PulseCount >= 1) PulseWidth = static_cast<float>(static_cast<double>(sum) / PulseCount * SamplePeriod);
}

void SigTiming::FindEdges(std::string_view samples, const RecordShape& shape, bool level2080,
                          const SigCalc& calc) {
  RiseCount = FallCount = 0;
  RiseStarts.clear();
  RiseEnds.clear();
  FallStarts.clear();
  FallEnds.clear();
  if (!(calc.TopFound && calc.BaseFound)) return;
  const double f = level2080 ? 0.2 : 0.1;
  double lo, hi;
  if (shape.IsPeak) {
    lo = 2.0 * calc.BaseCode8 + (calc.TopCode8 - calc.BaseCode8) * 2 * f;
    hi = 2.0 * calc.TopCode8 - (calc.TopCode8 - calc.BaseCode8) * 2 * f;
  } else if (shape.IsHiRes) {
    lo = calc.BaseCode16 + (calc.TopCode16 - calc.BaseCode16) * f;
    hi = calc.TopCode16 - (calc.TopCode16 - calc.BaseCode16) * f;
  } else {
    lo = calc.BaseCode8 + (calc.TopCode8 - calc.BaseCode8) * f;
    hi = calc.TopCode8 - (calc.TopCode8 - calc.BaseCode8) * f;
  }
  // Nearest, ties to even.
  const int32_t Lo = static_cast<int32_t>(std::nearbyint(lo)), Hi = static_cast<int32_t>(std::nearbyint(hi));
  const bool bytes = !shape.IsPeak && !shape.IsHiRes;
  // A mode 0x200 peak record never completes a fall: its falls show "No falls", as they always have.
  const bool fallsCount = bytes || !shape.OneCharSample;
  walkCrossing(samples, shape, false, {Lo, Hi}, [&](size_t i, int32_t A, int32_t B) {
    const int32_t i10 = static_cast<int32_t>(i) * 10;
    auto rising = [&](int32_t level) {
      if (bytes) return i10 + ((level - A) * 10) / (B - A);
      return shape.IsPeak && shape.OneCharSample ? i10 : i10 / 2;
    };
    auto falling = [&](int32_t level) {
      if (bytes) return i10 + ((A - level) * 10) / (A - B);
      return shape.IsPeak && shape.OneCharSample ? i10 : i10 / 2;
    };
    if (A < Lo && B >= Lo) slot(RiseStarts, RiseCount) = rising(Lo);
    if (A < Hi && B >= Hi && slot(RiseStarts, RiseCount) > 0) {
      slot(RiseEnds, RiseCount) = rising(Hi);
      ++RiseCount;
    }
    if (A > Hi && B <= Hi) slot(FallStarts, FallCount) = falling(Hi);
    if (A > Lo && B <= Lo && slot(FallStarts, FallCount) > 0) {
      slot(FallEnds, FallCount) = falling(Lo);
      if (fallsCount) ++FallCount;
    }
  });
}

float SigTiming::RiseTime(float SamplePeriod) const {
  if (RiseCount < 1) return 0;
  int64_t sum = 0;
  for (int32_t k = 0; k < RiseCount; ++k)
    sum += RiseEnds[static_cast<size_t>(k)] - RiseStarts[static_cast<size_t>(k)];
  return static_cast<float>(SamplePeriod * static_cast<double>(sum) / RiseCount / 10);
}

float SigTiming::FallTime(float SamplePeriod) const {
  if (FallCount < 1) return 0;
  int64_t sum = 0;
  for (int32_t k = 0; k < FallCount; ++k)
    sum += FallEnds[static_cast<size_t>(k)] - FallStarts[static_cast<size_t>(k)];
  return static_cast<float>(SamplePeriod * static_cast<double>(sum) / FallCount / 10);
}

}  // namespace zorvik
