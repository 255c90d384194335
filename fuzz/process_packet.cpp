// Arbitrary bytes as an acquisition packet through the packet entry and a replay.
#include <cstddef>
#include <cstdint>
#include <string>

#include "signal/process_packet.h"

namespace {
struct Host : zorvik::PacketHost {
  uint32_t t = 0;
  uint32_t tickMs() override { return t += 7; }
  bool selectRectVisible() const override { return select; }
  bool select = false;
};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string packet(reinterpret_cast<const char*>(data), size);
  Host host;
  zorvik::PacketProcessor pp(host);
  pp.ProcessPacket(packet);
  host.select = true;
  pp.ProcessPacket(packet);
  return 0;
}
