#include "stat/stat_stage.h"

namespace zorvik {

void StatStage::stat(const SegmentData& segment) {
  if (visible()) {
    const Scale s = scale_();
    engine_.BuildHistogram({segment.bytes, segment.isHiRes, segment.isPeak, segment.oneCharSample,
                            s.FullScaleVolts, s.ZeroVolts});
    haveData_ = true;
    onBuilt();
  }
  next().stat(segment);
}

}  // namespace zorvik
