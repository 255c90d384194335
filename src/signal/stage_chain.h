#pragma once
#include "signal/packet_host.h"

namespace zorvik {

// A stage that hands every hook on to the next one; a stage derives from it and takes the hooks it owns,
// so the display, the meters and the windows that read a packet line up one behind the other.
class ChainedStages : public PacketStages {
 public:
  explicit ChainedStages(PacketStages* next = nullptr) { setNext(next); }
  void setNext(PacketStages* next) { next_ = next ? next : &end_; }
  PacketStages& next() const { return *next_; }

  bool selectRectVisible() const override { return next_->selectRectVisible(); }
  void sampleCountChanged(int n) override { next_->sampleCountChanged(n); }
  void SetModeLabel(uint32_t mode, bool multi, int n) override { next_->SetModeLabel(mode, multi, n); }
  void PlotSamples(std::string_view s, int n, bool dec, bool two) override {
    next_->PlotSamples(s, n, dec, two);
  }
  void PlotPeaks(std::string_view s, int n, bool half) override { next_->PlotPeaks(s, n, half); }
  void measure(const SegmentData& s) override { next_->measure(s); }
  void spectrum(const SegmentData& s) override { next_->spectrum(s); }
  void stat(const SegmentData& s) override { next_->stat(s); }
  void recordFrame(int ms) override { next_->recordFrame(ms); }
  void wallpaper() override { next_->wallpaper(); }

 private:
  PacketStages end_;
  PacketStages* next_ = &end_;
};

}  // namespace zorvik
