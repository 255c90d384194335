#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zorvik {

// The frame of the device stream: a 4-byte big-endian length, then that many bytes, of which the
// first is the message type and the rest its payload. Nothing here touches a socket, so the decoder
// can be fed any bytes (and is fuzzed so).
struct WireFrame {
  uint8_t type = 0;
  std::string payload;
};

// The longest frame body (type byte and payload) either end accepts: room for the longest packet of
// the largest memory, with a wide margin, yet small enough that a wrong length is caught at once.
inline constexpr uint32_t kMaxFrameBody = 1u << 20;
inline constexpr size_t kFrameLengthBytes = 4;

// Appends one frame to `out`. Throws Fault when the payload is too long for a frame.
void appendFrame(std::string& out, uint8_t type, std::string_view payload);

// Cuts a byte stream into frames, however the bytes were split or joined on the way. A length of 0
// or above kMaxFrameBody throws Fault as soon as the length is read; after that the decoder is spent.
class FrameDecoder {
 public:
  void feed(std::string_view bytes);
  // The next whole frame, if one is in; throws Fault for a bad length.
  bool next(WireFrame& frame);
  // Bytes of a frame begun but not yet whole (what a close at this moment would cut off).
  size_t partialBytes() const { return buffer_.size() - start_; }
  // The length of the frame under way, 0 when none has begun or its length is not in yet.
  uint32_t expectedBytes() const;

 private:
  std::string buffer_;
  size_t start_ = 0;  // bytes before this are taken
};

}  // namespace zorvik
