#pragma once
#include <cstddef>
#include <cstdint>

#include "sim/signal_generator.h"

namespace zorvik {

// The register values that shape one acquisition, and the device limits that go with them.
struct AcquisitionSetup {
  uint32_t MC = 0;    // clock period, 10 ps units
  uint32_t TS = 0;    // sampling period, clocks x 256
  uint32_t QS = 0;    // samples
  uint32_t TC = 0;    // presamples
  uint32_t TD = 0;    // trigger delay, counts of 12 clocks
  uint32_t TA = 0;    // auto time-out, same counts
  uint32_t TW = 0;    // wait time-out in Norm, same counts
  uint16_t V1 = 0;    // mV per division
  int16_t P1 = 0;     // offset, 1/256 of full scale
  uint8_t O1 = 0;     // bit 0 ground, 1 AC, 2 band limit 3 MHz, 3 band limit 3 kHz
  uint8_t M1 = 0;     // mode, low three bits
  uint8_t T1 = 0x20;  // bits 0-1 falling and 2-3 rising hysteresis, 4 falling edge, 5 rising edge,
                      // 6-7 trigger filter; power-on: rising, smallest band, no filter
  uint8_t S1 = 128;   // trigger level on the 8-bit code scale; power-on: mid-screen
  uint8_t RS = 0;     // bit 0 RIS allowed, bit 1 samples are sent while they are taken
  uint8_t RT = 0;     // bit 0 Norm: no packet without a trigger
  uint8_t AP = 0;     // averages less one, real time
  uint8_t AR = 0;     // averages less one, RIS

  uint32_t MCd = 1000;       // clock used for delays while MC is still 0
  uint32_t qsh = 16384;      // QSh of the present mode
  uint32_t risFloor = 128;   // sampling periods (TS) below this need RIS
  bool triggerDead = false;  // a broken comparator that never fires

  uint8_t mode() const { return M1 & 7; }
  double samplePeriod() const;  // seconds
  double voltsPerDiv() const;
  double offsetVolts() const;   // volts at the mid code
  double triggerLevel() const;  // volts
  size_t recordLength() const;  // sample positions
  double recordSeconds() const;
  size_t presamples() const;
  double countSeconds(uint32_t counts) const;  // delays and time-outs
  bool risActive() const;
  bool normalTrigger() const { return (RT & 1) != 0; }
  InputConditioning conditioning() const;

  // The trigger, from T1: the band the signal must leave before an edge counts, and the cut-off of
  // the filter on the trigger path (0: none).
  double hysteresisVolts(Edge edge) const;
  double triggerFilterHz() const;
  // What the comparator sees: the input stage and the trigger filter after it.
  InputConditioning triggerConditioning() const;
  // How long the trigger is awaited after arming, seconds: TW in Norm, TA in Auto.
  double triggerWait() const;
  // Long records at RS bit 1 stream while they are taken.
  bool rolls() const;
};

}  // namespace zorvik
