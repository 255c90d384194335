#include "sim/delivery_plan.h"

#include <algorithm>
#include <cmath>

namespace zorvik {

namespace {

constexpr size_t kHeaderBytes = 4;  // master word and one segment word

// The smallest whole piece of sample data: bytes, and the sample positions they fill.
struct Unit {
  size_t bytes;
  size_t samples;
};

Unit unitOf(uint8_t mode) {
  if (mode == 1 || mode == 3) return {2, 1};  // 16-bit sample, or a pair per position
  if (mode == 2) return {2, 2};               // a pair per two positions
  return {1, 1};
}

}  // namespace

void DeliveryPlan::make(const AcquisitionSetup& setup, const RecordPlacement& place, double now,
                        size_t packetBytes, bool parallel) {
  items_.clear();
  const double done = std::max(0.0, place.end - now);
  streamed_ = parallel && place.hasData && setup.rolls() && packetBytes > kHeaderBytes;
  if (!streamed_) {
    items_.push_back({done, 0, packetBytes, false});
    return;
  }
  const double dt = setup.samplePeriod();
  const Unit unit = unitOf(setup.mode());
  const size_t units = (packetBytes - kHeaderBytes) / unit.bytes;
  const double unitSeconds = static_cast<double>(unit.samples) * dt;
  const size_t perPiece = static_cast<size_t>(std::clamp(std::floor(kPieceSeconds / unitSeconds), 1.0,
                                                         static_cast<double>(std::max<size_t>(units, 1))));
  double last = 0;
  for (size_t u = 0; u == 0 || u < units; u += perPiece) {
    const size_t next = std::min(units, u + perPiece);
    // Samples before the trigger are in memory, but only the trigger tells which belong.
    const double taken = place.start + static_cast<double>(next) * unitSeconds;
    last = std::max(0.0, std::max(place.decided, taken) - now);
    items_.push_back({last, u == 0 ? 0 : kHeaderBytes + u * unit.bytes,
                      next == units ? packetBytes : kHeaderBytes + next * unit.bytes, true});
  }
  items_.push_back({std::max(done, last), 0, packetBytes, false});
}

}  // namespace zorvik
