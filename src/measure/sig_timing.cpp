#include "measure/sig_timing.h"

#include <algorithm>
#include <cmath>

#include "measure/sig_calc.h"

namespace zorvik {

namespace {

// The record's 1-based character i as a code.
int32_t at(std::string_view s, size_t i) {
  return static_cast<uint8_t>(s[i - 1]);
}
int32_t word(std::string_view s, size_t i) {
  return at(s, i) * 256 + at(s, i + 1);
}

// A slot of an edge list, the list grown to hold it.
int32_t& slot(std::vector<int32_t>& list, int32_t index) {
  if (static_cast<size_t>(index) >= list.size()) list.resize(static_cast<size_t>(index) + 1, 0);
  return list[static_cast<size_t>(index)];
}

// Walks the record as the shape tells: f(i, A, B) with the 1-based index of each step.
template <typename F>
void walk(std::string_view s, const RecordShape& shape, bool pairSums, F&& f) {
  const size_t n = s.size();
  if (shape.IsPeak) {
    for (size_t i = 3; i + 3 <= n; i += 2) f(i, at(s, i) + at(s, i + 1), at(s, i + 2) + at(s, i + 3));
  } else if (shape.IsHiRes) {
    for (size_t i = 1; i + 3 <= n; i += 2) f(i, word(s, i), word(s, i + 2));
  } else if (pairSums) {
    // Crossings compare a moving sum of two codes.
    for (size_t i = 2; i + 1 <= n; ++i) f(i, at(s, i - 1) + at(s, i), at(s, i) + at(s, i + 1));
  } else {
    for (size_t i = 1; i + 1 <= n; ++i) f(i, at(s, i), at(s, i + 1));
  }
}

}  // namespace

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
  walk(samples, shape, true, [&](size_t i, int32_t A, int32_t B) {
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
  walk(samples, shape, false, [&](size_t i, int32_t A, int32_t B) {
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
