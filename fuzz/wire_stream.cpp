// libFuzzer target: arbitrary bytes as the device stream, fed to the frame decoder in pieces whose
// sizes the input's first byte chooses; every whole frame is read as a message, which must either
// come out and encode back to the same bytes, or be refused with a Fault. The input is also read as
// a device address.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/fault.h"
#include "link/device_address.h"
#include "link/wire_frame.h"
#include "link/wire_message.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  try {
    const zorvik::DeviceAddress a = zorvik::parseDeviceAddress(input, true);
    if (zorvik::parseDeviceAddress(a.text(), true).text() != a.text()) __builtin_trap();
  } catch (const zorvik::Fault&) {
  }
  if (size == 0) return 0;
  const size_t piece = 1 + data[0] % 64;
  zorvik::FrameDecoder decoder;
  zorvik::WireFrame frame;
  try {
    for (size_t at = 1; at < size; at += piece) {
      decoder.feed(input.substr(at, piece));
      while (decoder.next(frame)) {
        try {
          const zorvik::WireMessage m = zorvik::decodeMessage(frame);
          const std::string again = zorvik::encodeMessage(m);
          if (static_cast<uint8_t>(again[4]) != frame.type ||
              std::string_view(again).substr(5) != frame.payload)
            __builtin_trap();
        } catch (const zorvik::Fault&) {
        }
      }
    }
  } catch (const zorvik::Fault&) {
  }
  if (decoder.partialBytes() > size) __builtin_trap();
  return 0;
}
