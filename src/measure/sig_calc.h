#pragma once
#include <array>
#include <cstdint>
#include <string_view>

namespace zorvik {

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
  // CalcDC and CalcPeaks in one pass over the record.
  void CalcDCAndPeaks(std::string_view samples, bool IsHiRes, float FullScaleVolts, float ZeroVolts);
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
  void takeDC(int64_t sum, bool clipped, size_t chars, bool IsHiRes, float FullScaleVolts, float ZeroVolts);
  void takePeaks(int32_t lo, int32_t hi, bool IsHiRes, float FullScaleVolts, float ZeroVolts);
  // The lowest and highest bin a histogram counts in (none: hi below lo); the others hold 0.
  struct Occupied {
    int lo = 0, hi = -1;
  };
  static void clearOccupied(int32_t* histogram, Occupied& occupied);
  void findRailsWide(bool IsHiRes, int n);
  void takeRails(int rail1, int rail2, int64_t score1, int64_t score2, bool IsHiRes, int n);
  // Twelve times the counts of a histogram fit the 32 bits of the running sums below this.
  static constexpr size_t kMaxCounted32 = 100000000;

  // Counters wider than the 16 bits of old: a long record in one band counts on instead of overflowing.
  std::array<int32_t, kBins8 + 2 * kGuard> LevelHistogram8{};
  std::array<int32_t, 4127> LevelHistogram12{};  // -10 to 4116
  Occupied occupied8_, occupied12_;
  size_t counted_ = 0;  // an upper bound of the counts in the histograms
  // FindRails' running sums and the scores of the bins it weighs.
  std::array<int32_t, 4127 + 1> sums_{};
  std::array<int32_t, 4096> scores_{};
  static constexpr int kRailBlock = 64;
  std::array<int32_t, 4096 / kRailBlock> blockHighest_{};
};

}  // namespace zorvik
