#include "sim/acquisition_setup.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zorvik {

namespace {

constexpr double kDefaultSamplePeriod = 1e-6;  // before the first time base is written
constexpr uint16_t kDefaultMilliVoltsPerDiv = 200;
constexpr size_t kDefaultRecordLength = 1000;
constexpr double kLowBandLimitHz = 3e3;   // only up to 200 mV/div
constexpr double kHighBandLimitHz = 3e6;
constexpr double kAutoWaitMin = 0.1;      // Auto mode with no TA: free run after this long

}  // namespace

double AcquisitionSetup::samplePeriod() const {
  if (TS == 0 || MC == 0) return kDefaultSamplePeriod;
  return static_cast<double>(TS) / 256.0 * static_cast<double>(MC) * 1e-11;
}

double AcquisitionSetup::voltsPerDiv() const {
  return (V1 != 0 ? V1 : kDefaultMilliVoltsPerDiv) / 1000.0;
}

double AcquisitionSetup::offsetVolts() const { return P1 * 8.0 * voltsPerDiv() / 256.0; }

double AcquisitionSetup::triggerLevel() const {
  return offsetVolts() + (S1 - 128) / 32.0 * voltsPerDiv();
}

size_t AcquisitionSetup::recordLength() const {
  const size_t wanted = QS != 0 ? QS : kDefaultRecordLength;
  return std::min<size_t>(wanted, qsh);
}

size_t AcquisitionSetup::presamples() const { return std::min<size_t>(TC, recordLength()); }

double AcquisitionSetup::countSeconds(uint32_t counts) const {
  const uint32_t clock = MC != 0 ? MC : MCd;
  return static_cast<double>(counts) * 12.0 * static_cast<double>(clock) * 1e-11;
}

bool AcquisitionSetup::risActive() const { return (RS & 1) != 0 && TS != 0 && TS < risFloor; }

InputConditioning AcquisitionSetup::conditioning() const {
  InputConditioning c;
  c.grounded = (O1 & 1) != 0;
  c.acCoupled = (O1 & 2) != 0;
  if ((O1 & 8) != 0 && voltsPerDiv() <= 0.2) c.cutoffHz = kLowBandLimitHz;
  else if ((O1 & 4) != 0) c.cutoffHz = kHighBandLimitHz;
  return c;
}

RecordPlacement placeRecord(SignalGenerator& generator, const AcquisitionSetup& setup, double now) {
  const double dt = setup.samplePeriod();
  const double duration = static_cast<double>(setup.recordLength()) * dt;
  const double delay = setup.countSeconds(setup.TD);
  // With a delay the record starts after the trigger, so no presamples need to be waited for.
  const double armed = now + (delay > 0 ? 0.0 : static_cast<double>(setup.presamples()) * dt);

  const double level = setup.triggerLevel();
  std::optional<double> crossing;
  if ((setup.T1 & 0x20) != 0) crossing = generator.nextCrossing(armed, level, Edge::Rising);
  if ((setup.T1 & 0x10) != 0) {
    const std::optional<double> falling = generator.nextCrossing(armed, level, Edge::Falling);
    if (falling && (!crossing || *falling < *crossing)) crossing = falling;
  }

  double limit = 0;
  if (setup.normalTrigger())
    limit = setup.TW != 0 ? setup.countSeconds(setup.TW) : std::numeric_limits<double>::infinity();
  else
    limit = setup.TA != 0 ? setup.countSeconds(setup.TA) : kAutoWaitMin + duration;

  RecordPlacement place;
  if (crossing && *crossing - armed <= limit) {
    // The converter runs on its own grid: the trigger is seen at the next sample, which is the
    // jitter of up to one sample that a real instrument shows.
    const double seen = now + std::ceil((*crossing - now) / dt) * dt;
    place.triggered = true;
    place.start = delay > 0 ? seen + delay : seen - static_cast<double>(setup.presamples()) * dt;
  } else if (setup.normalTrigger()) {
    place.hasData = false;
    place.start = now;
    place.end = std::isfinite(limit) ? armed + limit : armed;
    return place;
  } else {
    place.start = now;
  }
  place.end = place.start + duration;
  return place;
}

}  // namespace zorvik
