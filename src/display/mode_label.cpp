#include "display/mode_label.h"

namespace zorvik {

namespace {
constexpr const char* kLong[11] = {"",         "S.Average", "M.Average", "S.HiRes", "M.HiRes", "iPeakDet",
                                   "iEnvelop", "nPeakDet",  "nEnvelop",  "Sample",  "Average"};
constexpr const char* kShort[11] = {"",      "sAvg",  "mAvg",  "sHiRe", "mHiRe", "iPkDt",
                                    "iEnvl", "nPkDt", "nEnvl", "Smpl",  "Avg"};
}  // namespace

int modeCode(uint32_t mode, bool multi) {
  if (mode > 0x400 || (mode & 0xFF) != 0) return 0;
  return static_cast<int>(mode >> 8) * 2 + (multi ? 2 : 1);
}

const char* modeLongText(int code) {
  return code >= 0 && code <= 10 ? kLong[code] : "";
}

const char* modeShortText(int code) {
  return code >= 0 && code <= 10 ? kShort[code] : "";
}

bool ModeLabel::SetModeLabel(uint32_t mode, bool multi, int n, bool longTexts) {
  if (n < 1 || n > 4) return false;
  int code = modeCode(mode, multi);
  // A mode without a name shows what the segment showed last.
  if (code != 0)
    codes_[n - 1] = code;
  else
    code = codes_[n - 1];
  if (n != 1 || code == 0) return false;
  const char* text = longTexts ? modeLongText(code) : modeShortText(code);
  if (text_ == text) return false;
  text_ = text;
  return true;
}

bool ModeLabel::refresh(bool longTexts) {
  const int code = codes_[0];
  if (code == 0) return false;
  const char* text = longTexts ? modeLongText(code) : modeShortText(code);
  if (text_ == text) return false;
  text_ = text;
  return true;
}

}  // namespace zorvik
