#include "measure/measure_reference.h"

namespace zorvik::reference {

namespace {

// The samples of a record as codes: one a character, or two characters a sample high byte first (an odd
// last character is no sample).
template <typename F>
void forEachCode(std::string_view s, bool hiRes, F&& f) {
  if (!hiRes) {
    for (char c : s) f(static_cast<int32_t>(static_cast<uint8_t>(c)));
    return;
  }
  for (size_t i = 0; i + 1 < s.size(); i += 2)
    f(static_cast<int32_t>(static_cast<uint8_t>(s[i])) * 256 + static_cast<uint8_t>(s[i + 1]));
}

float volts8(float fullScale, int32_t code, float zero) {
  return fullScale * static_cast<float>(code - 128) / 256 + zero;
}
float volts16(float fullScale, int32_t code, float zero) {
  return fullScale * static_cast<float>(code - 32768) / 65536 + zero;
}

// A 32-bit float sum kept through a 64-bit fixed-point addition with four decimals: the float is rounded
// to the fixed point, the square added exactly, and the total rounded back to a float.
float addFixedPoint(float sum, int64_t square) {
  const int64_t fixed = std::llrint(static_cast<double>(sum) * 10000.0) + square * 10000;
  return static_cast<float>(static_cast<double>(fixed) / 10000.0);
}

}  // namespace

void SigCalc::CalcDC(std::string_view samples, bool IsHiRes, float FullScaleVolts, float ZeroVolts) {
  if (samples.empty()) {
    DCValid = false;
    return;
  }
  const int32_t top = IsHiRes ? 65535 : 255;
  int64_t sum = 0;  // wide: a long hi-res record would pass 32 bits
  bool clipped = false;
  forEachCode(samples, IsHiRes, [&](int32_t code) {
    if (clipped) return;
    if (code == 0 || code == top) clipped = true;
    sum += code;
  });
  if (clipped) {
    DCValid = false;
    return;
  }
  const int64_t chars = static_cast<int64_t>(samples.size());
  if (!IsHiRes) {
    MeanCode8 = static_cast<int32_t>(sum / chars);
    DCVolts = volts8(FullScaleVolts, MeanCode8, ZeroVolts);
    MeanCode16 = MeanCode8 * 256;
  } else {
    MeanCode16 = static_cast<int32_t>(2 * sum / chars);
    DCVolts = volts16(FullScaleVolts, MeanCode16, ZeroVolts);
    MeanCode8 = MeanCode16 / 256;
  }
  DCValid = true;
}

void SigCalc::CalcPeaks(std::string_view samples, bool IsHiRes, float FullScaleVolts, float ZeroVolts) {
  if (samples.empty()) {
    PeakHighValid = PeakLowValid = false;
    return;
  }
  int32_t lo = IsHiRes ? 65536 : 255, hi = 0;
  forEachCode(samples, IsHiRes, [&](int32_t code) {
    if (code < lo) lo = code;
    if (code > hi) hi = code;
  });
  if (!IsHiRes) {
    MinCode8 = lo;
    MaxCode8 = hi;
    PeakHighValid = hi < 255;
    PeakLowValid = lo > 0;
    PeakLowVolts = volts8(FullScaleVolts, lo, ZeroVolts);
    PeakHighVolts = volts8(FullScaleVolts, hi, ZeroVolts);
    PeakToPeakVolts = FullScaleVolts * static_cast<float>(hi - lo) / 256;
  } else {
    MinCode16 = lo;
    MaxCode16 = hi;
    PeakHighValid = hi < 65535;
    PeakLowValid = lo > 0;
    PeakLowVolts = volts16(FullScaleVolts, lo, ZeroVolts);
    PeakHighVolts = volts16(FullScaleVolts, hi, ZeroVolts);
    PeakToPeakVolts = FullScaleVolts * static_cast<float>(hi - lo) / 65536;
  }
}

void SigCalc::CalcAC(std::string_view samples, bool IsHiRes, float FullScaleVolts) {
  if (samples.empty()) {
    HasAC = false;
    return;
  }
  const int32_t mean = IsHiRes ? MeanCode16 : MeanCode8;
  float sum = 0;  // the rounding of a 32-bit sum is part of the measurement
  forEachCode(samples, IsHiRes, [&](int32_t code) {
    const int64_t d = code - mean;
    sum = addFixedPoint(sum, d * d);
  });
  const float chars = static_cast<float>(samples.size());
  if (!IsHiRes)
    ACVolts = std::sqrt(sum / chars) * FullScaleVolts / 256;
  else
    ACVolts = std::sqrt(2 * sum / chars) * FullScaleVolts / 65536;
  ACDCVolts = std::fabs(DCVolts) + ACVolts;
  HasAC = ACVolts != 0;
  if (HasAC) LevelDBV = static_cast<float>(std::log(ACVolts) * 8.68588924407959);
}

void SigCalc::BuildLevelHistogram(std::string_view samples, bool IsHiRes, bool IsPeak) {
  LevelHistogram8.fill(0);
  LevelHistogram12.fill(0);
  if (samples.size() < 20) return;
  auto byte = [&](size_t i) { return static_cast<int>(static_cast<uint8_t>(samples[i])); };
  if (IsPeak) {
    // A peak pair counts at its middle.
    for (size_t i = 0; i + 1 < samples.size(); i += 2)
      ++LevelHistogram8[static_cast<size_t>((byte(i) + byte(i + 1)) / 2 + kGuard)];
  } else if (IsHiRes) {
    for (size_t i = 0; i + 1 < samples.size(); i += 2)
      ++LevelHistogram12[static_cast<size_t>(byte(i) * 16 + byte(i + 1) / 16 + kGuard)];
  } else {
    for (size_t i = 0; i < samples.size(); ++i) ++LevelHistogram8[static_cast<size_t>(byte(i) + kGuard)];
  }
}

void SigCalc::FindRails(bool IsHiRes, int n) {
  // Triangular windows around each candidate bin; the guard bins make the edges readable.
  static constexpr int kWeights8[6] = {6, 5, 4, 3, 2, 1};
  static constexpr int kWeights12[11] = {12, 5, 5, 4, 4, 3, 3, 2, 2, 1, 1};
  const int32_t* h = IsHiRes ? LevelHistogram12.data() + kGuard : LevelHistogram8.data() + kGuard;
  const int* weights = IsHiRes ? kWeights12 : kWeights8;
  const int reach = IsHiRes ? 10 : 5;
  const int first = IsHiRes ? 10 : 6, last = IsHiRes ? 4085 : 249;
  const int distance = IsHiRes ? 64 : 8;
  auto score = [&](int bin) {
    int64_t s = static_cast<int64_t>(weights[0]) * h[bin];
    for (int d = 1; d <= reach; ++d) s += static_cast<int64_t>(weights[d]) * (h[bin - d] + h[bin + d]);
    return s;
  };
  // The strict comparison keeps the lowest of equal bins.
  auto best = [&](int from, int to, int& bin, int64_t& top) {
    for (int b = std::max(from, first); b <= std::min(to, last); ++b) {
      const int64_t s = score(b);
      if (s > top) {
        top = s;
        bin = b;
      }
    }
  };
  int rail1 = 0, rail2 = 0;
  int64_t score1 = 0, score2 = 0;
  best(first, last, rail1, score1);
  best(first, rail1 - distance, rail2, score2);
  best(rail1 + distance, last, rail2, score2);

  const bool firstIsBase = rail1 <= rail2;
  const int base = firstIsBase ? rail1 : rail2, top = firstIsBase ? rail2 : rail1;
  const int64_t baseScore = firstIsBase ? score1 : score2, topScore = firstIsBase ? score2 : score1;
  if (!IsHiRes) {
    BaseCode8 = base;
    TopCode8 = top;
    BaseCode16 = base * 256;
    TopCode16 = top * 256;
  } else {
    BaseCode16 = base * 16;
    TopCode16 = top * 16;
    BaseCode8 = BaseCode16 / 256;
    TopCode8 = TopCode16 / 256;
  }
  BaseScore = static_cast<int32_t>(std::min<int64_t>(baseScore, INT32_MAX));
  TopScore = static_cast<int32_t>(std::min<int64_t>(topScore, INT32_MAX));
  const int64_t needed = IsHiRes ? n / 4 : n / 2;
  TopFound = topScore >= needed;
  BaseFound = baseScore >= needed;
}

float SigCalc::TopRailVoltage(bool IsHiRes, float FullScaleVolts, float ZeroVolts) const {
  return IsHiRes ? volts16(FullScaleVolts, TopCode16, ZeroVolts)
                 : volts8(FullScaleVolts, TopCode8, ZeroVolts);
}

float SigCalc::BaseRailVoltage(bool IsHiRes, float FullScaleVolts, float ZeroVolts) const {
  // The base rail of a 16-bit record is read against 65636: the two rails differ by that, as they always
  // have.
  if (IsHiRes) return static_cast<float>(FullScaleVolts * (BaseCode16 - 32768) / 65636.0 + ZeroVolts);
  return volts8(FullScaleVolts, BaseCode8, ZeroVolts);
}

float SigCalc::RailToRailVoltage(bool IsHiRes, float FullScaleVolts) const {
  return IsHiRes ? FullScaleVolts * static_cast<float>(TopCode16 - BaseCode16) / 65536
                 : FullScaleVolts * static_cast<float>(TopCode8 - BaseCode8) / 256;
}

float SigCalc::PositiveOvershoot(bool IsHiRes) const {
  const int32_t span = IsHiRes ? TopCode16 - BaseCode16 : TopCode8 - BaseCode8;
  if (span < 1) return 0;
  return static_cast<float>(IsHiRes ? MaxCode16 - TopCode16 : MaxCode8 - TopCode8) / static_cast<float>(span);
}

float SigCalc::NegativeOvershoot(bool IsHiRes) const {
  const int32_t span = IsHiRes ? TopCode16 - BaseCode16 : TopCode8 - BaseCode8;
  if (span < 1) return 0;
  return static_cast<float>(IsHiRes ? BaseCode16 - MinCode16 : BaseCode8 - MinCode8) /
         static_cast<float>(span);
}

}  // namespace zorvik::reference

namespace zorvik::reference {

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

}  // namespace zorvik::reference
