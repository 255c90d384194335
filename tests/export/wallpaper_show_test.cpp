#include "export/wallpaper_show.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "core/fault.h"

using namespace zorvik;

namespace {

// The stage behind: counts the packets handed on.
struct Behind : ChainedStages {
  int packets = 0;
  void wallpaper() override {
    ++packets;
    next().wallpaper();
  }
};

struct Rig {
  WallpaperShow show;
  Behind behind;
  std::vector<int> written;  // the red of each written picture
  std::vector<int> waits;
  std::vector<std::string> faults;
  int captured = 0;
  Rig() {
    show.setNext(&behind);
    show.capture = [this] {
      QImage image(4, 4, QImage::Format_RGB32);
      image.fill(qRgb(++captured, 0, 0));
      return image;
    };
    show.write = [this](const QImage& image) { written.push_back(qRed(image.pixel(0, 0))); };
    show.wait = [this](int ms) { waits.push_back(ms); };
    show.onFault = [this](const std::string& text) { faults.push_back(text); };
  }
};

}  // namespace

TEST(WallpaperShow, WritesEachPacketOnlyWhileOnAndWaitsForTheDesktop) {
  Rig rig;
  rig.show.wallpaper();
  EXPECT_EQ(rig.captured, 0);  // off: not even captured
  rig.show.setOn(true);
  rig.show.wallpaper();
  rig.show.wallpaper();
  EXPECT_EQ(rig.written, (std::vector<int>{1, 2}));
  EXPECT_EQ(rig.waits, (std::vector<int>{100, 300, 100, 300}));
  rig.show.setOn(false);
  rig.show.wallpaper();
  EXPECT_EQ(rig.written.size(), 2u);
  EXPECT_EQ(rig.behind.packets, 4);  // every packet goes on, on or off
}

TEST(WallpaperShow, APacketInsideTheWaitIsNotWrittenAgain) {
  Rig rig;
  rig.show.setOn(true);
  int nested = 0;
  rig.show.wait = [&](int ms) {
    rig.waits.push_back(ms);
    if (nested++ == 0) rig.show.wallpaper();  // the event loop runs the next packet
  };
  rig.show.wallpaper();
  EXPECT_EQ(rig.written, (std::vector<int>{1}));
  EXPECT_EQ(rig.waits, (std::vector<int>{100, 300}));
  EXPECT_EQ(rig.behind.packets, 2);
  rig.show.wallpaper();  // after the waits the next one is written again
  EXPECT_EQ(rig.written, (std::vector<int>{1, 2}));
}

TEST(WallpaperShow, AFailedWriteSwitchesTheModeOffWithOneReport) {
  Rig rig;
  rig.show.setOn(true);
  rig.show.write = [](const QImage&) { throw Fault("Cannot write wallpaper.bmp"); };
  rig.show.wallpaper();
  rig.show.wallpaper();
  EXPECT_FALSE(rig.show.on());
  EXPECT_EQ(rig.faults, (std::vector<std::string>{"Cannot write wallpaper.bmp"}));
  EXPECT_TRUE(rig.waits.empty());
  EXPECT_EQ(rig.behind.packets, 2);
  rig.show.setOn(true);  // switched on again it tries again
  rig.show.wallpaper();
  EXPECT_EQ(rig.faults.size(), 2u);
}

TEST(WallpaperShow, GoesBehindTheLastStageOfTheChainOnce) {
  Behind last;
  ChainedStages first(&last);
  Rig rig;
  rig.show.setNext(nullptr);
  rig.show.setOn(true);
  rig.show.appendTo(first);
  rig.show.appendTo(first);
  first.wallpaper();
  EXPECT_EQ(last.packets, 1);
  EXPECT_EQ(rig.written.size(), 1u);
  EXPECT_EQ(&last.next(), &rig.show);
  EXPECT_FALSE(dynamic_cast<ChainedStages*>(&rig.show.next()));  // the end of the chain
}
