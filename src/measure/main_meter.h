#pragma once
#include <string>
#include <vector>

namespace zorvik {

class SpectrumEngine;

// The strongest line of a spectrum inside a band typed in kHz, refined between bins when asked.
struct MainMeterReading {
  bool signal = false;  // false: "No signal"
  float amplitude = 0;  // volts
  float bin = 0;
  double frequency = 0;  // Hz
  // The band's fields as the meter leaves them (limits pulled into range).
  std::string minText, maxText;
};

// Both fields empty: the whole spectrum, starting from the line the spectrum found (peakBin, peakAmp).
MainMeterReading readMainMeter(const std::vector<float>& spectrum, int bins, float maxFrequency,
                               float peakBin, float peakAmp, const std::string& minText,
                               const std::string& maxText, bool sinxx);
// The meter on the spectrum's last computation: the band's strongest line is looked for where the spectrum
// looks for its own (the DC bins left out unless shown), and rebuilt from the bins as computed.
MainMeterReading readMainMeter(const SpectrumEngine& e, const std::string& minText,
                               const std::string& maxText, bool sinxx);

}  // namespace zorvik
