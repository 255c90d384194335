#include "sim/sim_config.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "core/fault.h"

namespace zorvik {

namespace {

std::string_view trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
  return s;
}

[[noreturn]] void badValue(std::string_view key, std::string_view value, std::string_view why) {
  throw Fault("bad --sim value for " + std::string(key) + ": \"" + std::string(value) + "\" (" +
              std::string(why) + ")");
}

// Decimal, or hexadecimal with 0x, as registers are often written.
uint64_t parseUnsigned(std::string_view key, std::string_view value, uint64_t lo, uint64_t hi) {
  std::string_view digits = value;
  int base = 10;
  if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
    digits.remove_prefix(2);
    base = 16;
  }
  uint64_t result = 0;
  const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), result, base);
  if (digits.empty() || ec != std::errc() || end != digits.data() + digits.size())
    badValue(key, value, "not a whole number");
  if (result < lo || result > hi)
    badValue(key, value, "allowed " + std::to_string(lo) + " to " + std::to_string(hi));
  return result;
}

int64_t parseSigned(std::string_view key, std::string_view value, int64_t lo, int64_t hi) {
  int64_t result = 0;
  const auto [end, ec] = std::from_chars(value.data(), value.data() + value.size(), result);
  if (value.empty() || ec != std::errc() || end != value.data() + value.size())
    badValue(key, value, "not a whole number");
  if (result < lo || result > hi)
    badValue(key, value, "allowed " + std::to_string(lo) + " to " + std::to_string(hi));
  return result;
}

double parseReal(std::string_view key, std::string_view value, double lo, double hi, bool loOpen) {
  double result = 0;
  const auto [end, ec] = std::from_chars(value.data(), value.data() + value.size(), result);
  if (value.empty() || ec != std::errc() || end != value.data() + value.size() || !std::isfinite(result))
    badValue(key, value, "not a number");
  if (result > hi || result < lo || (loOpen && result == lo)) badValue(key, value, "out of range");
  return result;
}

Waveform parseWaveform(std::string_view value) {
  if (value == "sine") return Waveform::Sine;
  if (value == "square") return Waveform::Square;
  if (value == "triangle") return Waveform::Triangle;
  if (value == "dc") return Waveform::Dc;
  if (value == "noise") return Waveform::Noise;
  badValue("signal", value, "sine, square, triangle, dc or noise");
}

void applyFault(SimFaults& faults, std::string_view value) {
  if (value == "nodevice") {
    faults.noDevice = true;
  } else if (value == "noport") {
    faults.noPort = true;
  } else if (value == "boot") {
    faults.boot = true;
  } else if (value == "badheader") {
    faults.badHeader = true;
  } else if (value == "notrigger") {
    faults.noTrigger = true;
  } else if (value.starts_with("lost:")) {
    faults.lostAfter = parseUnsigned("fault", value.substr(5), 1, std::numeric_limits<int64_t>::max());
  } else if (value.starts_with("missing:")) {
    const std::string_view name = value.substr(8);
    if (std::find(kSimPropertyNames.begin(), kSimPropertyNames.end(), name) == kSimPropertyNames.end())
      badValue("fault", value, "not a property name");
    faults.missing.emplace(name);
  } else {
    badValue("fault", value, "nodevice, noport, boot, lost:N, badheader, notrigger or missing:NAME");
  }
}

struct NumberKey {
  std::string_view name;
  uint32_t SimConfig::*member;
  uint32_t lo;
  uint32_t hi;
};

// The clock register MC travels in two bytes, so no clock period beyond 65535 can be set.
constexpr NumberKey kNumberKeys[] = {
    {"MCd", &SimConfig::MCd, 1, 65535},       {"MCl", &SimConfig::MCl, 1, 65535},
    {"MCh", &SimConfig::MCh, 1, 65535},       {"TOv", &SimConfig::TOv, 0, 0xFFFFFFFFu},
    {"TOl", &SimConfig::TOl, 0, 0xFFFFFFFFu}, {"TMl", &SimConfig::TMl, 0, 0xFFFFFFFFu},
    {"TMh", &SimConfig::TMh, 0, 0xFFFFFFFFu}, {"TPl", &SimConfig::TPl, 0, 0xFFFFFFFFu},
    {"QSh", &SimConfig::QSh, 2, 65535},
};

