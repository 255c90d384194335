#pragma once
#include <string>
#include <vector>

namespace zorvik {

struct ScreenSize {
  int width = 0;
  int height = 0;
};

// The end of SetupDisplay: a window larger than the screen asks for a display mode that holds it.
struct ScreenCheck {
  enum class Outcome { Fits, Ask, Insufficient };
  Outcome outcome = Outcome::Fits;
  ScreenSize mode;   // the first mode that holds the window (Ask)
  std::string text;  // the question, or "Max screen resolution insufficient"
};

// `modes` are the display modes the platform offers, in its order.
ScreenCheck checkScreen(ScreenSize window, ScreenSize screen, const std::vector<ScreenSize>& modes);

}  // namespace zorvik
