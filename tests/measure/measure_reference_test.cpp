// The routines of the meters against their first plain loops, on records of every format that touch the
// paths the faster routines take: sums that pass 2^24, 2^38 and 2^49, ties in the rounding, clipped and
// tiny records, rails and edges, and one object reading records of different widths in turn.
#include "measure/measure_reference.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "measure/sig_calc.h"
#include "measure/sig_timing.h"

using namespace zorvik;

namespace {

enum class Format { Bytes, HiRes, PeakOneChar, PeakPairs };

struct Record {
  std::string bytes;
  Format format;
  std::string name;
};

// A wave of `kind` (0 sine, 1 square, 2 noise about a level) at `amplitude` of full scale with noise.
Record makeRecord(Format format, int samples, int kind, double amplitude, double noise, std::mt19937& rng,
                  std::string name) {
  std::normal_distribution<double> gauss(0, 1);
  const bool wide = format == Format::HiRes;
  const double full = wide ? 65535 : 255, mid = wide ? 32768 : 128;
  auto wave = [&](int i) {
    const double phase = i * 2 * M_PI / 700.0;
    const double shape = kind == 0 ? std::sin(phase) : kind == 1 ? (std::sin(phase) >= 0 ? 1 : -1) : 0;
    const double v = mid + amplitude * full / 2 * shape + noise * full * gauss(rng);
    return static_cast<int>(std::lround(std::clamp(v, 0.0, full)));
  };
  std::string s;
  for (int i = 0; i < samples; ++i) {
    const int v = wave(i);
    if (format == Format::Bytes) {
      s += static_cast<char>(v);
    } else if (format == Format::HiRes) {
      s += {static_cast<char>(v >> 8), static_cast<char>(v & 0xFF)};
    } else {
      const int spread = static_cast<int>(rng() % 9);
      s += {static_cast<char>(std::max(0, v - spread)), static_cast<char>(std::min(255, v + spread))};
    }
  }
  return {s, format, name};
}

std::vector<Record> records() {
  std::mt19937 rng(1616);
  std::vector<Record> r;
  for (Format f : {Format::Bytes, Format::HiRes, Format::PeakOneChar, Format::PeakPairs}) {
    const std::string tag = std::to_string(static_cast<int>(f));
    r.push_back(makeRecord(f, 8192, 0, 0.7, 0.01, rng, "sine " + tag));
    r.push_back(makeRecord(f, 8192, 1, 0.6, 0.004, rng, "square " + tag));
    r.push_back(makeRecord(f, 8192, 2, 0, 0.002, rng, "quiet " + tag));  // sums stay small
    r.push_back(makeRecord(f, 8192, 0, 1.2, 0.02, rng, "clipped " + tag));
    r.push_back(makeRecord(f, 333, 1, 0.9, 0.05, rng, "short " + tag));
    r.push_back(makeRecord(f, 19, 0, 0.5, 0, rng, "tiny " + tag));
  }
  // Full-scale square waves in hi-res: squares of 2^30, sums past 2^38 and, far on, past 2^49.
  r.push_back(makeRecord(Format::HiRes, 20000, 1, 0.9999, 0, rng, "hi-res square"));
  r.push_back(makeRecord(Format::HiRes, 600000, 1, 0.9999, 0.00001, rng, "long hi-res square"));
  // Odd squares at every step: ties as soon as the sum passes 2^24.
  std::string odd;
  for (int i = 0; i < 30000; ++i) odd += static_cast<char>(i % 2 ? 128 + 63 : 128 - 63);
  r.push_back({odd, Format::Bytes, "ties"});
  return r;
}

uint32_t bits(float v) {
  return std::bit_cast<uint32_t>(v);
}

template <typename New, typename Old>
void expectSameCalc(const New& a, const Old& b, const std::string& where) {
  SCOPED_TRACE(where);
  EXPECT_EQ(bits(a.DCVolts), bits(b.DCVolts));
  EXPECT_EQ(a.DCValid, b.DCValid);
  EXPECT_EQ(a.MeanCode8, b.MeanCode8);
  EXPECT_EQ(a.MeanCode16, b.MeanCode16);
  EXPECT_EQ(bits(a.PeakHighVolts), bits(b.PeakHighVolts));
  EXPECT_EQ(bits(a.PeakLowVolts), bits(b.PeakLowVolts));
  EXPECT_EQ(bits(a.PeakToPeakVolts), bits(b.PeakToPeakVolts));
  EXPECT_EQ(a.PeakHighValid, b.PeakHighValid);
  EXPECT_EQ(a.PeakLowValid, b.PeakLowValid);
  EXPECT_EQ(a.MinCode8, b.MinCode8);
  EXPECT_EQ(a.MaxCode8, b.MaxCode8);
  EXPECT_EQ(a.MinCode16, b.MinCode16);
  EXPECT_EQ(a.MaxCode16, b.MaxCode16);
  EXPECT_EQ(bits(a.ACVolts), bits(b.ACVolts));
  EXPECT_EQ(bits(a.ACDCVolts), bits(b.ACDCVolts));
  EXPECT_EQ(a.HasAC, b.HasAC);
  EXPECT_EQ(bits(a.LevelDBV), bits(b.LevelDBV));
  EXPECT_EQ(a.BaseCode8, b.BaseCode8);
  EXPECT_EQ(a.TopCode8, b.TopCode8);
  EXPECT_EQ(a.BaseCode16, b.BaseCode16);
  EXPECT_EQ(a.TopCode16, b.TopCode16);
  EXPECT_EQ(a.BaseScore, b.BaseScore);
  EXPECT_EQ(a.TopScore, b.TopScore);
  EXPECT_EQ(a.TopFound, b.TopFound);
  EXPECT_EQ(a.BaseFound, b.BaseFound);
  for (int bin = -10; bin < 266; ++bin) ASSERT_EQ(a.histogram8(bin), b.histogram8(bin)) << bin;
  for (int bin = -10; bin < 4106; ++bin) ASSERT_EQ(a.histogram12(bin), b.histogram12(bin)) << bin;
}

template <typename New, typename Old>
void expectSameTiming(const New& a, const Old& b, float period, const std::string& where) {
  SCOPED_TRACE(where);
  EXPECT_EQ(a.riseList(), b.riseList());
  EXPECT_EQ(a.fallList(), b.fallList());
  EXPECT_EQ(a.level(), b.level());
  EXPECT_EQ(a.PeriodCount, b.PeriodCount);
  EXPECT_EQ(bits(a.Period), bits(b.Period));
  EXPECT_EQ(a.PulseCount, b.PulseCount);
  EXPECT_EQ(bits(a.PulseWidth), bits(b.PulseWidth));
  EXPECT_EQ(a.RiseCount, b.RiseCount);
  EXPECT_EQ(a.FallCount, b.FallCount);
  EXPECT_EQ(bits(a.RiseTime(period)), bits(b.RiseTime(period)));
  EXPECT_EQ(bits(a.FallTime(period)), bits(b.FallTime(period)));
}

}  // namespace

