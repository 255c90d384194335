#include "spectrum/spectrum_engine.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "spectrum/sinxx.h"

namespace zorvik {

const char* const kWindowFunctions[7] = {"Rectangular", "Hamming",    "Hann",           "Blackman",
                                         "Flat Top",    "Triangular", "Blackman-Harris"};

namespace {
constexpr double kTwoPi = 6.2831854820251465;  // the 32-bit float of 2 pi
}  // namespace

float windowMultiplier(int function, int i, int m) {
  const double a = kTwoPi / m, x = i * a;
  switch (function) {
    case 1:
      return static_cast<float>(0.54 - 0.46 * std::cos(x));
    case 2:
      return static_cast<float>(0.5 - 0.5 * std::cos(x));
    // The coefficients are these, also where textbooks give more digits.
    case 3:
      return static_cast<float>(0.423 - 0.497 * std::cos(x) + 0.079 * std::cos(2 * x));
    case 4:
      return static_cast<float>(0.281 - 0.521 * std::cos(x) + 0.198 * std::cos(2 * x));
    case 5:
      return static_cast<float>(1 - std::abs(m - 2.0 * i) / m);
    case 6:
      return static_cast<float>(0.35875 - 0.487396 * std::cos(x) + 0.144232 * std::cos(2 * x) -
                                0.012604 * std::cos(3 * x));
    default:
      return 1;
  }
}

float windowAmplitudeFactor(int function, int m) {
  // sqrt 2 / M for the transform's scale, times the window's inverse coherent gain.
  static constexpr double kGain[7] = {1, 1.851853, 2, 2.380953, 3.558719, 2, 2.787456};
  const int f = function >= 0 && function < 7 ? function : 0;
  return static_cast<float>(std::sqrt(2.0) * kGain[f] / m);
}

void SpectrumEngine::ComputeSpectrum(const SpectrumInput& in, const SpectrumSettings& s) {
  MaxFreq = (in.IsPeak && in.OneCharSample ? 0.25f : 0.5f) / in.SamplePeriod;
  const int n = static_cast<int>(in.IsHiRes || in.IsPeak ? in.samples.size() / 2 : in.samples.size());
  // The largest power of two in the record, or the smallest that holds it.
  int below = 1;
  while (below * 2 <= n) below *= 2;
  const int holds = below < n ? below * 2 : below;
  if (s.Doubled) {
    FrameLength = n;
    BufferLength = holds;
    FrameStart = 0;
  } else {
    FrameLength = BufferLength = below;
    FrameStart = (n - below) / 2;
  }
  SpecBins = n >= 2 ? BufferLength / 2 : 0;

  buffer_.assign(static_cast<size_t>(n >= 2 ? BufferLength : 0), 0.0f);
  if (windowFunction_ != s.WindowFunction || windowLength_ != FrameLength) {
    window_.resize(static_cast<size_t>(std::max(FrameLength, 0)));
    for (int i = 0; i < FrameLength; ++i)
      window_[static_cast<size_t>(i)] = windowMultiplier(s.WindowFunction, i, FrameLength);
    windowFunction_ = s.WindowFunction;
    windowLength_ = FrameLength;
  }
  auto byte = [&](size_t k) { return static_cast<int>(static_cast<uint8_t>(in.samples[k])); };
  for (int i = 0; i < FrameLength && n >= 2; ++i) {
    const size_t smp = static_cast<size_t>(FrameStart + i);
    float v;
    if (in.IsPeak)
      v = static_cast<float>((byte(2 * smp) + byte(2 * smp + 1)) / 2 - 128) * in.FullScaleVolts / 256 +
          in.ZeroVolts;
    else if (in.IsHiRes)
      v = static_cast<float>(byte(2 * smp) * 256 + byte(2 * smp + 1) - 32768) * in.FullScaleVolts / 65536 +
          in.ZeroVolts;
    else
      v = static_cast<float>(byte(smp) - 128) * in.FullScaleVolts / 256 + in.ZeroVolts;
    buffer_[static_cast<size_t>(i)] = v * window_[static_cast<size_t>(i)];
  }
  const float K = FrameLength > 0 ? windowAmplitudeFactor(s.WindowFunction, FrameLength) : 0;
  fft_.transform(buffer_.data(), buffer_.size(), re_, im_);

  if (HeldMaxReset) {
    HeldMax = 0;
    HeldMaxReset = false;
  }
  SpecAmp.assign(re_.size(), 0.0f);
  // The lowest bins hold the DC line and its skirt: left out unless asked for.
  const size_t first = s.DCfreq ? 0 : s.Doubled ? 4 : 2;
  PeakAmp = 0;
  PeakBin = 0;
  for (size_t j = first; j < re_.size(); ++j) {
    SpecAmp[j] = K * std::sqrt(re_[j] * re_[j] + im_[j] * im_[j]);
    if (SpecAmp[j] > PeakAmp) {  // the lowest of equal lines wins
      PeakAmp = SpecAmp[j];
      PeakBin = static_cast<float>(j);
    }
  }
  Refined = false;
  if (s.refinePeak && PeakAmp > 0) {
    const InterpolatedPeak p = InterpolationMaxFind(SpecAmp, SpecBins, PeakBin - 1, PeakBin + 1);
    PeakBin = p.bin;
    PeakAmp = p.amplitude;
    Refined = true;
  }
  // A dead band of 5 % keeps the vertical scale from breathing with noise.
  if (PeakAmp > 0) {
    if (std::abs(ShownMax - PeakAmp) / PeakAmp > 0.05000000074505806) ShownMax = PeakAmp;
  } else {
    ShownMax = 0;
  }
  if (HeldMax < ShownMax) HeldMax = ShownMax * 1.05f;
  FullAmp = std::abs(in.ZeroVolts) + in.FullScaleVolts / 2;
  ScaleValid = ShownMax > 0 && FullAmp > 0;
}

}  // namespace zorvik
