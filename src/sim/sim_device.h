#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "sim/acquisition_setup.h"
#include "sim/sim_config.h"

namespace zorvik {

// The instrument's memory: its registers with their link widths, and its properties.
class SimDevice {
 public:
  explicit SimDevice(const SimConfig& config);

  // Takes a write as the hardware can carry it out: cut to the register's width, then clamped to
  // what the device can do (MC, TS, QS, TC, P1, V1). False for a name that is no register.
  bool write(std::string_view name, uint32_t bits);

  // The present value, sign-extended for P1.
  std::optional<int64_t> value(std::string_view name) const;
  // Values as the link carries them: big-endian bytes of the register's width.
  std::optional<std::string> registerBytes(std::string_view name) const;
  // Strings as text, limits in 4 bytes, P1h/P1l in 2 (signed), L_B in 1. Nothing for a name that
  // is no property, or one the device is told to leave unanswered.
  std::optional<std::string> propertyBytes(std::string_view name) const;

  AcquisitionSetup setup() const;

  // The model as the device names itself: the last word of VNM ("ZV-1").
  std::string modelCode() const;
  // The answer to "F": model, hardware revision, serial, loader version, four characters each.
  std::string identity() const;

  static constexpr size_t kRegisterCount = 23;

 private:
  std::optional<size_t> indexOf(std::string_view name) const;
  uint32_t get(std::string_view name) const;

  SimConfig config_;
  std::array<uint32_t, kRegisterCount> values_{};
};

// The value in `width` bytes, most significant first.
std::string bigEndianBytes(uint32_t value, int width);

}  // namespace zorvik