TEST(MeasureReference, EveryRoutineGivesTheBitsOfItsFirstLoopOnEveryFormat) {
  // One object of each reads every record in turn, so that what a record leaves behind is read too.
  SigCalc calc;
  SigTiming timing;
  reference::SigCalc oldCalc;
  reference::SigTiming oldTiming;
  const float fs = 1.6f, zero = 0.125f, period = 1e-7f;
  for (const Record& r : records()) {
    const bool hiRes = r.format == Format::HiRes;
    const bool peak = r.format == Format::PeakOneChar || r.format == Format::PeakPairs;
    const int n = static_cast<int>(hiRes || peak ? r.bytes.size() / 2 : r.bytes.size());
    calc.CalcDCAndPeaks(r.bytes, hiRes, fs, zero);
    oldCalc.CalcDC(r.bytes, hiRes, fs, zero);
    oldCalc.CalcPeaks(r.bytes, hiRes, fs, zero);
    calc.CalcAC(r.bytes, hiRes, fs);
    oldCalc.CalcAC(r.bytes, hiRes, fs);
    calc.BuildLevelHistogram(r.bytes, hiRes, peak);
    oldCalc.BuildLevelHistogram(r.bytes, hiRes, peak);
    calc.FindRails(hiRes, n);
    oldCalc.FindRails(hiRes, n);
    expectSameCalc(calc, oldCalc, r.name);
    // The separate routines as well.
    calc.CalcDC(r.bytes, hiRes, fs, -zero);
    calc.CalcPeaks(r.bytes, hiRes, fs, -zero);
    oldCalc.CalcDC(r.bytes, hiRes, fs, -zero);
    oldCalc.CalcPeaks(r.bytes, hiRes, fs, -zero);
    expectSameCalc(calc, oldCalc, r.name + ", routines apart");

    const RecordShape shape{hiRes, peak, r.format == Format::PeakOneChar};
    const reference::RecordShape oldShape{hiRes, peak, r.format == Format::PeakOneChar};
    for (int levelMode = 0; levelMode < 4; ++levelMode) {
      for (bool negative : {false, true}) {
        timing.FindCrossings(r.bytes, shape, levelMode, 120, calc);
        oldTiming.FindCrossings(r.bytes, oldShape, levelMode, 120, oldCalc);
        timing.CalcPeriod(negative, period);
        oldTiming.CalcPeriod(negative, period);
        timing.CalcPulseWidth(negative, period);
        oldTiming.CalcPulseWidth(negative, period);
        timing.FindEdges(r.bytes, shape, negative, calc);
        oldTiming.FindEdges(r.bytes, oldShape, negative, oldCalc);
        expectSameTiming(timing, oldTiming, period, r.name + " level " + std::to_string(levelMode));
      }
    }
  }
}

