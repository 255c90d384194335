#pragma once
#include "link/class_obex.h"

namespace zorvik {

// Holds a running serial acquisition while a modal dialog stands, so that no packet replaces LastPacket
// meanwhile; lets it go on when released or destroyed (also when the command ends in a fault).
class AcquisitionHold {
 public:
  explicit AcquisitionHold(ClassOBEX* link) : link_(link) {
    bool active = false;
    if (link_) link_->GetSerialActive(active);
    held_ = active;
    if (held_) link_->StopRepeat(false);
  }
  ~AcquisitionHold() { release(); }
  AcquisitionHold(const AcquisitionHold&) = delete;
  AcquisitionHold& operator=(const AcquisitionHold&) = delete;

  void release() {
    if (held_) link_->StopRepeat(true);
    held_ = false;
  }
  // The acquisition stays stopped: the user starts it again.
  void keepStopped() { held_ = false; }

 private:
  ClassOBEX* link_;
  bool held_ = false;
};

}  // namespace zorvik
