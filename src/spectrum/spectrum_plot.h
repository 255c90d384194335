#pragma once
#include <string>
#include <vector>

#include "spectrum/plot_columns.h"

namespace zorvik {

class SpectrumEngine;

// How the spectrum is drawn: linear or dB amplitude, the dB range, normalising to the strongest line,
// and the interpolation between bins (0 none, 1 Sin(x)/x, 2 Lanczos).
struct SpectrumPlotSettings {
  bool dB = false;              // TypeAmp
  int dBRange = 50;             // DBdiap: the visible dB range
  bool normalize = false;       // Normir
  bool memo = false;            // MemoKey1: the normalised scale follows the held maximum
  int interpolation = 0;        // Interpol1
  int interpolationPoints = 3;  // InterpolationPoints1: 2^n neighbours
};

// The axes: amplitude at the top and bottom (volts or dB) and the frequencies shown.
struct SpectrumScale {
  float TopAmp = 0, BottomAmp = 0;
  float FreqLeft = 0, FreqSpan = 0;
};

SpectrumScale SetVertScale(const SpectrumEngine& e, const SpectrumPlotSettings& s);

// The spectrum's columns on a plot `width` wide and `height` high (see plotColumns).
std::vector<float> spectrumColumns(const SpectrumEngine& e, const SpectrumScale& scale,
                                   const SpectrumPlotSettings& s, int width, int height);

// The cursor's read-outs: the frequency, and the amplitude in volts, or in dB with its volts.
std::string frequencyText(double hz);
std::string amplitudeText(double value, bool dB);

}  // namespace zorvik
