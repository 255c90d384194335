#pragma once
#include <cstdint>
#include <string>

namespace zorvik {

// One meter's four texts and the values behind them: the present value, the minimum and maximum since
// the last reset, and a slow average that is a mean while younger than its time and a first-order
// filter after it. A status text stands in place of the value and leaves the rest untouched.
class MeterState {
 public:
  MeterState() { ResetMeter(); }  // the first value shows, whatever it is

  // nowMs: a monotonic millisecond count.
  void Ind(bool detail, const std::string& unit, float value, float resolution, const std::string& status,
           uint32_t nowMs);
  void IndF(const std::string& unit, float value, const std::string& picture, const std::string& status,
            uint32_t nowMs);
  void ResetMeter();
  void MinReset();
  void MaxReset();
  void AvgReset();

  bool stopped = false;  // StopKey down: the meter ignores everything
  int32_t AvgTimeMs = 1000;

  std::string CurVal, MinVal, MaxVal, AvgVal;
  float LastValue = 0, MinValue = 0, MaxValue = 0, AvgValue = 0;
  bool ForceShow = true;

 private:
  struct Clocks {
    uint32_t LastTick = 0, StartTick = 0;
  };
  // Steps 3 to 5 and 7, shared by both forms; returns false when nothing is to be shown.
  bool accept(float value, const std::string& status, Clocks& clocks, uint32_t nowMs, bool& curChanged,
              bool& minChanged, bool& maxChanged);

  bool AvgRestart = true;
  Clocks indClocks_, indFClocks_;  // each form keeps its own clocks
};

}  // namespace zorvik