namespace {

// A record of codes drawn by `code` (0 to 255, or 0 to 65535 in hi-res), in bytes or high byte first.
template <typename F>
std::string codes(bool hiRes, size_t samples, F&& code) {
  std::string s;
  for (size_t i = 0; i < samples; ++i) {
    const int c = code(i);
    if (hiRes) s += static_cast<char>(c >> 8);
    s += static_cast<char>(c & 0xFF);
  }
  return s;
}

// The AC meters of both routines on one record, the mean as the record's own or as it was left.
void expectSameAC(SigCalc& calc, reference::SigCalc& old, const std::string& s, bool hiRes,
                  const std::string& where) {
  calc.CalcDC(s, hiRes, 1.6f, 0);
  old.CalcDC(s, hiRes, 1.6f, 0);
  calc.CalcAC(s, hiRes, 1.6f);
  old.CalcAC(s, hiRes, 1.6f);
  SCOPED_TRACE(where);
  ASSERT_EQ(calc.MeanCode8, old.MeanCode8);
  ASSERT_EQ(calc.MeanCode16, old.MeanCode16);
  EXPECT_EQ(bits(calc.ACVolts), bits(old.ACVolts));
  EXPECT_EQ(bits(calc.LevelDBV), bits(old.LevelDBV));
  EXPECT_EQ(calc.HasAC, old.HasAC);
}

}  // namespace

