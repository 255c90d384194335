#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace zorvik {

// The binary packet file: "zorvik", ExtraLength, the extra block (first byte SamplesPerDiv), the packet.
struct ZrvContents {
  std::string packet;
  std::optional<int> samplesPerDiv;  // absent when ExtraLength is 0 (the current value stays)
};

constexpr std::string_view kZrvMagic = "zorvik";
// The largest packet the instrument sends: 65535 samples (QS travels in two bytes) of two bytes each,
// behind the master word and one segment word.
constexpr size_t kMaxPacketBytes = 4 + 65535 * 2;
// A packet or zrv file: the largest packet behind the magic, ExtraLength and an extra block of at most
// 255 bytes. Anything longer holds no packet of this instrument.
constexpr size_t kZrvMaxBytes = 6 + 1 + 255 + kMaxPacketBytes;

// Compared with case: "Zorvik" is not the magic.
bool hasZrvMagic(std::string_view bytes);
// Nothing when the bytes do not start with the magic. Any ExtraLength is taken from the file; an extra
// block that runs past the end leaves an empty packet, and without its first byte no SamplesPerDiv.
std::optional<ZrvContents> parseZrv(std::string_view bytes);
// The layout this program writes: ExtraLength 1, then SamplesPerDiv. Fault when SamplesPerDiv does not
// fit its byte.
std::string makeZrv(std::string_view packet, int samplesPerDiv);

}  // namespace zorvik
