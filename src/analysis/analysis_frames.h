#pragma once
#include "analysis/plot_picture.h"

namespace zorvik {

class SpectrumEngine;
struct SpectrumPlotSettings;
class HistogramEngine;

// The spectrum as a plot: RMS volts a bin from 0 Hz to MaxFreq, the amplitude axis of SetVertScale
// (volts, or dB of 1 V). Not valid before the first acquisition or while the scale has no reference.
PlotFrame spectrumFrame(const SpectrumEngine& e, const SpectrumPlotSettings& s, bool haveData);
// Frequencies and amplitudes in their engineering texts; in dB with the volts after " / ".
PlotTexts spectrumTexts(bool dB);

// The histogram as a plot: a count a level from LevelLow to LevelHigh, bars, up to the top the scale's
// reference gives (normalised to the highest bin or its held top, else all of the record's samples).
PlotFrame histogramFrame(const HistogramEngine& h, bool normalize, bool memo, bool haveData);
// Levels in volts; counts in samples, or in percent of the record with the picture "00.0".
PlotTexts histogramTexts(const HistogramEngine& h, bool percent);

}  // namespace zorvik
