#include "core/frame_pacer.h"

#include <algorithm>
#include <cmath>

namespace zorvik {

FramePacer::FramePacer(double framesPerSecond) {
  setRate(framesPerSecond);
}

void FramePacer::setRate(double framesPerSecond) {
  // Some screens (a virtual one) report no rate, or a nonsense one.
  if (!(framesPerSecond >= 1 && framesPerSecond <= 1000)) framesPerSecond = kDefaultRate;
  periodMs_ = 1000.0 / framesPerSecond;
}

int FramePacer::changed(int64_t nowMs) {
  ++changes_;
  if (waiting_) return -1;
  const double now = static_cast<double>(nowMs);
  const double due = lastPaintMs_ + periodMs_;
  // A clock that went back (or a first change) paints at once.
  if (!everPainted_ || now >= due || now < lastPaintMs_) return 0;
  waiting_ = true;
  return std::max(1, static_cast<int>(std::ceil(due - now)));
}

void FramePacer::painted(int64_t nowMs) {
  ++paints_;
  waiting_ = false;
  everPainted_ = true;
  lastPaintMs_ = static_cast<double>(nowMs);
}

}  // namespace zorvik
