#include "measure/meter_state.h"

#include <algorithm>
#include <bit>

#include "measure/meter_text.h"

namespace zorvik {

namespace {
const float kMinStart = std::bit_cast<float>(0x7F7FFFFDu);  // close to the largest float
constexpr float kMaxStart = -3.402823e38f;
}  // namespace

void MeterState::ResetMeter() {
  MinReset();
  MaxReset();
  AvgReset();
}

void MeterState::MinReset() {
  MinValue = kMinStart;
  MinVal.clear();
}

void MeterState::MaxReset() {
  MaxValue = kMaxStart;
  MaxVal.clear();
}

void MeterState::AvgReset() {
  AvgRestart = true;
  AvgVal.clear();
}

bool MeterState::accept(float value, const std::string& status, Clocks& clocks, uint32_t nowMs,
                        bool& curChanged, bool& minChanged, bool& maxChanged) {
  if (stopped) return false;
  if (!status.empty()) {
    CurVal = status;
    ForceShow = true;
    return false;
  }
  curChanged = value != LastValue || ForceShow;
  if (curChanged) {
    LastValue = value;
    ForceShow = false;
  }
  maxChanged = LastValue > MaxValue;
  if (maxChanged) MaxValue = LastValue;
  minChanged = LastValue < MinValue;
  if (minChanged) MinValue = LastValue;
  if (AvgRestart) {
    AvgRestart = false;
    AvgValue = LastValue;
    clocks.StartTick = nowMs;
  } else {
    const double dt = static_cast<uint32_t>(nowMs - clocks.LastTick);
    const double T = std::min<double>(AvgTimeMs, static_cast<uint32_t>(nowMs - clocks.StartTick));
    const double k = dt > T ? 1 : dt / T;
    AvgValue = static_cast<float>(LastValue * k + (1 - k) * AvgValue);
  }
  clocks.LastTick = nowMs;
  return true;
}

void MeterState::Ind(bool detail, const std::string& unit, float value, float resolution,
                     const std::string& status, uint32_t nowMs) {
  bool cur = false, min = false, max = false;
  if (!accept(value, status, indClocks_, nowMs, cur, min, max)) return;
  const MeterDigits form = detail ? MeterDigits::Four : MeterDigits::Three;
  const double r = static_cast<double>(resolution) * 32;
  if (cur) CurVal = meterEngineeringText(LastValue, r, unit, true, form);
  if (max) MaxVal = meterEngineeringText(MaxValue, r, unit, true, form);
  if (min) MinVal = meterEngineeringText(MinValue, r, unit, true, form);
  AvgVal = meterEngineeringText(AvgValue, 0, unit, true, detail ? MeterDigits::Five : MeterDigits::Four);
}

void MeterState::IndF(const std::string& unit, float value, const std::string& picture,
                      const std::string& status, uint32_t nowMs) {
  bool cur = false, min = false, max = false;
  if (!accept(value, status, indFClocks_, nowMs, cur, min, max)) return;
  if (cur) CurVal = formatPicture(LastValue, picture) + unit;
  if (max) MaxVal = formatPicture(MaxValue, picture) + unit;
  if (min) MinVal = formatPicture(MinValue, picture) + unit;
  AvgVal = formatPicture(AvgValue, picture) + unit;
}

}  // namespace zorvik
