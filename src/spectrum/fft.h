#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zorvik {

// The forward FFT of the spectrum: in place, radix 2, decimation in time, in 32-bit floats, unscaled.
// The input's length is cut to the largest power of two it holds; re and im take the lower half of the
// result. The twiddle factors of a stage come from repeated complex multiplication, as they always did,
// so that the rounding of the lines is the one the spectra have shown.
//
// This object keeps the twiddle factors and the bit-reversed order of the last size, and its working
// arrays, so that a steady run computes them once and allocates nothing. Each butterfly computes what
// the straight loops computed; only the order of independent butterflies and their grouping into
// vector lanes differ, which leaves every bit of the result as it was.
class Fft {
 public:
  void transform(const float* input, size_t size, std::vector<float>& re, std::vector<float>& im);

 private:
  void prepare(size_t n);

  size_t n_ = 0;
  std::vector<float> twr_, twi_;  // stage of le2 butterflies: entries le2 - 1 to 2 le2 - 2
  std::vector<uint32_t> rev_;     // where each entry of the bit-reversed order comes from
  std::vector<float> xr_, xi_;
};

// The same with a fresh object on every call.
void Transform(const std::vector<float>& input, std::vector<float>& re, std::vector<float>& im);

}  // namespace zorvik
