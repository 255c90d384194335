#pragma once
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <set>

#include "measure/sig_calc.h"
#include "measure/sig_timing.h"
#include "signal/stage_chain.h"

namespace zorvik {

class SettingsStore;

// The nineteen meters by their index in the Meters menu.
enum class Meter {
  DCV = 0,
  PHV = 6,
  PLV = 7,
  PPV = 8,
  ACV = 11,
  ADV = 12,
  VDB = 13,
  FRH = 16,
  PES = 17,
  PWS = 18,
  DCR = 19,
  TRV = 26,
  BRV = 27,
  RRV = 28,
  ACR = 29,
  RTS = 31,
  FTS = 32,
  POV = 33,
  NOV = 34
};

// The meters whose windows are open: one bit a meter, so that the pass asks without a lookup.
class MeterSet {
 public:
  MeterSet() = default;
  MeterSet(std::initializer_list<Meter> meters) {
    for (Meter m : meters) insert(m);
  }
  MeterSet(const std::set<Meter>& meters) {  // NOLINT: a set of meters stands for this one
    for (Meter m : meters) insert(m);
  }
  void insert(Meter m) { bits_ |= bit(m); }
  void erase(Meter m) { bits_ &= ~bit(m); }
  void clear() { bits_ = 0; }
  size_t count(Meter m) const { return (bits_ & bit(m)) ? 1 : 0; }
  bool contains(Meter m) const { return (bits_ & bit(m)) != 0; }
  bool empty() const { return bits_ == 0; }
  // True when any of the meters is open.
  bool any(std::initializer_list<Meter> meters) const {
    uint64_t want = 0;
    for (Meter m : meters) want |= bit(m);
    return (bits_ & want) != 0;
  }

 private:
  static uint64_t bit(Meter m) { return uint64_t{1} << static_cast<unsigned>(m); }
  uint64_t bits_ = 0;
};

// What the pass reads beside the segment: the record's scale, the trigger panel's auto level and level,
// and the choices of the timing meters.
struct MeasureInputs {
  float FullScaleVolts = 1.6f;
  float ZeroVolts = 0;
  float SamplePeriod = 1e-6f;
  bool autoLevel = false;         // AutoTrig1
  int triggerByte = 127;          // ScrollTrigCH1
  int byLevel = 0;                // meas.level by: screen, peaks, rails centre, trigger level
  bool negativePolarity = false;  // periods and pulses from the falls
  bool level2080 = false;         // rise and fall between 20 % and 80 % instead of 10 % and 90 %
};

// The choices of the timing meters, kept with the meters' settings.
struct MeasureOptions {
  int byLevel = 2;  // meas.level by: screen, peaks, rails centre, trigger level
  bool negativePolarity = false;
  bool level2080 = false;
  void fill(MeasureInputs& in) const {
    in.byLevel = byLevel;
    in.negativePolarity = negativePolarity;
    in.level2080 = level2080;
  }
};
MeasureOptions loadMeasureOptions(SettingsStore& settings);
void saveMeasureOptions(SettingsStore& settings, const MeasureOptions& options);

// The measurement pass after each packet is drawn: the amplitude and timing routines that an open meter
// (or the auto level) needs, then the auto level. It stands in the packet's stage chain behind the display.
class MeasurementPass : public ChainedStages {
 public:
  explicit MeasurementPass(std::function<MeasureInputs()> inputs) : inputs_(std::move(inputs)) {}

  MeasureOptions options;
  // Meters whose windows are open.
  MeterSet open;
  // The auto level moves the trigger level to the record's mean code.
  std::function<void(int level)> onAutoLevel = [](int) {};
  // The pass is done: the open meters take their readings.
  std::function<void(const SegmentData&, int n, const MeasureInputs&)> onMeasured;
  // While the display's selection stands the pass reads a fixed cut of the record.
  std::function<bool()> selectionVisible = [] { return false; };

  const SigCalc& calc() const { return calc_; }
  const SigTiming& timing() const { return timing_; }
  int passes() const { return passes_; }
  // What the last pass read beside the segment: for readings taken after it.
  struct LastPass {
    MeasureInputs in;
    int n = 0;
    bool isHiRes = false;
  };
  const LastPass& lastPass() const { return last_; }

  bool selectRectVisible() const override { return selectionVisible() || next().selectRectVisible(); }
  void sampleCountChanged(int n) override {
    n_ = n;
    next().sampleCountChanged(n);
  }
  void measure(const SegmentData& segment) override;

  // One pass over a segment of n samples.
  void run(const SegmentData& segment, int n, const MeasureInputs& in);

 private:
  bool isOpen(std::initializer_list<Meter> meters) const;

  std::function<MeasureInputs()> inputs_;
  SigCalc calc_;
  SigTiming timing_;
  int n_ = 0;
  int passes_ = 0;
  LastPass last_;
};

}  // namespace zorvik
