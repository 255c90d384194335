#pragma once
#include <array>
#include <cstdint>
#include <string>

namespace zorvik {

// The code of a segment's mode (S AND 0x700) with or without repeated acquisitions: 1 to 10, 0 for a
// mode that has none.
int modeCode(uint32_t mode, bool multi);
const char* modeLongText(int code);
const char* modeShortText(int code);

// Ch1Transparant: the name of the mode of the packets, long when there is room for it (Wide, or
// ZoomIndex 1 and above), short on the narrow small screen.
class ModeLabel {
 public:
  // Returns true when the text changed.
  bool SetModeLabel(uint32_t mode, bool multi, int n, bool longTexts);
  // The zoom or Wide changed: the same code in the other length.
  bool refresh(bool longTexts);
  const std::string& text() const { return text_; }
  int code(int n) const { return n >= 1 && n <= 4 ? codes_[n - 1] : 0; }

 private:
  std::array<int, 4> codes_{};
  std::string text_;
};

}  // namespace zorvik
