#pragma once
#include <string>
#include <vector>

#include "measure/measurement_pass.h"

namespace zorvik {

class SigCalc;
class SigTiming;

// A meter of the Meters menu: its mnemonic (the window's identity), caption and unit, and how its value
// is shown: by Ind with a resolution, or by IndF with a fixed picture.
struct MeterInfo {
  Meter meter;
  const char* mnemonic;
  const char* caption;
  const char* unit;
  bool fixedFormat;
};

// The nineteen meters in the order the pass feeds them.
const std::vector<MeterInfo>& meterTable();
const MeterInfo& meterInfo(Meter m);

// What the record's scale adds to a reading.
struct MeterContext {
  bool IsHiRes = false;
  float FullScaleVolts = 1.6f;
  float ZeroVolts = 0;
  float SamplePeriod = 1e-6f;
  int n = 0;  // samples of the segment
};

// A meter's value as the pass hands it over, or the status shown in its place.
struct MeterReading {
  double value = 0;
  std::string status;     // empty when the value stands
  double resolution = 0;  // Ind: the step the value is shown to
  bool detail = false;    // Ind: one digit more
  std::string picture;    // IndF: the fixed format
};

MeterReading readMeter(Meter m, const SigCalc& calc, const SigTiming& timing, const MeterContext& ctx);

}  // namespace zorvik
