#pragma once
#include <array>
#include <cstdint>
#include <string_view>

namespace zorvik {

// Segment modes carried in bits 10..8 of a segment word.
constexpr uint32_t kModeAverage = 0x000;
constexpr uint32_t kModeHiRes = 0x100;
constexpr uint32_t kModePeakPairsHalf = 0x200;
constexpr uint32_t kModePeakPairs = 0x300;
constexpr uint32_t kModeSample = 0x400;

constexpr size_t kMinPacketLength = 10;
constexpr int kMaxSegments = 4;

// One acquisition packet taken apart: master word, segment words and the sample count.
struct PacketInfo {
  size_t length = 0;
  bool ignored = true;  // shorter than kMinPacketLength
  uint32_t master = 0;
  int segments = 0;
  bool triggered = false;
  bool hwRis = false;
  std::array<uint32_t, kMaxSegments> segmentWords{};
  std::array<int, kMaxSegments> segmentWidths{};
  int sampleCount = 0;
  // Segment 1 (only for one-segment packets; empty otherwise) and the flags every reader gets.
  std::string_view segment1;
  bool isHiRes = false;
  bool isPeak = false;
  bool oneCharSample = true;
};

inline uint32_t segmentMode(uint32_t word) {
  return word & 0x700;
}

// Decodes the header of a packet. Never reads past the end: a header cut short reads its missing words as 0.
PacketInfo decodePacket(std::string_view packet);

}  // namespace zorvik
