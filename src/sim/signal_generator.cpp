#include "sim/signal_generator.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zorvik {

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;

double fraction(double x) {
  return x - std::floor(x);
}

}  // namespace

SignalGenerator::SignalGenerator(const SimConfig& config)
    : waveform_(config.signal),
      freq_(config.freq > 0 && std::isfinite(config.freq) ? config.freq : 1.0),
      vpp_(std::isfinite(config.vpp) ? std::fabs(config.vpp) : 0.0),
      offset_(std::isfinite(config.offset) ? config.offset : 0.0),
      instrumentNoise_(std::isfinite(config.noise) ? std::fabs(config.noise) : 0.0),
      random_(config.seed) {
  condition(InputConditioning{});
}

void SignalGenerator::condition(const InputConditioning& c) {
  conditioning_ = c;
  tau_ = c.cutoffHz > 0 ? 1.0 / (kTwoPi * c.cutoffHz) : 0.0;
  double gain = 1.0;
  double lag = 0.0;
  if (c.cutoffHz > 0) {
    const double ratio = freq_ / c.cutoffHz;
    gain = 1.0 / std::sqrt(1.0 + ratio * ratio);
    lag = std::atan(ratio) / kTwoPi;
  }
  mean_ = (c.grounded || c.acCoupled) ? 0.0 : offset_;
  const double half = c.grounded ? 0.0 : vpp_ / 2;
  inputNoise_ = (waveform_ == Waveform::Noise && !c.grounded) ? vpp_ / 6 : 0.0;
  amplitude_ = 0;
  edgeSwing_ = 0;
  lag_ = 0;
  extremeCount_ = 0;
  switch (waveform_) {
    case Waveform::Sine:
      amplitude_ = half * gain;
      lag_ = lag;
      extremes_ = {Extremum{0.25, mean_ + amplitude_}, Extremum{0.75, mean_ - amplitude_}};
      extremeCount_ = 2;
      break;
    case Waveform::Triangle:
      amplitude_ = half * gain;
      lag_ = lag;
      extremes_ = {Extremum{0.5, mean_ + amplitude_}, Extremum{0.0, mean_ - amplitude_}};
      extremeCount_ = 2;
      break;
    case Waveform::Square:
      // In steady state each half period starts where the other stopped: m -/+ s * tanh(h / 2tau).
      amplitude_ = half;
      edgeSwing_ = tau_ > 0 ? half * std::tanh(1.0 / (4.0 * freq_ * tau_)) : half;
      extremes_ = {Extremum{0.5, mean_ + edgeSwing_}, Extremum{0.0, mean_ - edgeSwing_}};
      extremeCount_ = 2;
      break;
    case Waveform::Dc:
    case Waveform::Noise:
      break;
  }
}

double SignalGenerator::phaseAt(double t) const {
  return fraction(freq_ * t - lag_);
}

double SignalGenerator::shapeAt(double p) const {
  switch (waveform_) {
    case Waveform::Sine:
      return mean_ + amplitude_ * std::sin(kTwoPi * p);
    case Waveform::Triangle:
      return mean_ + amplitude_ * (p < 0.5 ? 4.0 * p - 1.0 : 3.0 - 4.0 * p);
    case Waveform::Square: {
      if (tau_ <= 0) return p < 0.5 ? mean_ + amplitude_ : mean_ - amplitude_;
      const double reach = amplitude_ + edgeSwing_;
      if (p < 0.5) return mean_ + amplitude_ - reach * std::exp(-p / freq_ / tau_);
      return mean_ - amplitude_ + reach * std::exp(-(p - 0.5) / freq_ / tau_);
    }
    case Waveform::Dc:
    case Waveform::Noise:
      break;
  }
  return mean_;
}

double SignalGenerator::clean(double t) const {
  return shapeAt(phaseAt(t));
}

double SignalGenerator::noiseRms(double samplePeriod) const {
  double rms = std::sqrt(instrumentNoise_ * instrumentNoise_ + inputNoise_ * inputNoise_);
  // White noise through a first-order filter keeps the share pi/2 * fc of the Nyquist band.
  if (conditioning_.cutoffHz > 0 && samplePeriod > 0)
    rms *= std::sqrt(std::min(1.0, std::numbers::pi * conditioning_.cutoffHz * samplePeriod));
  return rms;
}

double SignalGenerator::sample(double t, double samplePeriod) {
  return clean(t) + noiseRms(samplePeriod) * random_.gaussian();
}

