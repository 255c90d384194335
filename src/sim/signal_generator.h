#pragma once
#include <array>
#include <cstddef>
#include <optional>

#include "sim/sim_config.h"
#include "sim/sim_random.h"

namespace zorvik {

// What the input stage does to the signal before the converter.
struct InputConditioning {
  bool grounded = false;   // input switched to ground: only the instrument's noise is left
  bool acCoupled = false;  // the DC level is blocked
  double cutoffHz = 0;     // first-order band limit; 0 is none
};

enum class Edge { Rising, Falling };

// The signal at the probe tip and the input stage behind it, as volts over time.
// The band limit acts on a sine exactly, on a square as its exponential edges, and on a triangle
// by the gain and lag of its fundamental (its harmonics are weak enough not to matter on screen).
class SignalGenerator {
 public:
  explicit SignalGenerator(const SimConfig& config);

  void condition(const InputConditioning& conditioning);

  // Volts at time t (seconds) without noise.
  double clean(double t) const;
  // Volts at time t with the noise seen at the given sample period.
  double sample(double t, double samplePeriod);
  // Noise in V rms at the given sample period: the instrument's noise plus a noise input, both
  // narrowed by the band limit.
  double noiseRms(double samplePeriod) const;

  // out[k] = clean(t0 + k * dt), k < count; built by recurrences, as this runs for every sample.
  void cleanGrid(double t0, double dt, float* out, size_t count) const;
  // Adds Gaussian noise of the given rms.
  void addNoise(float* out, size_t count, double rms);
  // Lowest and highest clean value over each span [t0 + k * span, t0 + (k + 1) * span], k < pairs,
  // given the values at the span ends (ends[0..pairs], from cleanGrid): minMax[2k], minMax[2k + 1].
  void envelope(double t0, double span, const float* ends, size_t pairs, float* minMax) const;

  // The first time at or after `from` at which the clean signal passes `level` on the edge.
  // Nothing when it never does; a steady signal never does (a noise input is all noise, no clean
  // part: its crossings are the trigger's business).
  std::optional<double> nextCrossing(double from, double level, Edge edge) const;
  // True when the clean signal does not move.
  bool steady() const;

  // The signal repeats after this time, so device time can be kept below it without losing phase.
  double period() const { return 1.0 / freq_; }
  SimRandom& random() { return random_; }

 private:
  struct Extremum {
    double phase;  // in cycles, 0 to 1
    double value;
  };

  double phaseAt(double t) const;  // in cycles, 0 to 1, after the lag
  double shapeAt(double phase) const;
  std::optional<double> crossingPhase(double level, Edge edge) const;

  Waveform waveform_;
  double freq_;
  double vpp_;
  double offset_;
  double instrumentNoise_;
  SimRandom random_;

  // Derived by condition().
  InputConditioning conditioning_;
  double mean_ = 0;        // DC level after coupling
  double amplitude_ = 0;   // half the swing of sine and triangle, half the undamped swing of a square
  double edgeSwing_ = 0;   // a square's reach from its mean: equal to amplitude_ without band limit
  double tau_ = 0;         // time constant of the band limit, seconds
  double lag_ = 0;         // phase lag of the fundamental, cycles
  double inputNoise_ = 0;  // rms of a noise input
  std::array<Extremum, 2> extremes_{};
  int extremeCount_ = 0;
};

}  // namespace zorvik
