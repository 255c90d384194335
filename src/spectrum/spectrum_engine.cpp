#include "spectrum/spectrum_engine.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

void SpectrumEngine::frameInVolts(const SpectrumInput& in) {
  const uint8_t* p =
      reinterpret_cast<const uint8_t*>(in.samples.data()) + (in.IsPeak || in.IsHiRes ? 2 : 1) * FrameStart;
  const float fs = in.FullScaleVolts, zero = in.ZeroVolts;
  const float* w = window_.data();
  float* out = buffer_.data();
  const int m = FrameLength;
  // One loop a format, each sample as before: code, volts, times the window.
  if (in.IsPeak) {
    for (int i = 0; i < m; ++i)
      out[i] = (static_cast<float>((p[2 * i] + p[2 * i + 1]) / 2 - 128) * fs / 256 + zero) * w[i];
  } else if (in.IsHiRes) {
    for (int i = 0; i < m; ++i)
      out[i] = (static_cast<float>(p[2 * i] * 256 + p[2 * i + 1] - 32768) * fs / 65536 + zero) * w[i];
  } else {
    for (int i = 0; i < m; ++i) out[i] = (static_cast<float>(p[i] - 128) * fs / 256 + zero) * w[i];
  }
}

void SpectrumEngine::amplitudes(float K, size_t first) {
  const float* re = re_.data();
  const float* im = im_.data();
  float* amp = SpecAmp.data();
  const size_t bins = re_.size();
  size_t j = first;
  float highest = 0;
#if defined(__SSE2__)
  // Four bins at a time; the highest is kept apart from its bin. A NaN never beats it, as in the
  // comparison bin by bin.
  __m128 top = _mm_setzero_ps();
  const __m128 k = _mm_set1_ps(K);
  for (; j + 4 <= bins; j += 4) {
    const __m128 r = _mm_loadu_ps(re + j), i = _mm_loadu_ps(im + j);
    const __m128 a = _mm_mul_ps(k, _mm_sqrt_ps(_mm_add_ps(_mm_mul_ps(r, r), _mm_mul_ps(i, i))));
    _mm_storeu_ps(amp + j, a);
    top = _mm_max_ps(a, top);
  }
  alignas(16) float tops[4];
  _mm_store_ps(tops, top);
  for (float t : tops) highest = std::max(highest, t);
#endif
  for (; j < bins; ++j) {
    amp[j] = K * std::sqrt(re[j] * re[j] + im[j] * im[j]);
    highest = std::max(highest, amp[j]);
  }
  // The lowest of equal lines wins: the first bin that holds the highest amplitude.
  PeakAmp = 0;
  PeakBin = 0;
  if (highest > 0) {
    size_t b = first;
    while (amp[b] != highest) ++b;
    PeakAmp = highest;
    PeakBin = static_cast<float>(b);
  }
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

  // The frame is written whole below; only the zero padding beyond it is cleared.
  buffer_.resize(static_cast<size_t>(n >= 2 ? BufferLength : 0));
  if (n >= 2) std::fill(buffer_.begin() + FrameLength, buffer_.end(), 0.0f);
  if (windowFunction_ != s.WindowFunction || windowLength_ != FrameLength) {
    window_.resize(static_cast<size_t>(std::max(FrameLength, 0)));
    for (int i = 0; i < FrameLength; ++i)
      window_[static_cast<size_t>(i)] = windowMultiplier(s.WindowFunction, i, FrameLength);
    windowFunction_ = s.WindowFunction;
    windowLength_ = FrameLength;
  }
  if (n >= 2) frameInVolts(in);
  const float K = FrameLength > 0 ? windowAmplitudeFactor(s.WindowFunction, FrameLength) : 0;
  fft_.transform(buffer_.data(), buffer_.size(), re_, im_);

  if (HeldMaxReset) {
    HeldMax = 0;
    HeldMaxReset = false;
  }
  // The lowest bins hold the DC line and its skirt: left out of the plot and the search unless asked for.
  const size_t first = std::min(re_.size(), size_t{s.DCfreq ? 0u : s.Doubled ? 4u : 2u});
  FirstBin = static_cast<int>(first);
  SpecAmp.resize(re_.size());
  std::fill(SpecAmp.begin(), SpecAmp.begin() + static_cast<std::ptrdiff_t>(first), 0.0f);
  amplitudes(K, first);
  // Every bin as computed, for the refinement and the harmonics: the same arithmetic as SpecAmp's.
  BinAmp.resize(re_.size());
  for (size_t j = 0; j < first; ++j) BinAmp[j] = K * std::sqrt(re_[j] * re_[j] + im_[j] * im_[j]);
  std::copy(SpecAmp.begin() + static_cast<std::ptrdiff_t>(first), SpecAmp.end(),
            BinAmp.begin() + static_cast<std::ptrdiff_t>(first));
  Refined = false;
  if (s.refinePeak && PeakAmp > 0) {
    // The line is rebuilt from the bins as computed, but not moved into the DC line's skirt.
    const float from = std::max(PeakBin - 1, static_cast<float>(FirstBin));
    const InterpolatedPeak p = InterpolationMaxFind(BinAmp, SpecBins, from, PeakBin + 1, sinxx_);
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
