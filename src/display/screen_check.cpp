#include "display/screen_check.h"

namespace zorvik {

ScreenCheck checkScreen(ScreenSize window, ScreenSize screen, const std::vector<ScreenSize>& modes) {
  ScreenCheck c;
  if (window.width <= screen.width && window.height <= screen.height) return c;
  for (const ScreenSize& m : modes) {
    if (m.width < window.width || m.height < window.height) continue;
    c.outcome = ScreenCheck::Outcome::Ask;
    c.mode = m;
    c.text =
        "Current screen resolution is insufficient.\r\nZorvik need to extend the workspace.\r\n"
        "Are you shure to change display\r\nsetting to " +
        std::to_string(m.width) + "x" + std::to_string(m.height) + " ?";
    return c;
  }
  c.outcome = ScreenCheck::Outcome::Insufficient;
  c.text = "Max screen resolution insufficient";
  return c;
}

}  // namespace zorvik
