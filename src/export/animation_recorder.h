#pragma once
#include <QImage>
#include <functional>
#include <string>
#include <vector>

#include "export/gif_writer.h"
#include "signal/stage_chain.h"

namespace zorvik {

// The animation recorder of the main window: after each packet is drawn it keeps the display's picture
// as a frame, each frame timed by the gap to the next packet, until the number asked for is reached (or,
// in ring mode, round and round until serial acquisition is stopped); then the frames go to be saved.
class AnimationRecorder : public ChainedStages {
 public:
  std::function<QImage()> capture = [] { return QImage(); };
  // The frames to save, oldest index first.
  std::function<void(std::vector<AniGIF::Frame>)> onComplete = [](std::vector<AniGIF::Frame>) {};
  bool ring = false;  // RingAnimatedGIF

  // A menu entry: AnimFrame back to 0 and recording when frames is above 0.
  void start(int frames);
  // Serial acquisition stopped while recording: the frames so far are saved.
  void stop();
  bool recording() const { return AnimRecording; }
  int frame() const { return AnimFrame; }
  // For the status bar: the frames still to come (ring mode: the lap's frame), empty when not recording.
  std::string progressText() const;

  void recordFrame(int frameIntervalMs) override;

 private:
  void complete(int lastIndex);

  bool AnimRecording = false;
  int AnimFrame = 0, AnimFrames = 0;
  std::vector<AniGIF::Frame> frames_;
};

}  // namespace zorvik
