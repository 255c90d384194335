#pragma once
#include <functional>
#include <string>

#include "signal/stage_chain.h"
#include "stat/histogram.h"

namespace zorvik {

// The histogram in the packet's stages, behind the spectrum: while its window is visible each
// acquisition's segment is counted and the window draws it.
class StatStage : public ChainedStages {
 public:
  struct Scale {
    float FullScaleVolts = 1.6f, ZeroVolts = 0;
  };
  explicit StatStage(std::function<Scale()> scale) : scale_(std::move(scale)) {}

  std::function<bool()> visible = [] { return false; };
  std::function<void()> onBuilt = [] {};

  HistogramEngine& engine() { return engine_; }
  const HistogramEngine& engine() const { return engine_; }
  bool HaveData() const { return haveData_; }

  void stat(const SegmentData& segment) override;

 private:
  std::function<Scale()> scale_;
  HistogramEngine engine_;
  bool haveData_ = false;
};

}  // namespace zorvik
