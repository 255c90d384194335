#pragma once
#include <string>
#include <vector>

#include "sim/acquisition_setup.h"
#include "sim/record_placement.h"
#include "sim/signal_generator.h"
#include "sim/trigger_path.h"

namespace zorvik {

// Acquires one record from the signal and encodes it as the "D" packet: master word, one segment
// word, sample bytes, all big-endian. Buffers are kept between packets, so a steady run allocates
// nothing.
class PacketBuilder {
 public:
  explicit PacketBuilder(SignalGenerator& generator) : generator_(generator), trigger_(generator) {}

  // Acquires with the device's clock at `now` seconds. The packet stays valid until the next call;
  // it is empty when Norm mode saw no trigger.
  const std::string& build(const AcquisitionSetup& setup, double now);

  bool triggered() const { return placement_.triggered; }
  // Device time when the acquisition is over.
  double endTime() const { return placement_.end; }
  const RecordPlacement& placement() const { return placement_; }

 private:
  void encodeCodes8(const AcquisitionSetup& setup, size_t count, double noiseRms, char* out);
  void encodeCodes16(const AcquisitionSetup& setup, size_t count, double noiseRms, char* out);
  void encodePairs(const AcquisitionSetup& setup, size_t pairs, double span, double noiseRms, char* out);

  SignalGenerator& generator_;
  TriggerPath trigger_;
  RecordPlacement placement_;
  std::string packet_;
  std::vector<float> volts_;
};

}  // namespace zorvik
