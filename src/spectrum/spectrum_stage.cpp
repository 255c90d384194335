#include "spectrum/spectrum_stage.h"

namespace zorvik {

void SpectrumStage::spectrum(const SegmentData& segment) {
  if (visible()) {
    samples_.assign(segment.bytes.data(), segment.bytes.size());
    const Scale s = scale_();
    input_ = {samples_, segment.isHiRes, segment.isPeak, segment.oneCharSample, s.SamplePeriod, s.FullScaleVolts,
              s.ZeroVolts};
    haveData_ = true;
    ++acqCount_;
    ComputeSpectrum();
  }
  next().spectrum(segment);
}

void SpectrumStage::ComputeSpectrum() {
  if (!haveData_) return;
  input_.samples = samples_;
  engine_.ComputeSpectrum(input_, settings);
  onComputed();
}

}  // namespace zorvik
