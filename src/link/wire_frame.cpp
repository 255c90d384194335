#include "link/wire_frame.h"

#include "core/fault.h"

namespace zorvik {

namespace {

uint32_t readLength(const char* p) {
  uint32_t v = 0;
  for (size_t i = 0; i < kFrameLengthBytes; ++i) v = v << 8 | static_cast<unsigned char>(p[i]);
  return v;
}

void checkLength(uint32_t length) {
  if (length == 0) throw Fault("device stream: a frame of length 0 (it must hold at least its type)");
  if (length > kMaxFrameBody)
    throw Fault("device stream: a frame of " + std::to_string(length) + " bytes, more than the " +
                std::to_string(kMaxFrameBody) + " allowed");
}

}  // namespace

void appendFrame(std::string& out, uint8_t type, std::string_view payload) {
  if (payload.size() >= kMaxFrameBody)
    throw Fault("device stream: a message of " + std::to_string(payload.size()) + " bytes is too long");
  const uint32_t length = static_cast<uint32_t>(payload.size() + 1);
  for (int shift = 24; shift >= 0; shift -= 8) out += static_cast<char>((length >> shift) & 0xFF);
  out += static_cast<char>(type);
  out.append(payload);
}

void FrameDecoder::feed(std::string_view bytes) {
  // Taken bytes are dropped only now and then, so that a stream of small frames costs no copying.
  if (start_ > 0 && (start_ >= buffer_.size() || start_ > (1u << 16))) {
    buffer_.erase(0, start_);
    start_ = 0;
  }
  buffer_.append(bytes);
}

bool FrameDecoder::next(WireFrame& frame) {
  const size_t available = buffer_.size() - start_;
  if (available < kFrameLengthBytes) return false;
  const uint32_t length = readLength(buffer_.data() + start_);
  checkLength(length);
  if (available - kFrameLengthBytes < length) return false;
  const size_t body = start_ + kFrameLengthBytes;
  frame.type = static_cast<uint8_t>(buffer_[body]);
  frame.payload.assign(buffer_, body + 1, length - 1);
  start_ = body + length;
  return true;
}

uint32_t FrameDecoder::expectedBytes() const {
  if (buffer_.size() - start_ < kFrameLengthBytes) return 0;
  return readLength(buffer_.data() + start_);
}

}  // namespace zorvik
