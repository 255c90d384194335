#pragma once
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace zorvik {

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
  template <typename F>
  void walkCrossing(std::string_view s, const RecordShape& shape, bool pairSums,
                    std::initializer_list<int32_t> levels, F&& f);

  std::vector<int32_t> RiseList, FallList;
  std::vector<int32_t> RiseStarts, RiseEnds, FallStarts,
      FallEnds;  // the edges counted, in tenths of a sample
  int32_t level_ = 0;
  // The steps that cross a level, kept between records.
  std::vector<uint64_t> flags_;
};

}  // namespace zorvik
