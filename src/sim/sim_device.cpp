#include "sim/sim_device.h"

#include <algorithm>

namespace zorvik {

namespace {

struct RegisterLayout {
  std::string_view name;
  int width;  // bytes on the link
};

constexpr std::array<RegisterLayout, SimDevice::kRegisterCount> kRegisters = {{
    {"MC", 2}, {"TS", 4}, {"RS", 1}, {"QS", 2}, {"TC", 2}, {"V1", 2}, {"P1", 2}, {"O1", 1},
    {"M1", 1}, {"T1", 1}, {"S1", 1}, {"TD", 4}, {"TA", 4}, {"TW", 4}, {"RT", 1}, {"AP", 1},
    {"AR", 1}, {"G1", 1}, {"G2", 1}, {"Gs", 4}, {"Lt", 4}, {"L1", 4}, {"L2", 4},
}};

uint32_t maskToWidth(uint32_t bits, int width) {
  if (width == 1) return bits & 0xFFu;
  if (width == 2) return bits & 0xFFFFu;
  return bits;
}

// The sensitivities the input stage has, mV per division. A write between two of them is taken as
// it stands (the program's fine setting sends such values); beyond the ends it goes to the nearer end.
constexpr std::array<uint32_t, 9> kSensitivities = {20, 50, 100, 200, 500, 1000, 2000, 5000, 10000};
constexpr uint32_t kPowerOnSensitivity = 200;

std::string fourChars(std::string_view text) {
  std::string field(text.substr(0, 4));
  field.resize(4, ' ');
  return field;
}

}  // namespace

std::string bigEndianBytes(uint32_t value, int width) {
  std::string bytes(static_cast<size_t>(width), '\0');
  for (int i = width - 1; i >= 0; --i) {
    bytes[static_cast<size_t>(i)] = static_cast<char>(value & 0xFF);
    value >>= 8;
  }
  return bytes;
}

SimDevice::SimDevice(const SimConfig& config) : config_(config) {
  // Power-on trigger (a rising edge at mid-screen), so a bare device already shows a steady trace.
  const AcquisitionSetup powerOn;
  values_[*indexOf("T1")] = powerOn.T1;
  values_[*indexOf("S1")] = powerOn.S1;
  values_[*indexOf("V1")] = kPowerOnSensitivity;
}

std::optional<size_t> SimDevice::indexOf(std::string_view name) const {
  for (size_t i = 0; i < kRegisters.size(); ++i)
    if (kRegisters[i].name == name) return i;
  return std::nullopt;
}

uint32_t SimDevice::get(std::string_view name) const {
  const std::optional<size_t> i = indexOf(name);
  return i ? values_[*i] : 0;
}

bool SimDevice::write(std::string_view name, uint32_t bits) {
  const std::optional<size_t> i = indexOf(name);
  if (!i) return false;
  uint32_t v = maskToWidth(bits, kRegisters[*i].width);
  const uint8_t mode = static_cast<uint8_t>(get("M1"));
  if (name == "MC") {
    const uint32_t lo = std::min<uint32_t>(config_.MCl, 0xFFFF);
    const uint32_t hi = std::max(lo, std::min<uint32_t>(config_.MCh, 0xFFFF));
    v = std::clamp(v, lo, hi);
  } else if (name == "TS") {
    v = std::max(v, config_.TMl);
  } else if (name == "V1") {
    v = std::clamp(v, kSensitivities.front(), kSensitivities.back());
  } else if (name == "QS") {
    v = std::min(v, config_.qshForMode(mode));
  } else if (name == "TC") {
    v = std::min(v, config_.tchForMode(mode));
  } else if (name == "P1") {
    const int lo = config_.P1l;
    const int hi = std::max<int>(lo, config_.P1h);
    const int offset = std::clamp<int>(static_cast<int16_t>(v), lo, hi);
    v = static_cast<uint16_t>(offset);
  }
  values_[*i] = v;
  return true;
}

std::optional<int64_t> SimDevice::value(std::string_view name) const {
  const std::optional<size_t> i = indexOf(name);
  if (!i) return std::nullopt;
  if (name == "P1") return static_cast<int16_t>(values_[*i]);
  return values_[*i];
}

std::optional<std::string> SimDevice::registerBytes(std::string_view name) const {
  const std::optional<size_t> i = indexOf(name);
  if (!i) return std::nullopt;
  return bigEndianBytes(values_[*i], kRegisters[*i].width);
}

std::optional<std::string> SimDevice::propertyBytes(std::string_view name) const {
  if (config_.faults.missing.count(std::string(name)) != 0) return std::nullopt;
  const uint8_t mode = static_cast<uint8_t>(get("M1"));
  if (name == "VNM") return config_.VNM;
  if (name == "VSN") return config_.VSN;
  if (name == "VHW") return config_.VHW;
  if (name == "VSW") return config_.VSW;
  if (name == "MCd") return bigEndianBytes(config_.MCd, 4);
  if (name == "MCl") return bigEndianBytes(config_.MCl, 4);
  if (name == "MCh") return bigEndianBytes(config_.MCh, 4);
  if (name == "TOv") return bigEndianBytes(config_.TOv, 4);
  if (name == "TOl") return bigEndianBytes(config_.TOl, 4);
  if (name == "TMl") return bigEndianBytes(config_.TMl, 4);
  if (name == "TMh") return bigEndianBytes(config_.TMh, 4);
  if (name == "TPl") return bigEndianBytes(config_.TPl, 4);
  if (name == "QSh") return bigEndianBytes(config_.qshForMode(mode), 4);
  if (name == "TCh") return bigEndianBytes(config_.tchForMode(mode), 4);
  if (name == "P1h") return bigEndianBytes(static_cast<uint16_t>(config_.P1h), 2);
  if (name == "P1l") return bigEndianBytes(static_cast<uint16_t>(config_.P1l), 2);
  if (name == "L_B") return bigEndianBytes(config_.L_B, 1);
  return std::nullopt;
}

AcquisitionSetup SimDevice::setup() const {
  AcquisitionSetup s;
  s.MC = get("MC");
  s.TS = get("TS");
  s.QS = get("QS");
  s.TC = get("TC");
  s.TD = get("TD");
  s.TA = get("TA");
  s.TW = get("TW");
  s.V1 = static_cast<uint16_t>(get("V1"));
  s.P1 = static_cast<int16_t>(get("P1"));
  s.O1 = static_cast<uint8_t>(get("O1"));
  s.M1 = static_cast<uint8_t>(get("M1"));
  s.T1 = static_cast<uint8_t>(get("T1"));
  s.S1 = static_cast<uint8_t>(get("S1"));
  s.RS = static_cast<uint8_t>(get("RS"));
  s.RT = static_cast<uint8_t>(get("RT"));
  s.AP = static_cast<uint8_t>(get("AP"));
  s.AR = static_cast<uint8_t>(get("AR"));
  s.MCd = config_.MCd;
  s.qsh = config_.qshForMode(s.M1);
  s.triggerDead = config_.faults.noTrigger;
  // The fast sampler's floor: the fewest clocks per sample it can do; bit 0 is half a clock.
  s.risFloor = 256;
  for (uint32_t n = 0; n < 32; ++n) {
    if ((config_.TOv >> n) & 1u) {
      s.risFloor = n == 0 ? 128 : n * 256;
      break;
    }
  }
  return s;
}

std::string SimDevice::modelCode() const {
  const size_t space = config_.VNM.find_last_of(' ');
  std::string code = space == std::string::npos ? config_.VNM : config_.VNM.substr(space + 1);
  return code.empty() ? config_.VNM : code;
}

std::string SimDevice::identity() const {
  const std::string& serial = config_.VSN;
  const std::string lastFour = serial.size() > 4 ? serial.substr(serial.size() - 4) : serial;
  return fourChars(modelCode()) + fourChars(config_.VHW) + fourChars(lastFour) + fourChars("1.00");
}

}  // namespace zorvik
