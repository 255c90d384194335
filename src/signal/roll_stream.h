#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "signal/packet.h"

namespace zorvik {

// Where the roll stream draws: rows 0 (bottom) to 255 (top), columns from 0.
class RollCanvas {
 public:
  virtual ~RollCanvas() = default;
  virtual void clear() {}
  virtual void moveTo(int /*x*/, int /*y*/) {}
  virtual void lineTo(int /*x*/, int /*y*/, uint32_t /*rgb*/) {}
  virtual void point(int /*x*/, int /*y*/, uint32_t /*rgb*/, int /*width*/) {}
  virtual void line(int /*x1*/, int /*y1*/, int /*x2*/, int /*y2*/, uint32_t /*rgb*/) {}
};

// The settings the stream reads when a packet starts.
struct RollSettings {
  int plotWidth = 320;
  int samplesPerDiv = 16;
  int step = 1;            // PlotSpeed1
  double vZoom = 1;        // ScrollVzoom1 factor
  double vScrollFrac = 0;  // Value / (Max - Min) of ScrollVzoom1
  bool linePlot = true;
  bool psetPlot = false;
  bool varBright = true;
  uint32_t lineRgb = 0x00FFFF;  // 0xRRGGBB, each channel full or zero
  uint32_t psetRgb = 0x00FFFF;
  uint32_t peakRgb = 0x00FFFF;
  int lineWidth = 1;
};

// What the stream tells the window: header, sample count, status texts.
class RollHost {
 public:
  virtual ~RollHost() = default;
  virtual RollSettings rollSettings() { return {}; }
  virtual void rollZoomOff() {}  // the horizontal zoom is switched off at the start of a roll
  virtual void rollHeader(const PacketInfo& /*header*/) {}
  virtual void rollSampleCount(int /*count*/) {}
  virtual void rollProgress(bool /*finished*/) {}
};

// The trace that grows while a slow acquisition streams in: each byte is drawn as it comes.
class RollStream {
 public:
  RollStream(RollHost& host, RollCanvas& canvas) : host_(host), canvas_(canvas) {}

  // One piece of the stream; total above 0 starts a new packet.
  void rollevent(std::string_view chunk, int32_t total);

  bool started() const { return started_; }
  int64_t done() const { return done_; }
  int64_t total() const { return total_; }

 private:
  void startGeometry();
  void dataByte(unsigned char byte);
  void sample(int y);
  void pair(int lo, int hi);
  void RollPoint(int x, int y, bool withPoint);
  void RollPair(int x, int lo, int hi);
  int scale8(int byte) const;

  RollHost& host_;
  RollCanvas& canvas_;
  RollSettings s_;
  bool started_ = false;
  std::string head_;
  int64_t total_ = 0;
  int64_t done_ = 0;
  int segments_ = 0;
  std::array<uint32_t, kMaxSegments> words_{};
  std::array<int64_t, kMaxSegments> lastOffset_{};
  int64_t cycle_ = 1;
  uint32_t mode_ = 0;
  double ratio_ = 1;
  int64_t count_ = 0;
  double x0_ = 0;
  int64_t first_ = 0, last_ = -1, index_ = 0;
  bool phase_ = false;
  int high_ = 0;
  int prevY_ = 0;
  int prevLo_ = 0, prevHi_ = 0;
  bool havePrev_ = false;
  double pan_ = 128;
};

}  // namespace zorvik