TEST(MeasureReference, TheACSumRoundsAsTheFloatSumInEveryBinadeAndAtEveryTie) {
  SigCalc calc;
  reference::SigCalc old;
  std::mt19937 rng(2424);
  // Bytes about 128: squares of odd distances tie while floats are 2 apart (2^24 to 2^25), of distances
  // 2 mod 4 while they are 8 apart (2^26 to 2^27); long records carry the sum through several binades.
  for (size_t samples : {size_t{20000}, size_t{70000}, size_t{300001}}) {
    for (int spread : {3, 40, 127}) {
      std::uniform_int_distribution<int> code(128 - spread, 128 + spread);
      expectSameAC(calc, old, codes(false, samples, [&](size_t) { return code(rng); }), false,
                   "bytes " + std::to_string(samples) + " spread " + std::to_string(spread));
    }
    // Distances of 2 mod 4 only: a tie at every step from 2^26 on.
    expectSameAC(calc, old, codes(false, samples, [&](size_t i) { return i % 2 ? 128 + 30 : 128 - 30; }),
                 false, "bytes, ties at 8 apart");
  }
  // Hi-res records whose distances are odd multiples of 2^p: squares that tie while the floats are
  // 2^(2p + 1) apart, up to 2^19 apart past 2^42, where the fixed point outgrows a double; others with
  // ties in no binade.
  for (int power : {6, 7, 8, 9}) {
    std::uniform_int_distribution<int> odd(0, (32000 >> power) - 1);
    const std::string s = codes(true, 30000, [&](size_t i) {
      const int d = (2 * odd(rng) + 1) << power;
      return i % 2 ? 32768 + d : 32768 - d;
    });
    expectSameAC(calc, old, s, true, "hi-res, distances 2^" + std::to_string(power) + " x odd");
  }
  for (int spread : {1, 300, 32000}) {
    std::uniform_int_distribution<int> code(32768 - spread, 32767 + spread);
    expectSameAC(calc, old, codes(true, 50000, [&](size_t) { return code(rng); }), true,
                 "hi-res spread " + std::to_string(spread));
  }
  // Quiet records of every length up to a few blocks: sums that never round, ending in a short block.
  for (size_t samples = 1; samples < 200; ++samples) {
    std::uniform_int_distribution<int> near(-3, 3);
    for (bool hiRes : {false, true}) {
      const int mid = hiRes ? 32768 : 128;
      expectSameAC(calc, old, codes(hiRes, samples, [&](size_t) { return mid + near(rng); }), hiRes,
                   "quiet, " + std::to_string(samples) + (hiRes ? " hi-res" : " bytes"));
    }
  }
  // Random lengths about the block size, so that the last block is short; codes near both rails and a
  // mean left by a record of the other width.
  std::uniform_int_distribution<int> length(1, 700), byte(0, 255), word(0, 65535);
  for (int round = 0; round < 300; ++round) {
    const bool hiRes = round % 3 == 0;
    const size_t samples = static_cast<size_t>(length(rng)) * (round % 5 == 0 ? 97 : 1);
    const std::string s = codes(hiRes, samples, [&](size_t) { return hiRes ? word(rng) : byte(rng); });
    expectSameAC(calc, old, s, hiRes, "random " + std::to_string(round));
    calc.CalcAC(s, !hiRes, 1.6f);  // the other width reads the mean this record left
    old.CalcAC(s, !hiRes, 1.6f);
    EXPECT_EQ(bits(calc.ACVolts), bits(old.ACVolts)) << "random " << round << " read in the other width";
  }
}

TEST(MeasureReference, AByteRecordOfMillionsOfCodesSumsOnWhereTheFloatsAre2To16Apart) {
  // A first record pinned at the top rail: no mean of its own, so every distance is from 0 and the sum
  // passes 2^39 after some eight million codes.
  SigCalc calc;
  reference::SigCalc old;
  const std::string s = codes(false, 9000001, [](size_t i) { return i % 7 ? 255 : 200; });
  calc.CalcDC(s, false, 1.6f, 0);
  old.CalcDC(s, false, 1.6f, 0);
  ASSERT_FALSE(calc.DCValid);
  calc.CalcAC(s, false, 1.6f);
  old.CalcAC(s, false, 1.6f);
  EXPECT_EQ(bits(calc.ACVolts), bits(old.ACVolts));
  EXPECT_EQ(bits(calc.LevelDBV), bits(old.LevelDBV));
}

