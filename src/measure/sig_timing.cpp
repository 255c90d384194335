#include "measure/sig_timing.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "measure/sig_calc.h"

namespace zorvik {

// The walk of the record as a sequence of values V, step t reading A = V[t - 1] and B = V[t] with the
// 1-based index i of the character it stands on:
//   peak pairs: V the sums of the pairs, t from 2, i = 2t - 1;
//   hi-res: V the 16-bit codes, t from 1, i = 2t - 1;
//   bytes with pair sums: V[t] = code t + code t + 1, t from 1, i = t + 1;
//   bytes: V the codes, t from 1, i = t.
// Only the steps that cross a level in either direction (A < X <= B or A > X >= B) can add to a list;
// the others are found side by side, straight from the characters, and skipped.
template <typename F>
void SigTiming::walkCrossing(std::string_view s, const RecordShape& shape, bool pairSums,
                             std::initializer_list<int32_t> levels, F&& f) {
  enum class Walk { Pairs, Words, Sums, Bytes };
  const uint8_t* p = reinterpret_cast<const uint8_t*>(s.data());
  const size_t n = s.size();
  const Walk walk = shape.IsPeak    ? Walk::Pairs
                    : shape.IsHiRes ? Walk::Words
                    : pairSums      ? Walk::Sums
                                    : Walk::Bytes;
  const size_t count = walk == Walk::Pairs || walk == Walk::Words ? n / 2
                       : walk == Walk::Sums                       ? (n > 0 ? n - 1 : 0)
                                                                  : n;
  const size_t first = walk == Walk::Pairs ? 2 : 1;
  if (count <= first) return;
  auto value = [p, walk](size_t t) -> int32_t {
    switch (walk) {
      case Walk::Pairs:
        return p[2 * t] + p[2 * t + 1];
      case Walk::Words:
        return p[2 * t] * 256 + p[2 * t + 1];
      case Walk::Sums:
        return p[t] + p[t + 1];
      default:
        return p[t];
    }
  };
  // A level outside the values' range (0 to top) is crossed by no step; the other level stands for it.
  const int32_t top = walk == Walk::Words ? 65535 : walk == Walk::Bytes ? 255 : 510;
  int32_t inRange[2];
  size_t used = 0;
  for (int32_t x : levels)
    if (x >= 0 && x <= top) inRange[used++] = x;
  if (used == 0) return;
  const int32_t x0 = inRange[0], x1 = inRange[used - 1];
  // One bit a step from `first` on: whether it crosses a level.
  const size_t steps = count - first;
  flags_.assign((steps + 63) / 64, 0);
  uint64_t* bits = flags_.data();
  size_t k = 0;
#if defined(__SSE2__)
  // a < x <= b, or a > x >= b, on signed lanes.
  auto crosses16 = [](__m128i a, __m128i b, __m128i x) {
    const __m128i up = _mm_andnot_si128(_mm_cmpgt_epi16(x, b), _mm_cmpgt_epi16(x, a));
    const __m128i down = _mm_andnot_si128(_mm_cmpgt_epi16(b, x), _mm_cmpgt_epi16(a, x));
    return _mm_or_si128(up, down);
  };
  auto crosses8 = [](__m128i a, __m128i b, __m128i x) {
    const __m128i up = _mm_andnot_si128(_mm_cmpgt_epi8(x, b), _mm_cmpgt_epi8(x, a));
    const __m128i down = _mm_andnot_si128(_mm_cmpgt_epi8(b, x), _mm_cmpgt_epi8(a, x));
    return _mm_or_si128(up, down);
  };
  // Sixteen steps a round: the values before and at steps k to k + 15.
  if (walk == Walk::Bytes) {
    // Codes offset by 128 compare as signed bytes.
    const __m128i flip = _mm_set1_epi8(static_cast<char>(0x80));
    const __m128i l0 = _mm_set1_epi8(static_cast<char>(x0 ^ 0x80)),
                  l1 = _mm_set1_epi8(static_cast<char>(x1 ^ 0x80));
    for (; k + 16 <= steps; k += 16) {
      const uint8_t* at = p + first + k;
      const __m128i a = _mm_xor_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at - 1)), flip);
      const __m128i b = _mm_xor_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)), flip);
      const int m = _mm_movemask_epi8(_mm_or_si128(crosses8(a, b, l0), crosses8(a, b, l1)));
      bits[k / 64] |= static_cast<uint64_t>(static_cast<uint32_t>(m)) << (k % 64);
    }
  } else {
    // Eight values of V from t on as signed 16-bit lanes: codes offset by 32768, sums as they are.
    const __m128i low = _mm_set1_epi16(0xFF), flip = _mm_set1_epi16(static_cast<int16_t>(0x8000));
    const __m128i zero = _mm_setzero_si128();
    auto values8 = [&](size_t t) {
      if (walk == Walk::Pairs) {
        const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 2 * t));
        return _mm_add_epi16(_mm_and_si128(x, low), _mm_srli_epi16(x, 8));
      }
      if (walk == Walk::Words) {
        const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 2 * t));
        return _mm_xor_si128(_mm_or_si128(_mm_slli_epi16(x, 8), _mm_srli_epi16(x, 8)), flip);
      }
      const __m128i here = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p + t));
      const __m128i next = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p + t + 1));
      return _mm_add_epi16(_mm_unpacklo_epi8(here, zero), _mm_unpacklo_epi8(next, zero));
    };
    const int32_t offset = walk == Walk::Words ? 32768 : 0;
    const __m128i l0 = _mm_set1_epi16(static_cast<int16_t>(x0 - offset));
    const __m128i l1 = _mm_set1_epi16(static_cast<int16_t>(x1 - offset));
    for (; k + 16 <= steps; k += 16) {
      const size_t t = first + k;
      const __m128i a0 = values8(t - 1), b0 = values8(t), a1 = values8(t + 7), b1 = values8(t + 8);
      const __m128i c0 = _mm_or_si128(crosses16(a0, b0, l0), crosses16(a0, b0, l1));
      const __m128i c1 = _mm_or_si128(crosses16(a1, b1, l0), crosses16(a1, b1, l1));
      const int m = _mm_movemask_epi8(_mm_packs_epi16(c0, c1));
      bits[k / 64] |= static_cast<uint64_t>(static_cast<uint32_t>(m)) << (k % 64);
    }
  }
