#include "sim/sim_random.h"

#include <cmath>
#include <numbers>

namespace zorvik {

namespace {

uint64_t splitMix64(uint64_t& x) {
  uint64_t z = (x += 0x9E3779B97F4A7C15ull);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
  return z ^ (z >> 31);
}

}  // namespace

SimRandom::SimRandom(uint64_t seed) {
  uint64_t mix = seed;
  state_ = splitMix64(mix);
  if (state_ == 0) state_ = 0x9E3779B97F4A7C15ull;  // xorshift never leaves zero
  for (size_t i = 0; i + 1 < table_.size(); i += 2) {
    const double u1 = 1.0 - uniform();  // (0, 1], so the logarithm stays finite
    const double u2 = uniform();
    const double r = std::sqrt(-2.0 * std::log(u1));
    table_[i] = static_cast<float>(r * std::cos(2.0 * std::numbers::pi * u2));
    table_[i + 1] = static_cast<float>(r * std::sin(2.0 * std::numbers::pi * u2));
  }
}

}  // namespace zorvik
