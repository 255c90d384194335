#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

namespace zorvik {

// The simulator's only source of randomness. The standard distributions differ between library
// versions, so the sequence is built here: the same seed gives the same numbers everywhere.
class SimRandom {
 public:
  explicit SimRandom(uint64_t seed);

  uint64_t next() {
    // xorshift64*: fast enough to draw once per sample.
    state_ ^= state_ >> 12;
    state_ ^= state_ << 25;
    state_ ^= state_ >> 27;
    return state_ * 0x2545F4914F6CDD1Dull;
  }
  // Uniform in [0, 1).
  double uniform() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }
  // Standard normal. Drawn from a table filled once by Box-Muller, so a sample costs a lookup.
  float gaussian() { return table_[next() >> (64 - kTableBits)]; }
  // out[k] = standard normal; four table indices come from each draw, as this runs per sample.
  // Inline, so that callers' buffers stay visibly private and their loops vectorize.
  void fillGaussian(float* out, size_t count) {
    static_assert(kTableBits == 12, "the index shifts below take 12 bits each");
    constexpr uint64_t kMask = (uint64_t{1} << kTableBits) - 1;
    const size_t whole = count / 4 * 4;
    for (size_t k = 0; k < whole; k += 4) {
      const uint64_t r = next();
      out[k] = table_[r >> 52];
      out[k + 1] = table_[(r >> 40) & kMask];
      out[k + 2] = table_[(r >> 28) & kMask];
      out[k + 3] = table_[(r >> 16) & kMask];
    }
    for (size_t k = whole; k < count; ++k) out[k] = gaussian();
  }

 private:
  static constexpr int kTableBits = 12;
  uint64_t state_;
  std::array<float, std::size_t{1} << kTableBits> table_{};
};

}  // namespace zorvik
