#include "export/animation_recorder.h"

#include <gtest/gtest.h>

using namespace zorvik;

namespace {
struct Rig {
  AnimationRecorder r;
  std::vector<std::vector<AniGIF::Frame>> saved;
  int captured = 0;
  Rig() {
    r.capture = [this] {
      QImage image(4, 4, QImage::Format_RGB32);
      image.fill(qRgb(captured++, 0, 0));
      return image;
    };
    r.onComplete = [this](std::vector<AniGIF::Frame> f) { saved.push_back(std::move(f)); };
  }
};
}  // namespace

TEST(AnimationRecorder, FramesTimedByTheNextPacketUntilTheCount) {
  Rig rig;
  rig.r.recordFrame(10);  // not recording: nothing kept
  EXPECT_EQ(rig.captured, 0);
  EXPECT_EQ(rig.r.progressText(), "");
  rig.r.start(3);
  EXPECT_EQ(rig.r.progressText(), "Recording: 3 frames to come");
  rig.r.recordFrame(40);
  rig.r.recordFrame(50);
  EXPECT_EQ(rig.r.progressText(), "Recording: 1 frame to come");
  rig.r.recordFrame(60);
  EXPECT_EQ(rig.r.progressText(), "");
  EXPECT_FALSE(rig.r.recording());
  ASSERT_EQ(rig.saved.size(), 1u);
  ASSERT_EQ(rig.saved[0].size(), 3u);
  EXPECT_EQ(rig.saved[0][0].delayMs, 50);  // until the second packet
  EXPECT_EQ(rig.saved[0][1].delayMs, 60);
  EXPECT_EQ(rig.saved[0][2].delayMs, 0);
  EXPECT_EQ(qRed(rig.saved[0][2].picture.pixel(0, 0)), 2);
  rig.r.recordFrame(70);
  EXPECT_EQ(rig.captured, 3);
}

TEST(AnimationRecorder, RingModeRunsUntilStopped) {
  Rig rig;
  rig.r.ring = true;
  rig.r.start(2);
  for (int i = 0; i < 5; ++i) rig.r.recordFrame(20);
  EXPECT_TRUE(rig.r.recording());
  EXPECT_TRUE(rig.saved.empty());
  EXPECT_EQ(rig.r.frame(), 1);
  EXPECT_EQ(rig.r.progressText(), "Recording (ring): frame 2 of 2");
  rig.r.stop();  // the frames below the present index are saved
  ASSERT_EQ(rig.saved.size(), 1u);
  EXPECT_EQ(rig.saved[0].size(), 1u);
  EXPECT_EQ(qRed(rig.saved[0][0].picture.pixel(0, 0)), 4);  // the newest lap's first frame
  rig.r.stop();
  EXPECT_EQ(rig.saved.size(), 1u);
  rig.r.start(0);  // no frames asked for: no recording
  EXPECT_FALSE(rig.r.recording());
}