void applyOne(SimConfig& c, std::string_view key, std::string_view value) {
  for (const NumberKey& k : kNumberKeys) {
    if (key == k.name) {
      c.*k.member = static_cast<uint32_t>(parseUnsigned(key, value, k.lo, k.hi));
      return;
    }
  }
  if (key == "signal")
    c.signal = parseWaveform(value);
  else if (key == "freq")
    c.freq = parseReal(key, value, 0, 1e10, true);
  else if (key == "vpp")
    c.vpp = parseReal(key, value, 0, 1e6, false);
  else if (key == "offset")
    c.offset = parseReal(key, value, -1e6, 1e6, false);
  else if (key == "noise")
    c.noise = parseReal(key, value, 0, 1e6, false);
  else if (key == "seed")
    c.seed = parseUnsigned(key, value, 0, std::numeric_limits<uint64_t>::max());
  else if (key == "rate")
    c.rate = value == "max" ? 0.0 : parseReal(key, value, 0, 1e5, true);
  else if (key == "VNM")
    c.VNM = value;
  else if (key == "VSN")
    c.VSN = value;
  else if (key == "VHW")
    c.VHW = value;
  else if (key == "VSW")
    c.VSW = value;
  else if (key == "TCh")
    c.TCh = static_cast<uint32_t>(parseUnsigned(key, value, 0, 65535));
  else if (key == "P1h")
    c.P1h = static_cast<int16_t>(parseSigned(key, value, -32768, 32767));
  else if (key == "P1l")
    c.P1l = static_cast<int16_t>(parseSigned(key, value, -32768, 32767));
  else if (key == "L_B")
    c.L_B = static_cast<uint8_t>(parseUnsigned(key, value, 0, 255));
  else if (key == "fault")
    applyFault(c.faults, value);
  else
    throw Fault("unknown --sim key: " + std::string(key));
}

}  // namespace

int SimConfig::pacingMs() const {
  if (rate <= 0) return 0;
  return static_cast<int>(std::lround(std::min(1000.0 / rate, 1e9)));
}

uint32_t SimConfig::qshForMode(uint8_t m1) const {
  const uint8_t mode = m1 & 7;
  // Two-byte modes fill the same memory with half the samples.
  return (mode == 1 || mode == 3) ? QSh / 2 : QSh;
}

uint32_t SimConfig::tchForMode(uint8_t m1) const {
  const uint32_t qsh = qshForMode(m1);
  if (TCh) return std::min(*TCh, qsh);
  return qsh > 16 ? qsh - 16 : 0;
}

void applySimOptions(SimConfig& config, std::string_view text) {
  SimConfig next = config;
  while (!text.empty()) {
    const size_t comma = text.find(',');
    const std::string_view item = trim(text.substr(0, comma));
    text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    if (item.empty()) continue;
    const size_t eq = item.find('=');
    if (eq == std::string_view::npos) throw Fault("--sim option without '=': " + std::string(item));
    applyOne(next, trim(item.substr(0, eq)), trim(item.substr(eq + 1)));
  }
  if (next.MCl > next.MCh)
    throw Fault("bad --sim clock limits: MCl " + std::to_string(next.MCl) + " is above MCh " +
                std::to_string(next.MCh));
  if (next.P1l > next.P1h)
    throw Fault("bad --sim offset limits: P1l " + std::to_string(next.P1l) + " is above P1h " +
                std::to_string(next.P1h));
  config = std::move(next);
}

SimConfig parseSimConfig(std::string_view text) {
  SimConfig config;
  applySimOptions(config, text);
  return config;
}

}  // namespace zorvik
