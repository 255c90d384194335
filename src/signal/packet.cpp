#include "signal/packet.h"

#include "signal/header_value.h"

namespace zorvik {

PacketInfo decodePacket(std::string_view packet) {
  PacketInfo info;
  info.length = packet.size();
  if (packet.size() < kMinPacketLength) return info;
  info.ignored = false;
  info.master = readWord(packet, 0);
  info.segments = static_cast<int>(info.master / 16384) + 1;
  info.triggered = ((info.master / 256) & 0x30) != 0;
  info.hwRis = (info.master & 0x100) != 0;
  int widthSum = 0;
  for (int n = 0; n < info.segments; ++n) {
    info.segmentWords[n] = readWord(packet, 2 + 2 * static_cast<size_t>(n));
    info.segmentWidths[n] = (info.segmentWords[n] & 0x100) ? 2 : 1;
    widthSum += info.segmentWidths[n];
  }
  size_t header = 2 * static_cast<size_t>(info.segments) + 2;
  info.sampleCount = packet.size() > header ? static_cast<int>((packet.size() - header) / widthSum) : 0;
  if (info.segments == 1) info.segment1 = packet.substr(4);
  uint32_t s1 = info.segmentWords[0];
  info.isHiRes = segmentMode(s1) == kModeHiRes;
  info.isPeak = (s1 & 0x200) != 0;
  info.oneCharSample = (s1 & 0x100) == 0;
  return info;
}

}  // namespace zorvik
