#include "export/animation_recorder.h"

#include <algorithm>

namespace zorvik {

void AnimationRecorder::start(int frames) {
  AnimFrame = 0;
  AnimFrames = frames;
  AnimRecording = frames > 0;
  frames_.clear();
}

void AnimationRecorder::stop() {
  if (!AnimRecording) return;
  AnimRecording = false;
  complete(AnimFrame - 1);
}

void AnimationRecorder::recordFrame(int frameIntervalMs) {
  if (AnimRecording) {
    const size_t i = static_cast<size_t>(AnimFrame);
    if (i >= frames_.size()) frames_.resize(i + 1);
    // The frame before stands until this packet came.
    if (i > 0) frames_[i - 1].delayMs = frameIntervalMs;
    frames_[i].picture = capture();
    if (++AnimFrame >= AnimFrames) {
      if (ring) {
        AnimFrame = 0;
      } else {
        AnimRecording = false;
        complete(AnimFrames - 1);
      }
    }
  }
  next().recordFrame(frameIntervalMs);
}

std::string AnimationRecorder::progressText() const {
  if (!AnimRecording) return {};
  if (ring)
    return "Recording (ring): frame " + std::to_string(AnimFrame + 1) + " of " + std::to_string(AnimFrames);
  const int left = AnimFrames - AnimFrame;
  return "Recording: " + std::to_string(left) + (left == 1 ? " frame" : " frames") + " to come";
}

void AnimationRecorder::complete(int lastIndex) {
  if (lastIndex < 0) return;
  std::vector<AniGIF::Frame> out(frames_.begin(),
                                 frames_.begin() + std::min<ptrdiff_t>(lastIndex + 1, frames_.size()));
  frames_.clear();  // the holders above the first go
  onComplete(std::move(out));
}

}  // namespace zorvik
