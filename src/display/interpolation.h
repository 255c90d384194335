#pragma once
#include <array>
#include <cstdint>
#include <vector>

#include "display/display_settings.h"
#include "display/trace_columns.h"

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
  // `column`, when 0 or more, is the screen column the point is for: its Sin(x)/x weights are kept for it.
  int32_t at(Interpolation kind, const SampleBuf& s, float p, int taps, int column = -1);
  // Sin(x)/x into out[x] for the columns first to last by step, column x at points[x]: the values of at().
  void sinxColumns(const SampleBuf& s, int taps, const float* points, int first, int last, int step,
                   int32_t* out);

 private:
  void prepareLagrange(int taps);
  // Where a point falls: on sample i, or between samples i and i + 1 (else outside the record), with its
  // window of n from `first`, q = p - first, f = p - i, and the tables' start `base` (when in them).
  struct Place {
    bool sample = false, interpolated = false, tabled = false;
    int64_t i = 0, first = 0, base = 0;
    int n = 0;
    double q = 0, f = 0;
  };
  static Place place(const SampleBuf& s, float p, int taps);
  // The Sin(x)/x weights sin(t) / t of a point f past a sample, `offset` samples into a window of n.
  const double* sinxWeights(double f, int64_t offset, int n, double q, int64_t base, int column);

  // sin and cos of (kTable - j) x step: running forward through j is running back through the multiples.
  std::vector<double> sinPi_, cosPi_, sinLz_, cosLz_;
  std::vector<double> binomial_;  // C(taps - 1, m)
  int lagrangeTaps_ = 0;
  std::array<double, kMaxTaps> terms_{};
  // The Sin(x)/x weights sin(t) / t of the last point's place between samples: the columns of a steady
  // ratio meet the same places again and again, and a weight is the same number each time.
  struct Key {
    double f = -1;
    int64_t offset = -1;
    int n = 0;
  };
  struct Weights {
    Key key;
    std::array<double, kMaxTaps> w{};
  };
  std::array<Weights, 4> sinx_{};
  size_t sinxNext_ = 0;
  // Per screen column, for windows of up to kColumnTaps (the memory stays under a megabyte).
  static constexpr int kColumnTaps = 64;
  std::vector<Key> columnKeys_;
  std::vector<double> columnWeights_;  // kColumnTaps or fewer a column
  int columnTaps_ = 0;
};

}  // namespace zorvik
