#pragma once
#include <cstdint>
#include <string>

#include "signal/packet.h"
#include "signal/packet_host.h"

namespace zorvik {

// Vb-style number text: a blank or a minus sign, then the digits.
std::string numberText(long long value);

// The one entry of every packet, live or replayed: indicators, sample count, plot dispatch and the readers.
class PacketProcessor {
 public:
  explicit PacketProcessor(PacketHost& host) : host_(host) {}

  // Returns the decoded header (ignored for packets below 10 bytes, which change nothing).
  PacketInfo ProcessPacket(const std::string& packet);

  int SampleCount() const { return sampleCount_; }
  int SegmentCount() const { return segmentCount_; }
  int FrameMs() const { return frameMs_; }
  void resetSampleCount() { sampleCount_ = 0; }
  // A record that arrives as a roll stream announces its count ahead of its samples: the time base and
  // its labels follow at once.
  void setSampleCount(int count);

 private:
  void updateFrameRate();

  PacketHost& host_;
  int sampleCount_ = 0;
  int segmentCount_ = 0;
  bool ticked_ = false;
  int64_t lastTick_ = 0;
  int64_t frameMs_ = 0;
  int frameInterval_ = 0;
};

}  // namespace zorvik
