#include "signal/header_value.h"

#include <limits>

namespace zorvik {

uint64_t foldBigEndian(std::string_view value) {
  uint64_t v = 0;
  for (unsigned char c : value) {
    if (v > (std::numeric_limits<uint64_t>::max() - c) / 256) return std::numeric_limits<uint64_t>::max();
    v = v * 256 + c;
  }
  return v;
}

std::optional<uint8_t> fitByte(std::string_view value) {
  uint64_t v = foldBigEndian(value);
  if (v < 256) return static_cast<uint8_t>(v);
  return std::nullopt;
}

std::optional<int16_t> fitSigned16(std::string_view value) {
  uint64_t v = foldBigEndian(value);
  if (v >= 65536) return std::nullopt;
  int32_t s = static_cast<int32_t>(v);
  if (s > 32767) s -= 65536;
  return static_cast<int16_t>(s);
}

std::optional<int16_t> fitUnsigned16(std::string_view value) {
  uint64_t v = foldBigEndian(value);
  if (v < 32768) return static_cast<int16_t>(v);
  return std::nullopt;
}

std::optional<int32_t> fit32(std::string_view value) {
  uint64_t v = foldBigEndian(value);
  if (v >= 4294967296ULL) return std::nullopt;
  int64_t s = static_cast<int64_t>(v);
  if (s >= 2147483648LL) s -= 4294967296LL;
  return static_cast<int32_t>(s);
}

uint32_t readWord(std::string_view bytes, size_t pos) {
  if (pos + 1 >= bytes.size()) return 0;
  return static_cast<uint32_t>(static_cast<unsigned char>(bytes[pos])) * 256u +
         static_cast<unsigned char>(bytes[pos + 1]);
}

}  // namespace zorvik
