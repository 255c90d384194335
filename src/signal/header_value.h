#pragma once
#include <cstdint>
#include <optional>
#include <string_view>

namespace zorvik {

// Folds a big-endian byte string into a number: value = value * 256 + byte. Past 64 bits the fold
// saturates, which no target accepts, so an overlong value still leaves its target unchanged.
uint64_t foldBigEndian(std::string_view value);

// The width fitting of header values: nothing when the folded value does not fit the target.
std::optional<uint8_t> fitByte(std::string_view value);
std::optional<int16_t> fitSigned16(std::string_view value);
std::optional<int16_t> fitUnsigned16(std::string_view value);  // the "16-bit unsigned use": below 32768
std::optional<int32_t> fit32(std::string_view value);

// The general field reader of packets: 32-bit targets read unsigned 16-bit words as 0..65535.
uint32_t readWord(std::string_view bytes, size_t pos);  // pos 0-based, two bytes big-endian

}  // namespace zorvik
