#pragma once
#include <functional>
#include <string>

#include "signal/stage_chain.h"
#include "spectrum/spectrum_engine.h"

namespace zorvik {

// The spectrum in the packet's stages: while its window is visible each acquisition's segment is
// transformed, and the window draws it. The segment is kept, so that a changed setting computes again.
class SpectrumStage : public ChainedStages {
 public:
  // The record's scale at the time of the packet.
  struct Scale {
    float SamplePeriod = 1e-6f, FullScaleVolts = 1.6f, ZeroVolts = 0;
  };
  explicit SpectrumStage(std::function<Scale()> scale) : scale_(std::move(scale)) {}

  std::function<bool()> visible = [] { return false; };
  std::function<void()> onComputed = [] {};
  SpectrumSettings settings;

  SpectrumEngine& engine() { return engine_; }
  const SpectrumEngine& engine() const { return engine_; }
  bool HaveData() const { return haveData_; }
  float samplePeriod() const { return input_.SamplePeriod; }
  int AcqCount() const { return acqCount_; }

  void spectrum(const SegmentData& segment) override;
  // The last acquisition again, after a setting that changes the computation.
  void ComputeSpectrum();

 private:
  std::function<Scale()> scale_;
  SpectrumEngine engine_;
  std::string samples_;
  SpectrumInput input_;
  bool haveData_ = false;
  int acqCount_ = 0;
};

}  // namespace zorvik
