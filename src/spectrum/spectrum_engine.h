#pragma once
#include <string_view>
#include <vector>

#include "spectrum/fft.h"
#include "spectrum/sinxx.h"

namespace zorvik {

// What the spectrum reads of an acquisition: the segment and its scale.
struct SpectrumInput {
  std::string_view samples;
  bool IsHiRes = false, IsPeak = false, OneCharSample = true;
  float SamplePeriod = 1e-6f;
  float FullScaleVolts = 1.6f;
  float ZeroVolts = 0;
};

// The settings that change the computation.
struct SpectrumSettings {
  bool DCfreq = false;     // keep the lowest bins (the DC line)
  bool Doubled = false;    // the whole record, zero-padded to the next power of two
  int WindowFunction = 0;  // Rectangular, Hamming, Hann, Blackman, Flat Top, Triangular, Blackman-Harris
  // The strongest line rebuilt between bins by sin(x)/x: for an interpolated, normalised plot and while
  // the THD meter is open.
  bool refinePeak = false;
};

extern const char* const kWindowFunctions[7];

// The amplitude spectrum of each acquisition: a frame of the record in volts, windowed and transformed,
// each bin as the RMS volts of a sine on it; the largest line; and a vertical reference that does not
// breathe with noise.
class SpectrumEngine {
 public:
  void ComputeSpectrum(const SpectrumInput& in, const SpectrumSettings& s);
  // The next computation forgets the held maximum.
  void resetHeldMax() { HeldMaxReset = true; }

  std::vector<float> SpecAmp;  // RMS volts a bin; the lowest bins 0 unless DCfreq
  // Every bin as computed, the lowest ones too: sin(x)/x rebuilds a line from its true neighbours, and a
  // line in bin 2 or 3 has the DC bins beside it.
  std::vector<float> BinAmp;
  int FirstBin = 0;   // the lowest bin that SpecAmp holds and where a line is looked for
  int SpecBins = 0;   // bins the frequency axis spans
  float MaxFreq = 0;  // Hz at the end of the axis
  float PeakBin = 0, PeakAmp = 0;
  float FullAmp = 0, ShownMax = 0, HeldMax = 0;
  bool ScaleValid = false;
  bool Refined = false;  // PeakBin and PeakAmp come from the rebuilt spectrum
  int FrameLength = 0, FrameStart = 0, BufferLength = 0;

 private:
  // The frame in volts, each sample times the window's multiplier, into the buffer.
  void frameInVolts(const SpectrumInput& in);
  // SpecAmp from the first bin on, PeakAmp and PeakBin.
  void amplitudes(float K, size_t first);

  bool HeldMaxReset = false;
  std::vector<float> buffer_, re_, im_;
  Fft fft_;
  SinxxFactors sinxx_;
  // The window's multipliers for the last function and frame length: the same values, made once.
  std::vector<float> window_;
  int windowFunction_ = -1, windowLength_ = -1;
};

// The multiplier of the window at sample i of a frame of m, and the window's amplitude factor.
float windowMultiplier(int function, int i, int m);
float windowAmplitudeFactor(int function, int m);

}  // namespace zorvik
