#pragma once
// The amplitude and timing routines of the meters as they were written first, one plain loop each: the
// measurement tests compare the routines in use with them, bit for bit.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zorvik::reference {

// The amplitude quantities of a record: DC, peaks, AC and its level in dB, and the two rails a pulse
// signal spends its time on. Each routine makes one pass over the segment's characters and keeps its
// results until it runs again; a routine that leaves early keeps the earlier values.
//
// A byte record holds one code (0 to 255) a character; a hi-res record two characters a sample, high
// byte first (0 to 65535). A peak record holds the low and the high peak of each pair as two bytes.
class SigCalc {
 public:
  static constexpr int kGuard = 10;  // guard bins below and above each histogram
  static constexpr int kBins8 = 256, kBins12 = 4096;

  void CalcDC(std::string_view samples, bool IsHiRes, float FullScaleVolts, float ZeroVolts);
  void CalcPeaks(std::string_view samples, bool IsHiRes, float FullScaleVolts, float ZeroVolts);
  // Needs CalcDC's means and DCVolts.
  void CalcAC(std::string_view samples, bool IsHiRes, float FullScaleVolts);
  void BuildLevelHistogram(std::string_view samples, bool IsHiRes, bool IsPeak);
  // n: the samples of the segment, which sets the time a rail must hold.
  void FindRails(bool IsHiRes, int n);

  float BaseRailVoltage(bool IsHiRes, float FullScaleVolts, float ZeroVolts) const;
  float TopRailVoltage(bool IsHiRes, float FullScaleVolts, float ZeroVolts) const;
  float RailToRailVoltage(bool IsHiRes, float FullScaleVolts) const;
  // Fractions of the rail-to-rail distance; 0 when the rails are less than a code apart.
  float PositiveOvershoot(bool IsHiRes) const;
  float NegativeOvershoot(bool IsHiRes) const;

  // A bin of the histograms, guard bins included (-10 to 265, -10 to 4116).
  int32_t histogram8(int bin) const { return LevelHistogram8[static_cast<size_t>(bin + kGuard)]; }
  int32_t histogram12(int bin) const { return LevelHistogram12[static_cast<size_t>(bin + kGuard)]; }

  float DCVolts = 0;
  bool DCValid = false;
  int32_t MeanCode8 = 0, MeanCode16 = 0;
  float PeakHighVolts = 0, PeakLowVolts = 0, PeakToPeakVolts = 0;
  bool PeakHighValid = false, PeakLowValid = false;
  int32_t MinCode8 = 0, MaxCode8 = 0, MinCode16 = 0, MaxCode16 = 0;
  float ACVolts = 0, ACDCVolts = 0;
  bool HasAC = false;
  float LevelDBV = 0;
  int32_t BaseCode8 = 0, TopCode8 = 0, BaseCode16 = 0, TopCode16 = 0;
  int32_t BaseScore = 0, TopScore = 0;
  bool TopFound = false, BaseFound = false;

 private:
  // Counters wider than the 16 bits of old: a long record in one band counts on instead of overflowing.
  std::array<int32_t, kBins8 + 2 * kGuard> LevelHistogram8{};
  std::array<int32_t, 4127> LevelHistogram12{};  // -10 to 4116
};

}  // namespace zorvik::reference

namespace zorvik::reference {

class SigCalc;

// How a record is walked: one code a character, two characters a sample (hi-res), or peak pairs.
struct RecordShape {
  bool IsHiRes = false;
  bool IsPeak = false;
  bool OneCharSample = true;
};

// The timing half of the measurements: the crossings of one level give period and pulse width, and a
// second walk between two levels set from the rails gives the rise and fall times (in tenths of a
// sample, interpolated in byte records).
//
// The lists grow with the record: a long record has no limit of crossings or edges, where the design
// of old stopped at 2049 crossings and 513 edges.
class SigTiming {
 public:
  // levelMode: 0 screen centre, 1 peaks centre, 2 rails centre, 3 the trigger level (triggerByte).
  void FindCrossings(std::string_view samples, const RecordShape& shape, int levelMode, int triggerByte,
                     const SigCalc& calc);
  void CalcPeriod(bool negativePolarity, float SamplePeriod);
  void CalcPulseWidth(bool negativePolarity, float SamplePeriod);
  // Needs both rails found; level2080 picks 20 %-80 % instead of 10 %-90 %.
  void FindEdges(std::string_view samples, const RecordShape& shape, bool level2080, const SigCalc& calc);
  float RiseTime(float SamplePeriod) const;
  float FallTime(float SamplePeriod) const;

  const std::vector<int32_t>& riseList() const { return RiseList; }
  const std::vector<int32_t>& fallList() const { return FallList; }
  // The level of the last FindCrossings (on the doubled scale in byte and peak records).
  int32_t level() const { return level_; }

  int32_t PeriodCount = 0;
  float Period = 0;
  int32_t PulseCount = 0;
  float PulseWidth = 0;
  int32_t RiseCount = 0, FallCount = 0;

 private:
  std::vector<int32_t> RiseList, FallList;
  std::vector<int32_t> RiseStarts, RiseEnds, FallStarts, FallEnds;  // tenths of a sample; 0 is unset
  int32_t level_ = 0;
};

}  // namespace zorvik::reference
