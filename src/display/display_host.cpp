#include "display/display_host.h"

#include "link/device_context.h"

namespace zorvik {

int32_t ControllerDisplayHost::PacketCount() const {
  return main_.PacketCount();
}
void ControllerDisplayHost::setPacketCount(int32_t count) {
  main_.setPacketCount(count);
}
bool ControllerDisplayHost::ReplotNeeded() const {
  return main_.ReplotNeeded();
}
void ControllerDisplayHost::setReplotNeeded(bool on) {
  main_.setReplotNeeded(on);
}
int ControllerDisplayHost::SamplesPerDiv() const {
  return main_.scale().SamplesPerDiv;
}
float ControllerDisplayHost::SamplePeriod() const {
  return main_.scale().SamplePeriod;
}
int32_t ControllerDisplayHost::TS() const {
  return main_.cache().TS;
}

}  // namespace zorvik
