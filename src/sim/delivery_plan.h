#pragma once
#include <cstddef>
#include <vector>

#include "sim/acquisition_setup.h"
#include "sim/record_placement.h"

namespace zorvik {

// What the device sends for one acquisition, and when, counted from the moment it armed. A long
// record with RS bit 1 under parallel transfer streams: the packet in pieces as their samples are
// taken (the first carries the header), then the whole packet as "D". Anything else is only the
// "D", sent when the acquisition is over.
class DeliveryPlan {
 public:
  struct Item {
    double due = 0;    // seconds after arming
    size_t begin = 0;  // the bytes of the packet it carries
    size_t end = 0;
    bool roll = false;  // a piece of the stream; false: the packet as "D"
  };

  void make(const AcquisitionSetup& setup, const RecordPlacement& place, double now, size_t packetBytes,
            bool parallel);

  const std::vector<Item>& items() const { return items_; }
  bool streamed() const { return streamed_; }

  // Record time in one piece of the stream.
  static constexpr double kPieceSeconds = 0.025;

 private:
  std::vector<Item> items_;
  bool streamed_ = false;
};

}  // namespace zorvik
