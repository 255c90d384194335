#include "session/link_choice.h"

#include "core/fault.h"
#include "link/device_address.h"
#include "link/stream_obex.h"
#include "sim/sim_config.h"
#include "sim/simulated_obex.h"

namespace zorvik {

std::unique_ptr<ClassOBEX> makeLink(const std::vector<std::string>& simOptions, const std::string& device) {
  if (!device.empty()) {
    if (!simOptions.empty())
      throw Fault("--sim describes the instrument in this program; with --device give it to zorvik-sim");
    return std::make_unique<StreamObex>(parseDeviceAddress(device));
  }
  SimConfig config;
  for (const std::string& o : simOptions) applySimOptions(config, o);
  return std::make_unique<SimulatedObex>(config);
}

StreamObex* streamLink(ClassOBEX* link) {
  return dynamic_cast<StreamObex*>(link);
}

}  // namespace zorvik
