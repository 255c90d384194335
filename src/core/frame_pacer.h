#pragma once
#include <cstdint>

namespace zorvik {

// Paints a picture that changes faster than the screen can show at most once a frame of the screen.
// Every change is kept (the picture is made from the latest data when it is painted); only the paints
// between two frames are saved. A change after a quiet spell is painted at once.
class FramePacer {
 public:
  explicit FramePacer(double framesPerSecond = kDefaultRate);
  // The screen's refresh rate; none (0, negative or not a number) is taken as 60 a second.
  void setRate(double framesPerSecond);
  double rate() const { return 1000.0 / periodMs_; }

  // The picture changed at nowMs: the ms from now after which to paint it (0: now), or -1 when a paint
  // is already waiting for the end of the frame.
  int changed(int64_t nowMs);
  // The picture was painted at nowMs: a waiting paint is done.
  void painted(int64_t nowMs);

  bool waiting() const { return waiting_; }
  int64_t changes() const { return changes_; }
  int64_t paints() const { return paints_; }

  static constexpr double kDefaultRate = 60;

 private:
  double periodMs_ = 1000.0 / kDefaultRate;
  double lastPaintMs_ = 0;
  bool everPainted_ = false;
  bool waiting_ = false;
  int64_t changes_ = 0, paints_ = 0;
};

}  // namespace zorvik
