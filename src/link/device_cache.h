#pragma once
#include <array>
#include <cstdint>
#include <string>

namespace zorvik {

constexpr int kLimitRows = 40;
constexpr int kLimitColumns = 16;
constexpr int kVoltDivPositions = 33;

// The program's knowledge of the device: properties, registers and the per-mode limit tables.
struct DeviceCache {
  // Properties.
  std::string VHW, VSW, VSN, VNM;
  int32_t MCd = 0, MCl = 0, MCh = 0;
  int32_t TOv = 0, TOl = 0, TMl = 0, TMh = 0, TPl = 0;
  int16_t P1h = 0, P1l = 0;
  int32_t D1m = 0;
  // Registers.
  int32_t MC = 0, TS = 0;
  uint8_t RS = 0, AP = 0, AR = 0, RT = 0;
  int32_t QS = 0, TC = 0, TCh = 0, QSh = 0;
  int32_t TD = 0, TA = 0, TW = 0;
  uint8_t O1 = 0;
  int32_t V1 = 0;
  int16_t P1 = 0;
  uint8_t M1 = 0, T1 = 0, S1 = 0, G1 = 0, G2 = 0;
  int32_t Gs = 0, Lt = 0, L1 = 0, L2 = 0;

  std::array<std::array<int32_t, kLimitColumns>, kLimitRows> QShTable{};
  std::array<std::array<int32_t, kLimitColumns>, kLimitRows> TChTable{};
  std::array<int16_t, kVoltDivPositions> P1hTable{}, P1lTable{};
  std::array<bool, kVoltDivPositions> P1hValid{}, P1lValid{};

  // Lowest sampling period of the fast sampler, clocks x 256 (bit 0 of TOv stands for half a clock).
  int32_t fastFloor() const;
  int samplingClass(int32_t ts) const;
  int samplingClass() const { return samplingClass(TS); }
  int limitRow(int32_t ts) const { return samplingClass(ts) * 8 + (RS & 7); }
  int limitRow() const { return limitRow(TS); }
  int limitColumn() const { return (AP != 0 ? 8 : 0) + (M1 & 7); }

  // What each session start and end forgets; the registers stay to be written back next time.
  void clearSession();
};

}  // namespace zorvik