#endif
  auto crosses = [&](int32_t a, int32_t b) {
    return ((a < x0) & (b >= x0)) | ((a > x0) & (b <= x0)) | ((a < x1) & (b >= x1)) | ((a > x1) & (b <= x1));
  };
  for (; k < steps; ++k)
    if (crosses(value(first + k - 1), value(first + k))) bits[k / 64] |= uint64_t{1} << (k % 64);
  auto index = [&](size_t t) {
    return walk == Walk::Pairs || walk == Walk::Words ? 2 * t - 1 : walk == Walk::Sums ? t + 1 : t;
  };
  for (size_t w = 0; w < flags_.size(); ++w) {
    for (uint64_t word = bits[w]; word != 0; word &= word - 1) {
      const size_t t = first + w * 64 + static_cast<size_t>(__builtin_ctzll(word));
      f(index(t), value(t - 1), value(t));
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
  // The start of the edge under way, in tenths of a sample; 0 is none.
  int32_t riseStart = 0, fallStart = 0;
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
    if (A < Lo && B >= Lo) riseStart = rising(Lo);
    if (A < Hi && B >= Hi && riseStart > 0) {
      RiseStarts.push_back(riseStart);
      RiseEnds.push_back(rising(Hi));
      ++RiseCount;
      riseStart = 0;
    }
    if (A > Hi && B <= Hi) fallStart = falling(Hi);
    // A fall that does not count leaves its start standing for the next.
    if (A > Lo && B <= Lo && fallStart > 0 && fallsCount) {
      FallStarts.push_back(fallStart);
      FallEnds.push_back(falling(Lo));
      ++FallCount;
      fallStart = 0;
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
