#pragma once
#include <array>
#include <cstdint>
#include <vector>

#include "display/display_settings.h"

namespace zorvik {

class SampleBuf;

constexpr float kPiF = 3.14159265358979323846f;  // the kernels' pi, a 32-bit float
constexpr double kLanczosWindow = 1.3;           // whatever the taps
constexpr int kMaxTaps = 256;

// The three kernels of the plotter at a point p between samples: a window of `taps` samples around p,
// pulled inside the record at its ends, the sum clamped to the 16-bit range and returned on the 16-bit
// scale. The sines come from tables of whole multiples of the angle step and one sine and cosine per
// point (sin(a + b) = sin a cos b + cos a sin b), which gives the sums of a sine per term; the terms are
// added in the window's order.
class Interpolator {
 public:
  Interpolator();
  // A sample exactly at p is taken as it is; a point outside the record reads 0, as the samples there.
  int32_t at(Interpolation kind, const SampleBuf& s, float p, int taps);

 private:
  void prepareLagrange(int taps);

  // sin and cos of (kTable - j) x step: running forward through j is running back through the multiples.
  std::vector<double> sinPi_, cosPi_, sinLz_, cosLz_;
  std::vector<double> binomial_;  // C(taps - 1, m)
  int lagrangeTaps_ = 0;
  std::array<double, kMaxTaps> terms_{};
  // The Sin(x)/x weights sin(t) / t of the last point's place between samples: the columns of a steady
  // ratio meet the same places again and again, and a weight is the same number each time.
  struct Weights {
    double f = -1;
    int64_t offset = -1;
    int n = 0;
    std::array<double, kMaxTaps> w{};
  };
  // A few places: a ratio that is not a whole number of columns a sample meets several in turn.
  std::array<Weights, 4> sinx_{};
  size_t sinxNext_ = 0;
};

}  // namespace zorvik
