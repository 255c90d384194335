#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "signal/packet.h"

namespace zorvik {

// Colours in the platform's blue-green-red order.
constexpr uint32_t kColorWhite = 0xFFFFFF;
constexpr uint32_t kColorRed = 0x0000FF;

// The segment handed to the measurement pass, the spectrum and the histogram.
struct SegmentData {
  std::string_view bytes;
  bool isHiRes = false;
  bool isPeak = false;
  bool oneCharSample = true;
  int frameIntervalMs = 0;
};

// The stages a packet runs through after its header: the plotters and the readers of segment 1. Each
// stage fills the hooks it owns; the defaults do nothing.
class PacketStages {
 public:
  virtual ~PacketStages() = default;
  virtual bool selectRectVisible() const { return false; }
  // The time base follows a new sample count (centre time, displayed time base, time labels).
  virtual void sampleCountChanged(int /*sampleCount*/) {}
  virtual void SetModeLabel(uint32_t /*mode*/, bool /*multi*/, int /*n*/) {}
  virtual void PlotSamples(std::string_view /*segment*/, int /*n*/, bool /*allowDecimation*/,
                           bool /*twoBytes*/) {}
  virtual void PlotPeaks(std::string_view /*segment*/, int /*n*/, bool /*halfRatePairs*/) {}
  // Readers of segment 1, each only when somebody looks.
  virtual void measure(const SegmentData& /*segment*/) {}
  virtual void spectrum(const SegmentData& /*segment*/) {}
  virtual void stat(const SegmentData& /*segment*/) {}
  virtual void recordFrame(int /*frameIntervalMs*/) {}
  virtual void wallpaper() {}
};

// What the packet handler reads and moves around it: the clock, the indicators and the stages.
class PacketHost : public PacketStages {
 public:
  virtual uint32_t tickMs() = 0;

  // Indicators.
  virtual void showFrameRate(int /*fps*/) {}
  virtual void setModeTextColor(uint32_t /*bgr*/) {}
  virtual void setNoTriggerVisible(bool /*visible*/) {}
  virtual void setRisIndicator(bool /*visible*/, const std::string& /*caption*/) {}
  virtual std::string modeText() const { return {}; }
  virtual void setModeText(const std::string& /*text*/) {}
  virtual void showCurSamples(int /*count*/) {}

  // Settings and state read by the handler.
  virtual bool noTriggerMsgChecked() const { return true; }
  virtual bool risActive() const { return false; }
  virtual int averagesPeaks() const { return 0; }

  // An unknown mode: box "Unsupported sampling mode =  " + number, then the repeat is switched off.
  virtual void unsupportedMode(const std::string& /*text*/) {}
};

}  // namespace zorvik
