#pragma once
#include <vector>

namespace zorvik {

// The forward FFT of the spectrum: in place, radix 2, decimation in time, in 32-bit floats, unscaled.
// The input's length is cut to the largest power of two it holds; re and im take the lower half of the
// result. The twiddle factor of a stage is made by repeated complex multiplication, as it always was, so
// that the rounding of the lines is the one the spectra have shown.
void Transform(const std::vector<float>& input, std::vector<float>& re, std::vector<float>& im);

}  // namespace zorvik
