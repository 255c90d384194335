#include "app/trigger_marker.h"

#include <QMouseEvent>
#include <QPainter>

#include "control/trigger_control.h"
#include "core/latin1_text.h"
#include "display/scope_display.h"

namespace zorvik {

namespace {
constexpr int kStripWidth = 16;
// The vertical zoom's view position as a share of its scroll: 0 the bottom, 1 the top.
constexpr double kMin = 0, kMax = 1;
double zoomOf(const ScopeDisplay& d) {
  return d.inputs().vZoom > 0 ? d.inputs().vZoom : 1;
}
double positionOf(const ScopeDisplay& d) {
  return d.inputs().vViewFrac + 0.5;
}
}  // namespace

TriggerMarker::TriggerMarker(TriggerControl& trigger, const ScopeDisplay& display, QWidget* parent)
    : QWidget(parent), trigger_(trigger), display_(display) {
  setObjectName("TrigInd1");
  setToolTip("Trigger level: drag to move");
  setCursor(Qt::SizeVerCursor);
  refresh();
}

QSize TriggerMarker::sizeHint() const {
  return {kStripWidth, display_.canvas().geometry().windowHeight()};
}

void TriggerMarker::refresh() {
  // As high as the display at most: a display fitted to the window may shrink, and the strip with it.
  setFixedWidth(kStripWidth);
  setMinimumHeight(1);
  setMaximumHeight(sizeHint().height());
  updateGeometry();
  update();
}

int TriggerMarker::levelAt(int y) const {
  const DisplayGeometry& g = display_.canvas().geometry();
  // The inverse of the display's row to pixel mapping.
  const double row = kTraceRows - static_cast<double>(y * g.ratio - g.margin()) * 2 / g.halfScale();
  return TriggerControl::levelFromMarker(row, zoomOf(display_), positionOf(display_), kMin, kMax);
}

void TriggerMarker::paintEvent(QPaintEvent*) {
  QPainter p(this);
  p.fillRect(rect(), palette().window());
  const int level = trigger_.model().level;
  const int row =
      static_cast<int>(TriggerControl::markerTop(level, zoomOf(display_), positionOf(display_), kMin, kMax));
  const DisplayGeometry& g = display_.canvas().geometry();
  const int y = g.pixelY(row) / g.ratio;
  QFont f = font();
  f.setBold(true);
  p.setFont(f);
  p.setPen(Qt::darkYellow);
  p.drawLine(0, y, 3, y);
  const QString caption = latin1Text(trigger_.model().TrigInd1);
  p.setPen(palette().windowText().color());
  p.drawText(QRect(3, y - 8, width() - 3, 16), Qt::AlignCenter, caption.trimmed().isEmpty() ? "-" : caption);
}

void TriggerMarker::mousePressEvent(QMouseEvent* event) {
  trigger_.setLevel(levelAt(event->position().toPoint().y()));
}

void TriggerMarker::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() & Qt::LeftButton) trigger_.setLevel(levelAt(event->position().toPoint().y()));
}

}  // namespace zorvik