void SignalGenerator::cleanGrid(double t0, double dt, float* out, size_t count) const {
  const auto mean = static_cast<float>(mean_);
  if (steady()) {
    std::fill(out, out + count, mean);
    return;
  }
  if (waveform_ == Waveform::Sine) {
    // sin(a + j d) = sin a cos jd + cos a sin jd: one table of kLane rotations serves every lane,
    // so the lanes are independent; the anchor a is set exactly every kAnchor samples.
    constexpr size_t kLane = 64;
    constexpr size_t kAnchor = 1024;
    const double step = kTwoPi * fraction(freq_ * dt);
    std::array<double, kLane> cosTable{};
    std::array<double, kLane> sinTable{};
    for (size_t j = 0; j < kLane; ++j) {
      cosTable[j] = std::cos(static_cast<double>(j) * step);
      sinTable[j] = std::sin(static_cast<double>(j) * step);
    }
    const double laneStep = kTwoPi * fraction(freq_ * dt * kLane);
    const double cosLane = std::cos(laneStep);
    const double sinLane = std::sin(laneStep);
    double s = 0;
    double c = 1;
    for (size_t begin = 0; begin < count; begin += kLane) {
      if (begin % kAnchor == 0) {
        const double angle = kTwoPi * phaseAt(t0 + static_cast<double>(begin) * dt);
        s = std::sin(angle);
        c = std::cos(angle);
      }
      const double as = amplitude_ * s;
      const double ac = amplitude_ * c;
      if (begin + kLane <= count) {
        for (size_t j = 0; j < kLane; ++j)  // a fixed count vectorizes
          out[begin + j] = static_cast<float>(mean_ + as * cosTable[j] + ac * sinTable[j]);
      } else {
        for (size_t j = 0; begin + j < count; ++j)
          out[begin + j] = static_cast<float>(mean_ + as * cosTable[j] + ac * sinTable[j]);
      }
      const double nextS = s * cosLane + c * sinLane;
      c = c * cosLane - s * sinLane;
      s = nextS;
    }
    return;
  }
  double p = phaseAt(t0);
  const double step = fraction(freq_ * dt);
  if (waveform_ == Waveform::Triangle) {
    const double a = amplitude_;
    for (size_t k = 0; k < count; ++k) {
      out[k] = static_cast<float>(mean_ + a * (p < 0.5 ? 4.0 * p - 1.0 : 3.0 - 4.0 * p));
      p += step;
      if (p >= 1.0) p -= 1.0;
    }
    return;
  }
  for (size_t k = 0; k < count; ++k) {
    out[k] = static_cast<float>(shapeAt(p));
    p += step;
    if (p >= 1.0) p -= 1.0;
  }
}

void SignalGenerator::addNoise(float* out, size_t count, double rms) {
  if (!(rms > 0)) return;
  const auto scale = static_cast<float>(rms);
  constexpr size_t kBlock = 256;
  std::array<float, kBlock> normals{};
  size_t begin = 0;
  for (; begin + kBlock <= count; begin += kBlock) {
    random_.fillGaussian(normals.data(), kBlock);
    for (size_t j = 0; j < kBlock; ++j) out[begin + j] += scale * normals[j];  // a fixed count vectorizes
  }
  const size_t tail = std::min(kBlock, count - begin);
  random_.fillGaussian(normals.data(), tail);
  for (size_t j = 0; j < tail; ++j) out[begin + j] += scale * normals[j];
}

void SignalGenerator::envelope(double t0, double span, const float* ends, size_t pairs, float* minMax) const {
  for (size_t k = 0; k < pairs; ++k) {
    minMax[2 * k] = std::min(ends[k], ends[k + 1]);
    minMax[2 * k + 1] = std::max(ends[k], ends[k + 1]);
  }
  if (pairs == 0) return;
  const double width = freq_ * span;  // periods per span
  for (int i = 0; i < extremeCount_; ++i) {
    const auto value = static_cast<float>(extremes_[i].value);
    if (width >= 1.0) {
      // A span of a whole period holds every extreme.
      for (size_t k = 0; k < pairs; ++k) {
        minMax[2 * k] = std::min(minMax[2 * k], value);
        minMax[2 * k + 1] = std::max(minMax[2 * k + 1], value);
      }
      continue;
    }
    // Walk from one occurrence of the extreme to the next, in units of spans.
    double ahead = extremes_[i].phase - phaseAt(t0);
    if (ahead < 0) ahead += 1.0;
    const double stride = 1.0 / width;
    for (double at = ahead * stride; at <= static_cast<double>(pairs); at += stride) {
      const size_t k = std::min(pairs - 1, static_cast<size_t>(at));
      minMax[2 * k] = std::min(minMax[2 * k], value);
      minMax[2 * k + 1] = std::max(minMax[2 * k + 1], value);
    }
  }
}

std::optional<double> SignalGenerator::crossingPhase(double level, Edge edge) const {
  const double x = level - mean_;
  switch (waveform_) {
    case Waveform::Sine: {
      if (!(std::fabs(x) < amplitude_)) return std::nullopt;
      const double a = std::asin(x / amplitude_) / kTwoPi;  // -1/4 .. 1/4, on the rising part
      return edge == Edge::Rising ? fraction(a) : 0.5 - a;
    }
    case Waveform::Triangle: {
      if (!(std::fabs(x) < amplitude_)) return std::nullopt;
      const double y = x / amplitude_;
      return edge == Edge::Rising ? (y + 1.0) / 4.0 : (3.0 - y) / 4.0;
    }
    case Waveform::Square: {
      if (!(std::fabs(x) < edgeSwing_)) return std::nullopt;
      const double base = edge == Edge::Rising ? 0.0 : 0.5;
      if (tau_ <= 0) return base;
      const double reach = amplitude_ + edgeSwing_;
      const double rest = edge == Edge::Rising ? amplitude_ - x : amplitude_ + x;
      return base + std::min(0.5, -tau_ * std::log(rest / reach) * freq_);
    }
    case Waveform::Dc:
    case Waveform::Noise:
      break;
  }
  return std::nullopt;
}

bool SignalGenerator::steady() const {
  return amplitude_ == 0 || waveform_ == Waveform::Dc || waveform_ == Waveform::Noise;
}

std::optional<double> SignalGenerator::nextCrossing(double from, double level, Edge edge) const {
  const std::optional<double> target = crossingPhase(level, edge);
  if (!target) return std::nullopt;
  double ahead = *target - phaseAt(from);
  if (ahead < 0) ahead += 1.0;
  return from + ahead / freq_;
}

}  // namespace zorvik
