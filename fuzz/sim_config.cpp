// libFuzzer target: the first line as a --sim option text; if it parses, the rest as register
// writes (a name index byte and four value bytes each) into the simulated device, then one packet
// in every mode and its delivery under parallel transfer. A bad option may only end in a Fault; a
// packet must come out whatever was written, and its delivery must carry exactly its bytes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/fault.h"
#include "sim/delivery_plan.h"
#include "sim/packet_builder.h"
#include "sim/sim_device.h"

namespace {

constexpr const char* kRegisters[] = {"MC", "TS", "RS", "QS", "TC", "V1", "P1", "O1", "M1",
                                      "T1", "S1", "TD", "TA", "TW", "RT", "AP", "AR"};
constexpr uint32_t kMaxFuzzRecord = 4096;  // keeps a run short; longer records take the same paths

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const size_t newline = input.find('\n');
  zorvik::SimConfig config;
  try {
    config = zorvik::parseSimConfig(input.substr(0, newline));
  } catch (const zorvik::Fault&) {
    return 0;
  }
  if (newline == std::string_view::npos) return 0;

  zorvik::SimDevice device(config);
  const std::string_view writes = input.substr(newline + 1);
  for (size_t i = 0; i + 5 <= writes.size(); i += 5) {
    const auto* w = reinterpret_cast<const uint8_t*>(writes.data() + i);
    const uint32_t value = uint32_t{w[1]} << 24 | uint32_t{w[2]} << 16 | uint32_t{w[3]} << 8 | w[4];
    device.write(kRegisters[w[0] % std::size(kRegisters)], value);
  }

  zorvik::SignalGenerator generator(config);
  zorvik::PacketBuilder builder(generator);
  zorvik::DeliveryPlan plan;
  zorvik::AcquisitionSetup setup = device.setup();
  setup.QS = std::min(setup.QS, kMaxFuzzRecord);
  for (uint8_t mode = 0; mode < 8; ++mode) {
    setup.M1 = mode;
    setup.qsh = std::min(config.qshForMode(mode), kMaxFuzzRecord);
    const std::string& packet = builder.build(setup, 0.0123);
    if (!packet.empty() && packet.size() < 4) __builtin_trap();
    plan.make(setup, builder.placement(), 0.0123, packet.size(), true);
    size_t covered = 0;
    for (const zorvik::DeliveryPlan::Item& item : plan.items()) {
      if (!(item.due >= 0) || item.end > packet.size()) __builtin_trap();
      if (item.roll && (item.begin != covered || item.end <= item.begin)) __builtin_trap();
      if (item.roll) covered = item.end;
    }
    if (plan.streamed() && covered != packet.size()) __builtin_trap();
  }
  return 0;
}
