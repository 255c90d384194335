#pragma once
#include <cstddef>
#include <cstdint>

#include "sim/signal_generator.h"

namespace zorvik {

// The register values that shape one acquisition, and the device limits that go with them.
struct AcquisitionSetup {
  uint32_t MC = 0;   // clock period, 10 ps units
  uint32_t TS = 0;   // sampling period, clocks x 256
  uint32_t QS = 0;   // samples
  uint32_t TC = 0;   // presamples
  uint32_t TD = 0;   // trigger delay, counts of 12 clocks
  uint32_t TA = 0;   // auto time-out, same counts
  uint32_t TW = 0;   // wait time-out in Norm, same counts
  uint16_t V1 = 0;   // mV per division
  int16_t P1 = 0;    // offset, 1/256 of full scale
  uint8_t O1 = 0;    // bit 0 ground, 1 AC, 2 band limit 3 MHz, 3 band limit 3 kHz
  uint8_t M1 = 0;    // mode, low three bits
  uint8_t T1 = 0x20; // bit 4 falling edge, bit 5 rising edge; power-on: rising
  uint8_t S1 = 128;  // trigger level on the 8-bit code scale; power-on: mid-screen
  uint8_t RS = 0;    // bit 0 RIS allowed
  uint8_t RT = 0;    // bit 0 Norm: no packet without a trigger
  uint8_t AP = 0;    // averages less one, real time
  uint8_t AR = 0;    // averages less one, RIS

  uint32_t MCd = 1000;      // clock used for delays while MC is still 0
  uint32_t qsh = 16384;     // QSh of the present mode
  uint32_t risFloor = 128;  // sampling periods (TS) below this need RIS

  uint8_t mode() const { return M1 & 7; }
  double samplePeriod() const;  // seconds
  double voltsPerDiv() const;
  double offsetVolts() const;   // volts at the mid code
  double triggerLevel() const;  // volts
  size_t recordLength() const;  // sample positions
  size_t presamples() const;
  double countSeconds(uint32_t counts) const;  // delays and time-outs
  bool risActive() const;
  bool normalTrigger() const { return (RT & 1) != 0; }
  InputConditioning conditioning() const;
};

// Where the record lies in the device's time.
struct RecordPlacement {
  bool hasData = true;     // false: Norm mode and no trigger came
  bool triggered = false;
  double start = 0;        // time of the first sample
  double end = 0;          // when the device is done with this acquisition
};

// Runs the trigger from `now`: presamples are filled first, then the next edge at the level is
// awaited up to the time-out, and the record is laid around it on the converter's sample grid.
RecordPlacement placeRecord(SignalGenerator& generator, const AcquisitionSetup& setup, double now);

}  // namespace zorvik
