#include "sim/packet_builder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace zorvik {

namespace {

constexpr uint16_t kTriggeredBit = 0x1000;
constexpr uint16_t kRisBit = 0x0100;
constexpr size_t kHeaderBytes = 4;

// Volts to converter codes: 32 codes a division in 8 bits, 256 times finer in 16 bits.
// Codes are made in blocks of fixed length into local buffers, which the compiler turns into
// vector code; the tail of a record goes through the same routine one sample at a time.
class CodeScale {
 public:
  CodeScale(const AcquisitionSetup& setup, float codesPerDiv, float mid, float topCode)
      : scale_(codesPerDiv / static_cast<float>(setup.voltsPerDiv())),
        base_(mid - static_cast<float>(setup.offsetVolts()) * scale_ + 0.5f),
        top_(topCode) {}

  static constexpr size_t kBlock = 64;

  // Rounded and clamped; a NaN would land on 0 rather than in an undefined conversion.
  int32_t code(float volts) const {
    float x = volts * scale_ + base_;
    x = 0.0f < x ? x : 0.0f;
    x = x < top_ ? x : top_;
    return static_cast<int32_t>(x);
  }

  // One byte a code.
  void bytes(const float* volts, size_t count, char* out) const {
    size_t k = 0;
    for (; k + kBlock <= count; k += kBlock) {
      std::array<uint8_t, kBlock> codes{};
      for (size_t j = 0; j < kBlock; ++j) codes[j] = static_cast<uint8_t>(code(volts[k + j]));
      std::memcpy(out + k, codes.data(), kBlock);
    }
    for (; k < count; ++k) out[k] = static_cast<char>(code(volts[k]));
  }

  // Two bytes a code, high byte first.
  void words(const float* volts, size_t count, char* out) const {
    size_t k = 0;
    for (; k + kBlock <= count; k += kBlock) {
      std::array<uint8_t, 2 * kBlock> pairs{};
      for (size_t j = 0; j < kBlock; ++j) {
        const int32_t c = code(volts[k + j]);
        pairs[2 * j] = static_cast<uint8_t>(c >> 8);
        pairs[2 * j + 1] = static_cast<uint8_t>(c & 0xFF);
      }
      std::memcpy(out + 2 * k, pairs.data(), 2 * kBlock);
    }
    for (; k < count; ++k) {
      const int32_t c = code(volts[k]);
      out[2 * k] = static_cast<char>(c >> 8);
      out[2 * k + 1] = static_cast<char>(c & 0xFF);
    }
  }

 private:
  float scale_;
  float base_;
  float top_;
};

void putWord(char* out, uint16_t word) {
  out[0] = static_cast<char>(word >> 8);
  out[1] = static_cast<char>(word & 0xFF);
}

}  // namespace

const std::string& PacketBuilder::build(const AcquisitionSetup& setup, double now) {
  generator_.condition(setup.conditioning());
  placement_ = placeRecord(trigger_, setup, now);
  packet_.clear();
  if (!placement_.hasData) return packet_;

  const size_t length = setup.recordLength();
  const uint8_t mode = setup.mode();
  const double dt = setup.samplePeriod();
  const double noise = generator_.noiseRms(dt);
  const bool ris = setup.risActive();

  size_t dataBytes = length;
  if (mode == 1 || mode == 3) dataBytes = 2 * length;
  if (mode == 2) dataBytes = 2 * (length / 2);
  packet_.resize(kHeaderBytes + dataBytes);
  char* out = packet_.data();
  putWord(out, static_cast<uint16_t>((placement_.triggered ? kTriggeredBit : 0) | (ris ? kRisBit : 0)));
  putWord(out + 2, static_cast<uint16_t>(mode << 8));
  out += kHeaderBytes;

  switch (mode) {
    case 0: {
      // Averaging over AP + 1 acquisitions (AR + 1 in RIS) narrows the noise by its square root.
      const double averages = 1.0 + (ris ? setup.AR : setup.AP);
      encodeCodes8(setup, length, noise / std::sqrt(averages), out);
      break;
    }
    case 1:
      // Hi-res averages four conversions per sample.
      encodeCodes16(setup, length, noise / 2.0, out);
      break;
    case 2:
      encodePairs(setup, length / 2, 2.0 * dt, noise, out);
      break;
    case 3:
      encodePairs(setup, length, dt, noise, out);
      break;
    default:
      // Plain samples; the modes the device does not define come out the same way.
      encodeCodes8(setup, length, noise, out);
      break;
  }
  return packet_;
}

void PacketBuilder::encodeCodes8(const AcquisitionSetup& setup, size_t count, double noiseRms, char* out) {
  volts_.resize(count);
  generator_.cleanGrid(placement_.start, setup.samplePeriod(), volts_.data(), count);
  generator_.addNoise(volts_.data(), count, noiseRms);
  CodeScale(setup, 32.0f, 128.0f, 255.0f).bytes(volts_.data(), count, out);
}

void PacketBuilder::encodeCodes16(const AcquisitionSetup& setup, size_t count, double noiseRms, char* out) {
  volts_.resize(count);
  generator_.cleanGrid(placement_.start, setup.samplePeriod(), volts_.data(), count);
  generator_.addNoise(volts_.data(), count, noiseRms);
  CodeScale(setup, 32.0f * 256.0f, 32768.0f, 65535.0f).words(volts_.data(), count, out);
}

void PacketBuilder::encodePairs(const AcquisitionSetup& setup, size_t pairs, double span, double noiseRms,
                                char* out) {
  // Each pair covers one span; the values at the span ends come from one grid.
  volts_.resize(3 * pairs + 1);
  float* ends = volts_.data();
  float* minMax = ends + pairs + 1;
  generator_.cleanGrid(placement_.start, span, ends, pairs + 1);
  generator_.envelope(placement_.start, span, ends, pairs, minMax);
  if (noiseRms > 0) {
    // The detector keeps the extremes of many conversions, so noise widens each pair outward:
    // the minimum down, the maximum up.
    const auto sigma = static_cast<float>(noiseRms);
    constexpr size_t kBlock = 256;  // even, so that a block holds whole pairs
    static constexpr std::array<float, kBlock> kOutward = [] {
      std::array<float, kBlock> signs{};
      for (size_t j = 0; j < kBlock; ++j) signs[j] = j % 2 == 0 ? -1.0f : 1.0f;
      return signs;
    }();
    std::array<float, kBlock> normals{};
    size_t begin = 0;
    for (; begin + kBlock <= 2 * pairs; begin += kBlock) {
      generator_.random().fillGaussian(normals.data(), kBlock);
      for (size_t j = 0; j < kBlock; ++j)  // a fixed count vectorizes
        minMax[begin + j] += kOutward[j] * sigma * (1.0f + std::fabs(normals[j]));
    }
    const size_t tail = std::min(kBlock, 2 * pairs - begin);
    generator_.random().fillGaussian(normals.data(), tail);
    for (size_t j = 0; j < tail; ++j)
      minMax[begin + j] += kOutward[j] * sigma * (1.0f + std::fabs(normals[j]));
  }
  CodeScale(setup, 32.0f, 128.0f, 255.0f).bytes(minMax, 2 * pairs, out);
}

}  // namespace zorvik
