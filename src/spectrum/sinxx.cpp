#include "spectrum/sinxx.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zorvik {

namespace {

constexpr double kPi = 3.1415927;  // as the routine has always had it
constexpr float kStep = 0.05f;

// The eight bins around a position, pulled back inside the spectrum.
int windowLow(float p, int bins) {
  int low = std::max(static_cast<int>(p) - 4, 0);
  if (low + 7 > bins - 1) low = std::max(bins - 8, 0);
  return low;
}

double factorAt(float p, int k) {
  const double t = (p - k) * kPi;
  return t == 0 ? 1.0 : std::sin(t) / t;
}

float rebuilt(const std::vector<float>& s, int bins, int low, float p, SinxxFactors* factors) {
  const int high = std::min(low + 7, bins - 1);
  double sum = 0;
  if (factors) {
    const SinxxFactors::Entry& e = factors->at(p, low, high);
    for (int k = low; k <= high; ++k)
      sum += e.factor[static_cast<size_t>(k - low)] * s[static_cast<size_t>(k)];
  } else {
    for (int k = low; k <= high; ++k) sum += factorAt(p, k) * s[static_cast<size_t>(k)];
  }
  return static_cast<float>(sum);
}

InterpolatedPeak maxFind(const std::vector<float>& spectrum, int bins, float from, float to,
                         SinxxFactors* factors);

}  // namespace

const SinxxFactors::Entry& SinxxFactors::at(float p, int low, int high) {
  uint32_t bits;
  std::memcpy(&bits, &p, sizeof bits);
  const uint32_t slot = (bits * 2654435761u ^ static_cast<uint32_t>(low) * 40503u) % entries_.size();
  Entry& e = entries_[slot];
  if (e.position != bits || e.low != low || e.high != high) {
    e.position = bits;
    e.low = low;
    e.high = high;
    for (int k = low; k <= high; ++k) e.factor[static_cast<size_t>(k - low)] = factorAt(p, k);
  }
  return e;
}

InterpolatedPeak InterpolationMaxFind(const std::vector<float>& spectrum, int bins, float from, float to) {
  return maxFind(spectrum, bins, from, to, nullptr);
}

InterpolatedPeak InterpolationMaxFind(const std::vector<float>& spectrum, int bins, float from, float to,
                                      SinxxFactors& factors) {
  return maxFind(spectrum, bins, from, to, &factors);
}

namespace {

InterpolatedPeak maxFind(const std::vector<float>& spectrum, int bins, float from, float to,
                         SinxxFactors* factors) {
  InterpolatedPeak best;
  bins = std::min(bins, static_cast<int>(spectrum.size()));
  if (bins < 1) return best;
  if (from < 0) from = 0;
  if (to >= bins) to = static_cast<float>(bins - 1);
  if (!(from <= to)) return best;
  auto consider = [&](float value, float p) {
    if (value > best.amplitude) {
      best.amplitude = value;
      best.bin = p;
    }
  };
  // The positions run in 32-bit float steps, as they always have.
  auto sweep = [&](float start, float end, int low) {
    for (float p = start; p <= end + 1e-6f; p += kStep) consider(rebuilt(spectrum, bins, low, p, factors), p);
  };
  int next;
  const float fromFloor = std::floor(from);
  if (from != fromFloor) {
    sweep(from, std::min(fromFloor + 0.95f, to), windowLow(from, bins));
    next = static_cast<int>(fromFloor) + 1;
  } else {
    next = static_cast<int>(from);
  }
  const int toWhole = static_cast<int>(std::floor(to));
  for (int i = next; i <= toWhole && i < bins; ++i) {
    const int low = windowLow(static_cast<float>(i), bins);
    consider(spectrum[static_cast<size_t>(i)], static_cast<float>(i));
    // Each whole bin is followed to its end, the last one too.
    sweep(static_cast<float>(i) + kStep, static_cast<float>(i) + 0.95f, low);
  }
  if (to == std::floor(to)) {
    consider(spectrum[static_cast<size_t>(to)], to);
  } else {
    sweep(std::floor(to) + kStep, std::min(to, std::floor(to) + 0.95f), windowLow(to, bins));
  }
  return best;
}

}  // namespace

}  // namespace zorvik
