#pragma once
#include <functional>

#include "signal/roll_stream.h"

namespace zorvik {

class ScopeDisplay;

// The roll stream draws on the display's surface, with the display's colours, widths and zoom.
class DisplayRollCanvas : public RollCanvas {
 public:
  explicit DisplayRollCanvas(ScopeDisplay& display) : display_(display) {}
  void clear() override;
  void moveTo(int x, int y) override;
  void lineTo(int x, int y, uint32_t rgb) override;
  void point(int x, int y, uint32_t rgb, int width) override;
  void line(int x1, int y1, int x2, int y2, uint32_t rgb) override;

 private:
  ScopeDisplay& display_;
};

// What the roll stream reads when a packet starts, from the display's settings and inputs.
RollSettings rollSettingsOf(const ScopeDisplay& display, int samplesPerDiv);

}  // namespace zorvik
