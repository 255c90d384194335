#include "signal/packet.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "signal/process_packet.h"

using namespace zorvik;

namespace {

std::string packet(uint16_t master, std::vector<uint16_t> words, size_t dataBytes, char fill = 100) {
  std::string p;
  p += static_cast<char>(master >> 8);
  p += static_cast<char>(master & 0xFF);
  for (uint16_t w : words) {
    p += static_cast<char>(w >> 8);
    p += static_cast<char>(w & 0xFF);
  }
  p.append(dataBytes, fill);
  return p;
}

struct Host : PacketHost {
  uint32_t now = 1000;
  uint32_t tickMs() override { return now; }
  void showFrameRate(int v) override { fps = v; }
  void setModeTextColor(uint32_t c) override { color = c; }
  void setNoTriggerVisible(bool v) override { noTrigger = v; }
  void setRisIndicator(bool v, const std::string& c) override { ris = v, risCaption = c; }
  std::string modeText() const override { return mode; }
  void setModeText(const std::string& t) override { mode = t; }
  void showCurSamples(int n) override { shown = n; }
  bool risActive() const override { return risOn; }
  bool selectRectVisible() const override { return select; }
  void PlotSamples(std::string_view s, int n, bool dec, bool two) override {
    plots.push_back("S" + std::to_string(n) + (dec ? "d" : "") + (two ? "2" : "") + ":" +
                    std::to_string(s.size()));
  }
  void PlotPeaks(std::string_view s, int n, bool half) override {
    plots.push_back("P" + std::to_string(n) + (half ? "h" : "") + ":" + std::to_string(s.size()));
  }
  void unsupportedMode(const std::string& t) override { errors.push_back(t); }
  void measure(const SegmentData& s) override { measured = s.bytes.size(); }

  int fps = -1, shown = -1;
  uint32_t color = 0;
  bool noTrigger = false, ris = false, risOn = false, select = false;
  std::string risCaption, mode = "Started";
  std::vector<std::string> plots, errors;
  size_t measured = 0;
};

}  // namespace

TEST(Packet, TriggeredSingleSegment) {
  Host h;
  PacketProcessor pp(h);
  PacketInfo info = pp.ProcessPacket(packet(0x1000, {0}, 330));
  EXPECT_EQ(info.segments, 1);
  EXPECT_TRUE(info.triggered);
  EXPECT_EQ(pp.SampleCount(), 330);
  EXPECT_EQ(h.shown, 330);
  EXPECT_EQ(h.color, kColorWhite);
  EXPECT_FALSE(h.noTrigger);
  EXPECT_FALSE(h.ris);
  EXPECT_EQ(h.plots, std::vector<std::string>{"S1d:330"});
  EXPECT_EQ(h.mode, "Stopped");  // the first packet of a run ends "Started"
  EXPECT_EQ(h.measured, 330u);
}

TEST(Packet, UntriggeredAndRisIndicators) {
  Host h;
  PacketProcessor pp(h);
  pp.ProcessPacket(packet(0x0000, {0x400}, 100));
  EXPECT_EQ(h.color, kColorRed);
  EXPECT_TRUE(h.noTrigger);
  EXPECT_EQ(h.plots.back(), "S1:100");  // still plotted
  EXPECT_FALSE(h.ris);
  pp.ProcessPacket(packet(0x0100, {0}, 100));
  EXPECT_TRUE(h.ris);
  EXPECT_EQ(h.risCaption, "RIS");
  h.risOn = true;
  pp.ProcessPacket(packet(0x0000, {0}, 100));
  EXPECT_TRUE(h.ris);
  EXPECT_EQ(h.risCaption, "PsRIS");
}

TEST(Packet, ModesDispatchAndCountByWidth) {
  Host h;
  PacketProcessor pp(h);
  pp.ProcessPacket(packet(0x1000, {0x100}, 101));  // odd length in 16-bit mode rounds down
  EXPECT_EQ(pp.SampleCount(), 50);
  EXPECT_EQ(h.plots.back(), "S1d2:101");
  pp.ProcessPacket(packet(0x1000, {0x200}, 64));
  EXPECT_EQ(pp.SampleCount(), 64);
  EXPECT_EQ(h.plots.back(), "P1h:64");
  pp.ProcessPacket(packet(0x1000, {0x300}, 64));
  EXPECT_EQ(pp.SampleCount(), 32);
  EXPECT_EQ(h.plots.back(), "P1:64");
  pp.ProcessPacket(packet(0x1000, {0x400}, 64));
  EXPECT_EQ(h.plots.back(), "S1:64");
}

TEST(Packet, MultiSegmentCountsBothWidthsAndPlotsNothing) {
  Host h;
  PacketProcessor pp(h);
  PacketInfo info = pp.ProcessPacket(packet(0x4000, {0x000, 0x100}, 300));
  EXPECT_EQ(pp.SegmentCount(), 2);
  EXPECT_EQ(info.sampleCount, 100);  // (306 - 6) / (1 + 2)
  EXPECT_EQ(h.plots, (std::vector<std::string>{"S1d:0", "S2d2:0"}));
  EXPECT_EQ(h.measured, 0u);
}

TEST(Packet, UnsupportedModeReportsAndGoesOn) {
  Host h;
  PacketProcessor pp(h);
  pp.ProcessPacket(packet(0x1000, {0x500}, 40));
  ASSERT_EQ(h.errors.size(), 1u);
  EXPECT_EQ(h.errors[0], "Unsupported sampling mode =   5");
  EXPECT_EQ(h.measured, 40u);  // the readers still run
}

TEST(Packet, ShortPacketChangesNothing) {
  Host h;
  PacketProcessor pp(h);
  PacketInfo info = pp.ProcessPacket(std::string(9, '\x10'));
  EXPECT_TRUE(info.ignored);
  EXPECT_EQ(h.fps, -1);
  EXPECT_EQ(h.color, 0u);
  EXPECT_EQ(h.mode, "Started");
  EXPECT_TRUE(h.plots.empty());
}

TEST(Packet, SelectionCutsTheMeasuredSegment) {
  Host h;
  h.select = true;
  PacketProcessor pp(h);
  pp.ProcessPacket(packet(0x1000, {0}, 300));
  EXPECT_EQ(h.measured, 50u);
  pp.ProcessPacket(packet(0x1000, {0}, 60));
  EXPECT_EQ(h.measured, 11u);  // what is left from position 50 on
}

TEST(Packet, FrameRateIsARunningMean) {
  Host h;
  PacketProcessor pp(h);
  for (int i = 0; i < 50; ++i) {
    h.now += 17;
    pp.ProcessPacket(packet(0x1000, {0}, 20));
  }
  EXPECT_NEAR(h.fps, 1000 / 20, 3);  // 17 ms apart plus the handler's 3 ms allowance
  h.now = 5;                         // tick wrapped
  pp.ProcessPacket(packet(0x1000, {0}, 20));
  EXPECT_GT(h.fps, 0);
}
