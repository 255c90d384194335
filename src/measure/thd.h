#pragma once
#include <vector>

namespace zorvik {

class SpectrumEngine;

// One line of the harmonics: its number, where it was found and how strong it is.
struct Harmonic {
  int number = 0;
  double freq = 0;
  float amplitude = 0;
};

struct ThdResult {
  bool valid = false;           // a fundamental was there
  int harmonics = 0;            // H, the highest harmonic searched
  float value = 0;              // percent
  std::vector<Harmonic> lines;  // the fundamental first
};

// The highest harmonic number of a typed field: 2 to 25.
int harmonicsLimit(int typed);

// Total harmonic distortion of the line at peakBin: each harmonic up to H searched by sin(x)/x within 5 % of
// its place, in amplitude (root of the summed squares) or, with powerMode, in power, against the fundamental.
ThdResult computeThd(const std::vector<float>& spectrum, int bins, float peakBin, float peakAmp,
                     float samplePeriod, int maxHarm, bool powerMode);
// Of the spectrum's strongest line, its harmonics rebuilt from the bins as computed.
ThdResult computeThd(const SpectrumEngine& e, float samplePeriod, int maxHarm, bool powerMode);

}  // namespace zorvik
