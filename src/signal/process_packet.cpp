#include "signal/process_packet.h"

namespace zorvik {

std::string numberText(long long value) {
  return (value < 0 ? "-" : " ") + std::to_string(value < 0 ? -value : value);
}

void PacketProcessor::updateFrameRate() {
  int64_t t = host_.tickMs() & 0xFFFFFF;
  int64_t d = t + 3 - lastTick_;
  lastTick_ = t;
  // The 24-bit tick wraps every 4.6 hours; an interval that comes out non-positive then counts as 1 ms
  // instead of dividing by zero.
  if (d < 1) d = 1;
  frameInterval_ = static_cast<int>(d);
  if (!ticked_) {
    // The first packet has no interval before it: the mean starts with the second one, from its own
    // interval, instead of from the tick count, which would take hundreds of packets to settle.
    ticked_ = true;
    return;
  }
  int64_t k = 300 / d;
  frameMs_ = frameMs_ == 0 ? d : (k * frameMs_ + d) / (k + 1);
  if (frameMs_ > 0) host_.showFrameRate(static_cast<int>(1000 / frameMs_));
}

PacketInfo PacketProcessor::ProcessPacket(const std::string& packet) {
  PacketInfo info = decodePacket(packet);
  if (info.ignored) return info;
  updateFrameRate();

  segmentCount_ = info.segments;
  host_.setModeTextColor(info.triggered ? kColorWhite : kColorRed);
  host_.setNoTriggerVisible(host_.noTriggerMsgChecked() && !info.triggered);
  host_.setRisIndicator(info.hwRis || host_.risActive(), info.hwRis ? "RIS" : "PsRIS");

  if (info.sampleCount != sampleCount_) {
    sampleCount_ = info.sampleCount;
    host_.showCurSamples(sampleCount_);
    host_.sampleCountChanged(sampleCount_);
  }

  for (int n = 1; n <= info.segments; ++n) {
    uint32_t word = info.segmentWords[n - 1];
    bool multi = host_.averagesPeaks() != 0 && info.triggered;
    uint32_t mode = segmentMode(word);
    host_.SetModeLabel(mode, multi, n);
    // Only a one-segment packet carries its samples to the plotters; the others plot nothing.
    std::string_view seg = n == 1 ? info.segment1 : std::string_view{};
    switch (mode) {
      case kModeAverage:
        host_.PlotSamples(seg, n, true, false);
        break;
      case kModeHiRes:
        host_.PlotSamples(seg, n, true, true);
        break;
      case kModePeakPairsHalf:
        host_.PlotPeaks(seg, n, true);
        break;
      case kModePeakPairs:
        host_.PlotPeaks(seg, n, false);
        break;
      case kModeSample:
        host_.PlotSamples(seg, n, false, false);
        break;
      default:
        host_.unsupportedMode("Unsupported sampling mode =  " + numberText(word / 256));
        break;
    }
  }
  if (host_.modeText() == "Started") host_.setModeText("Stopped");

  SegmentData seg{info.segment1, info.isHiRes, info.isPeak, info.oneCharSample, frameInterval_};
  // With the selection rectangle up the readers see a fixed cut of the record, whatever it covers.
  if (host_.selectRectVisible())
    seg.bytes = seg.bytes.size() > 49 ? seg.bytes.substr(49, 50) : std::string_view{};
  host_.measure(seg);
  host_.spectrum(seg);
  host_.stat(seg);
  host_.recordFrame(frameInterval_);
  host_.wallpaper();
  return info;
}

void PacketProcessor::setSampleCount(int count) {
  sampleCount_ = count;
  host_.showCurSamples(count);
  host_.sampleCountChanged(count);
}

}  // namespace zorvik