TEST(MeasureReference, RailsAndEdgesOfRandomPulseTrainsInEveryFormat) {
  // Two levels anywhere, the rails included, with ramps between them and noise: the rails can land in
  // any part of the histogram, and the edge levels at or next to the codes the signal rests on.
  std::mt19937 rng(5151);
  SigCalc calc;
  SigTiming timing;
  reference::SigCalc oldCalc;
  reference::SigTiming oldTiming;
  std::uniform_real_distribution<double> unit(0, 1);
  for (int round = 0; round < 120; ++round) {
    const Format format = static_cast<Format>(round % 4);
    const bool hiRes = format == Format::HiRes,
               peak = format == Format::PeakOneChar || format == Format::PeakPairs;
    const int top = hiRes ? 65535 : 255;
    auto level = [&] {
      return unit(rng) < 0.2 ? (unit(rng) < 0.5 ? 0 : top) : static_cast<int>(unit(rng) * top);
    };
    const int low = level(), high = level();
    const int period = 20 + static_cast<int>(rng() % 400), ramp = static_cast<int>(rng() % 12);
    const double noise = unit(rng) < 0.5 ? 0 : unit(rng) * top * 0.01;
    std::normal_distribution<double> gauss(0, 1);
    const size_t samples = 200 + rng() % 9000;
    auto wave = [&](size_t i) {
      const int t = static_cast<int>(i % static_cast<size_t>(period)), half = period / 2;
      const double rise = ramp ? std::min(1.0, static_cast<double>(t) / ramp) : 1.0;
      const double fall = ramp ? std::min(1.0, static_cast<double>(t - half) / ramp) : 1.0;
      const double v = t < half ? low + (high - low) * rise : high + (low - high) * fall;
      return static_cast<int>(std::lround(std::clamp(v + noise * gauss(rng), 0.0, static_cast<double>(top))));
    };
    std::string s;
    if (!peak) {
      s = codes(hiRes, samples, wave);
    } else {
      for (size_t i = 0; i < samples; ++i) {
        const int a = wave(i), b = std::clamp(a + static_cast<int>(rng() % 5) - 2, 0, 255);
        s += {static_cast<char>(std::min(a, b)), static_cast<char>(std::max(a, b))};
      }
    }
    if (hiRes && round % 8 == 1) s += '\x7f';  // an odd last character is no sample
    const int n = static_cast<int>(samples);
    const std::string where = "pulses " + std::to_string(round);
    calc.CalcDCAndPeaks(s, hiRes, 1.6f, 0);
    oldCalc.CalcDC(s, hiRes, 1.6f, 0);
    oldCalc.CalcPeaks(s, hiRes, 1.6f, 0);
    calc.CalcAC(s, hiRes, 1.6f);
    oldCalc.CalcAC(s, hiRes, 1.6f);
    calc.BuildLevelHistogram(s, hiRes, peak);
    oldCalc.BuildLevelHistogram(s, hiRes, peak);
    calc.FindRails(hiRes, n);
    oldCalc.FindRails(hiRes, n);
    expectSameCalc(calc, oldCalc, where);
    const RecordShape shape{hiRes, peak, format == Format::PeakOneChar};
    const reference::RecordShape oldShape{hiRes, peak, format == Format::PeakOneChar};
    for (int levelMode = 0; levelMode < 4; ++levelMode) {
      const bool level2080 = levelMode % 2 != 0;
      const int trigger =
          static_cast<int>(rng() % 320) - 30;  // past either end at times: a level never crossed
      timing.FindCrossings(s, shape, levelMode, trigger, calc);
      oldTiming.FindCrossings(s, oldShape, levelMode, trigger, oldCalc);
      timing.CalcPeriod(level2080, 1e-6f);
      oldTiming.CalcPeriod(level2080, 1e-6f);
      timing.CalcPulseWidth(level2080, 1e-6f);
      oldTiming.CalcPulseWidth(level2080, 1e-6f);
      timing.FindEdges(s, shape, level2080, calc);
      oldTiming.FindEdges(s, oldShape, level2080, oldCalc);
      expectSameTiming(timing, oldTiming, 1e-6f, where + " level " + std::to_string(levelMode));
    }
  }
}
