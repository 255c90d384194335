#include "display/display_roll.h"

#include "display/scope_display.h"

namespace zorvik {

namespace {
uint32_t itemRgb(int item) {
  return itemColor(item, 255) & 0xFFFFFF;
}
}  // namespace

void DisplayRollCanvas::clear() {
  display_.clearDisplay();
}

void DisplayRollCanvas::moveTo(int x, int y) {
  display_.canvas().moveTo(x, y);
}

void DisplayRollCanvas::lineTo(int x, int y, uint32_t rgb) {
  display_.canvas().lineTo(x, y, 0xFF000000 | rgb);
  if (display_.onPainted) display_.onPainted();
}

void DisplayRollCanvas::point(int x, int y, uint32_t rgb, int width) {
  DisplayCanvas& c = display_.canvas();
  const int was = c.drawWidth();
  c.setDrawWidth(width);
  c.point(x, y, 0xFF000000 | rgb);
  c.setDrawWidth(was);
  if (display_.onPainted) display_.onPainted();
}

void DisplayRollCanvas::line(int x1, int y1, int x2, int y2, uint32_t rgb) {
  display_.canvas().line(x1, y1, x2, y2, 0xFF000000 | rgb);
  if (display_.onPainted) display_.onPainted();
}

RollSettings rollSettingsOf(const ScopeDisplay& display, int samplesPerDiv) {
  const DisplaySettings& s = display.settings();
  RollSettings r;
  r.plotWidth = s.plotWidth();
  r.samplesPerDiv = samplesPerDiv;
  r.step = s.xStep();
  r.vZoom = display.inputs().vZoom;
  r.vScrollFrac = display.inputs().vViewFrac;
  r.linePlot = s.linePlot;
  r.psetPlot = s.psetPlot;
  r.varBright = s.varBright;
  r.lineRgb = itemRgb(s.lineColor);
  r.psetRgb = itemRgb(s.pixelColor);
  r.peakRgb = itemRgb(s.peakColor);
  r.lineWidth = s.drawLineWidth();
  return r;
}

}  // namespace zorvik
