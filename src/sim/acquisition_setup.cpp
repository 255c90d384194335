#include "sim/acquisition_setup.h"

#include <algorithm>

namespace zorvik {

namespace {

constexpr double kDefaultSamplePeriod = 1e-6;  // before the first time base is written
constexpr uint16_t kDefaultMilliVoltsPerDiv = 200;
constexpr size_t kDefaultRecordLength = 1000;
constexpr double kLowBandLimitHz = 3e3;  // only up to 200 mV/div
constexpr double kHighBandLimitHz = 3e6;
// Auto mode with TA 0 does not give up at once, or it would never show a triggered trace.
constexpr double kDefaultAutoWait = 0.1;
// Records shorter than this come in one piece: streaming them would show nothing sooner.
constexpr double kRollRecordSeconds = 0.1;
// Hysteresis bands in 8-bit codes, "small" to "large", and trigger filters, "fastest" to "slowest".
constexpr double kHysteresisCodes[4] = {2, 4, 8, 16};
constexpr double kTriggerFilterHz[4] = {0, 1e6, 1e5, 1e4};

}  // namespace

double AcquisitionSetup::samplePeriod() const {
  if (TS == 0 || MC == 0) return kDefaultSamplePeriod;
  return static_cast<double>(TS) / 256.0 * static_cast<double>(MC) * 1e-11;
}

double AcquisitionSetup::voltsPerDiv() const {
  return (V1 != 0 ? V1 : kDefaultMilliVoltsPerDiv) / 1000.0;
}

double AcquisitionSetup::offsetVolts() const {
  return P1 * 8.0 * voltsPerDiv() / 256.0;
}

double AcquisitionSetup::triggerLevel() const {
  return offsetVolts() + (S1 - 128) / 32.0 * voltsPerDiv();
}

size_t AcquisitionSetup::recordLength() const {
  const size_t wanted = QS != 0 ? QS : kDefaultRecordLength;
  return std::min<size_t>(wanted, qsh);
}

size_t AcquisitionSetup::presamples() const {
  return std::min<size_t>(TC, recordLength());
}

double AcquisitionSetup::countSeconds(uint32_t counts) const {
  const uint32_t clock = MC != 0 ? MC : MCd;
  return static_cast<double>(counts) * 12.0 * static_cast<double>(clock) * 1e-11;
}

bool AcquisitionSetup::risActive() const {
  return (RS & 1) != 0 && TS != 0 && TS < risFloor;
}

InputConditioning AcquisitionSetup::conditioning() const {
  InputConditioning c;
  c.grounded = (O1 & 1) != 0;
  c.acCoupled = (O1 & 2) != 0;
  if ((O1 & 8) != 0 && voltsPerDiv() <= 0.2)
    c.cutoffHz = kLowBandLimitHz;
  else if ((O1 & 4) != 0)
    c.cutoffHz = kHighBandLimitHz;
  return c;
}

double AcquisitionSetup::hysteresisVolts(Edge edge) const {
  const unsigned index = edge == Edge::Rising ? (T1 >> 2) & 3u : T1 & 3u;
  return kHysteresisCodes[index] * voltsPerDiv() / 32.0;
}

double AcquisitionSetup::triggerFilterHz() const {
  return kTriggerFilterHz[(T1 >> 6) & 3u];
}

InputConditioning AcquisitionSetup::triggerConditioning() const {
  InputConditioning c = conditioning();
  const double filter = triggerFilterHz();
  // Two first-order stages act on an edge much like one with the sum of their time constants.
  if (filter > 0) c.cutoffHz = c.cutoffHz > 0 ? 1.0 / (1.0 / c.cutoffHz + 1.0 / filter) : filter;
  return c;
}

double AcquisitionSetup::triggerWait() const {
  if (normalTrigger()) return countSeconds(TW);
  return TA != 0 ? countSeconds(TA) : kDefaultAutoWait;
}

double AcquisitionSetup::recordSeconds() const {
  return static_cast<double>(recordLength()) * samplePeriod();
}

bool AcquisitionSetup::rolls() const {
  return (RS & 2) != 0 && recordSeconds() > kRollRecordSeconds;
}

}  // namespace zorvik
