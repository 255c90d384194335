#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace zorvik {

// The binary packet file: "zorvik", ExtraLength, the extra block (first byte SamplesPerDiv), the packet.
struct ZrvContents {
  std::string packet;
  std::optional<int> samplesPerDiv;  // absent when ExtraLength is 0
};

constexpr std::string_view kZrvMagic = "zorvik";

bool hasZrvMagic(std::string_view bytes);
// Nothing when the bytes do not start with the magic. An extra block that runs past the end leaves an
// empty packet.
std::optional<ZrvContents> parseZrv(std::string_view bytes);
std::string makeZrv(std::string_view packet, int samplesPerDiv);

}  // namespace zorvik
