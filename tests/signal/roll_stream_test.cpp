#include "signal/roll_stream.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace zorvik;

namespace {

struct Ops : RollCanvas {
  std::vector<std::string> ops;
  void clear() override { ops.push_back("clear"); }
  void moveTo(int x, int y) override { ops.push_back("m" + std::to_string(x) + "," + std::to_string(y)); }
  void lineTo(int x, int y, uint32_t c) override {
    ops.push_back("l" + std::to_string(x) + "," + std::to_string(y) + "#" + std::to_string(c));
  }
  void point(int x, int y, uint32_t, int) override {
    ops.push_back("p" + std::to_string(x) + "," + std::to_string(y));
  }
  void line(int x1, int y1, int x2, int y2, uint32_t) override {
    ops.push_back("L" + std::to_string(x1) + "," + std::to_string(y1) + "-" + std::to_string(x2) + "," +
                  std::to_string(y2));
  }
};

struct Host : RollHost {
  RollSettings settings;
  int count = -1, zoomOffs = 0;
  bool finished = false;
  RollSettings rollSettings() override { return settings; }
  void rollZoomOff() override { ++zoomOffs; }
  void rollSampleCount(int n) override { count = n; }
  void rollProgress(bool f) override { finished = f; }
};

std::string packet(uint16_t segWord, int samples) {
  std::string p = {char(0x10), char(0), char(segWord >> 8), char(segWord & 0xFF)};
  int bytes = (segWord & 0x100) ? 2 * samples : samples;
  for (int i = 0; i < bytes; ++i) p += static_cast<char>(60 + (i * 37) % 140);
  return p;
}

std::vector<std::string> play(const std::string& p, size_t chunk, Host& host) {
  Ops canvas;
  RollStream roll(host, canvas);
  for (size_t at = 0; at < p.size(); at += chunk)
    roll.rollevent(std::string_view(p).substr(at, chunk), at == 0 ? static_cast<int32_t>(p.size()) : 0);
  return canvas.ops;
}

}  // namespace

TEST(RollStream, ChunkingDoesNotChangeTheTrace) {
  for (uint16_t mode : {0x000, 0x100, 0x200, 0x300, 0x400}) {
    std::string p = packet(mode, 400);
    Host h1, h3, h7;
    auto whole = play(p, p.size(), h1);
    EXPECT_EQ(play(p, 3, h3), whole) << mode;  // the header split across chunks
    EXPECT_EQ(play(p, 7, h7), whole) << mode;
    EXPECT_GT(whole.size(), 10u);
    EXPECT_TRUE(h3.finished);
    EXPECT_EQ(h1.zoomOffs, 1);
  }
}

TEST(RollStream, CountsCentresAndIgnoresWhatDoesNotBelong) {
  Host host;
  host.settings.samplesPerDiv = 32;  // one pixel a sample
  Ops canvas;
  RollStream roll(host, canvas);
  roll.rollevent("abc", 0);  // no packet announced: nothing
  EXPECT_TRUE(canvas.ops.empty());
  std::string p = packet(0x400, 100);
  roll.rollevent(p.substr(0, 3), static_cast<int32_t>(p.size()));
  EXPECT_FALSE(roll.started());  // three bytes start nothing
  roll.rollevent(p.substr(3), 0);
  EXPECT_EQ(host.count, 100);
  EXPECT_EQ(canvas.ops[1], "m110," + std::to_string(static_cast<unsigned char>(p[4])));  // (320 - 100) / 2
  size_t drawn = canvas.ops.size();
  roll.rollevent("more bytes past the total", 0);  // consumed, not drawn
  EXPECT_EQ(canvas.ops.size(), drawn);
  EXPECT_EQ(roll.done(), roll.total());
}
