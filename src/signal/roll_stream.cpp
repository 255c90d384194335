#include "signal/roll_stream.h"

#include <algorithm>
#include <cmath>

#include "signal/header_value.h"

namespace zorvik {

namespace {
uint32_t scaled(uint32_t rgb, int brightness) {
  brightness = std::clamp(brightness, 0, 255);
  uint32_t r = (rgb >> 16) & 0xFF, g = (rgb >> 8) & 0xFF, b = rgb & 0xFF;
  return ((r * brightness / 255) << 16) | ((g * brightness / 255) << 8) | (b * brightness / 255);
}
int pairBrightness(int d) {
  return static_cast<int>(256 - 0.7 * d);
}
}  // namespace

void RollStream::rollevent(std::string_view chunk, int32_t total) {
  if (total > 0) {
    started_ = false;
    head_.clear();
    total_ = total;
    done_ = 0;
    host_.rollZoomOff();
  } else if (total_ <= 0) {
    return;  // a chunk with no packet announced: nothing to draw into
  }
  if (!started_) {
    // Bound the header buffer: a stream that never completes its header must not grow without end.
    head_.append(chunk.substr(0, std::min<size_t>(chunk.size(), 64)));
    if (head_.size() < 4) return;
    uint32_t h = readWord(head_, 0);
    segments_ = static_cast<int>(h / 16384) + 1;
    size_t header = 2 * static_cast<size_t>(segments_) + 2;
    if (head_.size() < header) return;
    PacketInfo info;
    info.master = h;
    info.segments = segments_;
    info.triggered = ((h / 256) & 0x30) != 0;
    info.hwRis = (h & 0x100) != 0;
    int64_t sum = 0;
    for (int n = 0; n < segments_; ++n) {
      words_[n] = readWord(head_, 2 + 2 * static_cast<size_t>(n));
      info.segmentWords[n] = words_[n];
      info.segmentWidths[n] = (words_[n] & 0x100) ? 2 : 1;
      sum += info.segmentWidths[n];
      lastOffset_[n] = sum - 1;
    }
    cycle_ = sum;
    host_.rollHeader(info);
    std::string rest = head_.substr(header);
    // What the header chunk carried beyond the bounded buffer follows it.
    std::string_view beyond = chunk.size() > 64 ? chunk.substr(64) : std::string_view{};
    total_ -= static_cast<int64_t>(header);
    count_ = total_ > 0 ? total_ / cycle_ : 0;
    host_.rollSampleCount(static_cast<int>(std::min<int64_t>(count_, INT32_MAX)));
    startGeometry();
    for (unsigned char c : rest) dataByte(c);
    for (unsigned char c : beyond) dataByte(c);
    return;
  }
  for (unsigned char c : chunk) dataByte(c);
}

void RollStream::startGeometry() {
  s_ = host_.rollSettings();
  mode_ = segmentMode(words_[0]);
  int64_t count = count_;
  ratio_ = 32.0 / std::max(1, s_.samplesPerDiv);
  if (mode_ == kModePeakPairsHalf) {
    ratio_ *= 2;
    count /= 2;
  }
  if (mode_ == kModePeakPairs || mode_ == kModePeakPairsHalf)
    count = count_ / (mode_ == kModePeakPairs ? 1 : 2);
  const double w = s_.plotWidth;
  if (ratio_ * static_cast<double>(count) >= w) {
    x0_ = 0;
    first_ = static_cast<int64_t>((ratio_ * static_cast<double>(count) - w) / 2 / ratio_);
    last_ = static_cast<int64_t>((ratio_ * static_cast<double>(count) + w) / 2 / ratio_) - 1;
  } else {
    x0_ = std::floor((w - ratio_ * static_cast<double>(count)) / 2);
    first_ = 0;
    last_ = count - 1;
  }
  pan_ = 128 - s_.vScrollFrac * (s_.vZoom - 1) * 256;
  started_ = true;
  index_ = 0;
  phase_ = false;
  havePrev_ = false;
  prevY_ = 0;
  canvas_.clear();
  host_.rollProgress(false);
}

int RollStream::scale8(int byte) const {
  if (s_.vZoom == 1) return byte;
  return static_cast<int>(std::clamp((byte - 128) * s_.vZoom + pan_, 0.0, 255.0));
}

void RollStream::dataByte(unsigned char byte) {
  if (done_ >= total_) return;  // past the announced total: consumed, not drawn
  int64_t slot = done_ % cycle_;
  int seg = 0;
  while (seg < segments_ - 1 && slot > lastOffset_[seg]) ++seg;
  ++done_;
  uint32_t mode = segmentMode(words_[seg]);
  if (seg == 0) {
    if (mode == kModeHiRes) {
      if (!phase_) {
        high_ = byte;
      } else {
        int code = high_ * 256 + byte;
        sample(static_cast<int>(std::clamp(((code - 0x8000) * s_.vZoom) / 256 + pan_, 0.0, 255.0)));
      }
      phase_ = !phase_;
    } else if (mode == kModePeakPairs || mode == kModePeakPairsHalf) {
      if (!phase_)
        high_ = byte;
      else
        pair(scale8(high_), scale8(byte));
      phase_ = !phase_;
    } else {
      sample(scale8(byte));
    }
  }
  if (done_ >= total_) host_.rollProgress(true);
}

void RollStream::sample(int y) {
  if (index_ == first_) {
    canvas_.moveTo(static_cast<int>(x0_), y);
    prevY_ = y;
  }
  if (index_ >= first_ && index_ <= last_) {
    double x = x0_ + static_cast<double>(index_ - first_) * ratio_;
    if (ratio_ <= 1) {
      // Only samples that land on a whole column, at the chosen step.
      int col = static_cast<int>(std::floor(x));
      int prevCol = static_cast<int>(std::floor(x - ratio_));
      if (col != prevCol && col % std::max(1, s_.step) == 0) RollPoint(col, y, true);
    } else {
      for (int i = 0; i < static_cast<int>(ratio_); ++i) {
        double f = i / ratio_;
        int yi = static_cast<int>(std::lround((1 - f) * prevY_ + f * y));
        if (i == 0) yi = prevY_;
        RollPoint(static_cast<int>(x) + i, i == 0 ? yi : yi, i == 0);
      }
      RollPoint(static_cast<int>(x + ratio_), y, false);
    }
  }
  ++index_;
}

void RollStream::RollPoint(int x, int y, bool withPoint) {
  if (s_.linePlot) {
    int brightness = s_.varBright ? static_cast<int>(255 - 30 * std::log(std::abs(y - prevY_) + 1.0)) : 255;
    if ((y + prevY_) % 510 == 0)
      canvas_.moveTo(x, y);
    else
      canvas_.lineTo(x, y, scaled(s_.lineRgb, brightness));
    prevY_ = y;
  }
  if (s_.psetPlot && withPoint && y % 255 > 0) {
    int width = s_.lineWidth + (s_.psetRgb == s_.lineRgb ? 1 : 0);
    canvas_.point(x, y, s_.psetRgb, width);
  }
}

void RollStream::pair(int lo, int hi) {
  if (index_ >= first_ && index_ <= last_) {
    double x = x0_ + static_cast<double>(index_ - first_) * ratio_;
    int reps = ratio_ > 1 ? static_cast<int>(ratio_) : 1;
    for (int i = 0; i < reps; ++i) RollPair(static_cast<int>(x) + i, lo, hi);
  }
  ++index_;
}

void RollStream::RollPair(int x, int lo, int hi) {
  if (lo > hi) std::swap(lo, hi);
  if (lo == hi) {
    if (lo % 255 > 0) canvas_.point(x, lo, s_.peakRgb, s_.lineWidth);
  } else {
    canvas_.line(x, lo, x, hi, scaled(s_.peakRgb, pairBrightness(hi - lo)));
  }
  // The joints to the previous column, as the peak plotter draws them.
  if (havePrev_) {
    if (lo > prevHi_)
      canvas_.line(x - 1, prevHi_, x, hi, scaled(s_.peakRgb, pairBrightness(std::abs(prevHi_ - hi))));
    else if (hi < prevLo_)
      canvas_.line(x - 1, prevLo_, x, lo, scaled(s_.peakRgb, pairBrightness(std::abs(lo - prevLo_))));
  }
  prevLo_ = lo;
  prevHi_ = hi;
  havePrev_ = true;
}

}  // namespace zorvik
