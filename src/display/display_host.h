#pragma once
#include <cstdint>

namespace zorvik {

class DeviceContext;

// What the display reads and moves in the main window's state: the packet counter of the persistence,
// the replot flag, the record's scale and the RIS sampling period.
class DisplayHost {
 public:
  virtual ~DisplayHost() = default;
  virtual int32_t PacketCount() const = 0;
  virtual void setPacketCount(int32_t count) = 0;
  virtual bool ReplotNeeded() const = 0;
  virtual void setReplotNeeded(bool on) = 0;
  virtual int SamplesPerDiv() const = 0;
  virtual float SamplePeriod() const = 0;
  virtual int32_t TS() const = 0;
  // The spectrum and the histogram start their averaging again (the persistence was cleared).
  virtual void restartAveraging() {}
};

// The host over the main controller.
class ControllerDisplayHost : public DisplayHost {
 public:
  explicit ControllerDisplayHost(DeviceContext& main) : main_(main) {}
  int32_t PacketCount() const override;
  void setPacketCount(int32_t count) override;
  bool ReplotNeeded() const override;
  void setReplotNeeded(bool on) override;
  int SamplesPerDiv() const override;
  float SamplePeriod() const override;
  int32_t TS() const override;

 private:
  DeviceContext& main_;
};

}  // namespace zorvik
