#include "measure/measurement_pass.h"

namespace zorvik {

bool MeasurementPass::isOpen(std::initializer_list<Meter> meters) const {
  return open.any(meters);
}

void MeasurementPass::measure(const SegmentData& segment) {
  run(segment, n_, inputs_());
  next().measure(segment);
}

void MeasurementPass::run(const SegmentData& segment, int n, const MeasureInputs& in) {
  ++passes_;
  last_ = {in, n, segment.isHiRes};
  using M = Meter;
  const bool timing = isOpen({M::FRH, M::PES, M::PWS, M::DCR});
  const bool edges = isOpen({M::RTS, M::FTS, M::POV, M::NOV});
  const std::string_view s = segment.bytes;
  const bool hiRes = segment.isHiRes;
  const bool dc = isOpen({M::DCV, M::ACV, M::ADV, M::VDB}) || in.autoLevel;
  const bool peaks =
      isOpen({M::PPV, M::PHV, M::PLV, M::POV, M::NOV}) || in.autoLevel || (timing && in.byLevel == 1);
  if (dc && peaks)
    calc_.CalcDCAndPeaks(s, hiRes, in.FullScaleVolts, in.ZeroVolts);
  else if (dc)
    calc_.CalcDC(s, hiRes, in.FullScaleVolts, in.ZeroVolts);
  else if (peaks)
    calc_.CalcPeaks(s, hiRes, in.FullScaleVolts, in.ZeroVolts);
  if (isOpen({M::ACV, M::ADV, M::VDB})) calc_.CalcAC(s, hiRes, in.FullScaleVolts);
  if (isOpen({M::TRV, M::BRV, M::RRV, M::ACR}) || edges || (timing && in.byLevel == 2)) {
    calc_.BuildLevelHistogram(s, hiRes, segment.isPeak);
    calc_.FindRails(hiRes, n);
  }
  const RecordShape shape{hiRes, segment.isPeak, segment.oneCharSample};
  if (timing) timing_.FindCrossings(s, shape, in.byLevel, in.triggerByte, calc_);
  if (isOpen({M::FRH, M::PES, M::DCR})) timing_.CalcPeriod(in.negativePolarity, in.SamplePeriod);
  if (isOpen({M::PWS, M::DCR})) timing_.CalcPulseWidth(in.negativePolarity, in.SamplePeriod);
  if (edges) timing_.FindEdges(s, shape, in.level2080, calc_);
  // A quarter of a division or less leaves the level where it is.
  if (in.autoLevel && in.FullScaleVolts / 32 < calc_.PeakToPeakVolts) onAutoLevel(calc_.MeanCode8);
  if (onMeasured) onMeasured(segment, n, in);
}

}  // namespace zorvik
