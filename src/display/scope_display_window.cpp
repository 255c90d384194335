#include "display/scope_display_window.h"

#include <QGuiApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QToolTip>
#include <algorithm>

#include "core/messages.h"
#include "display/label_painter.h"
#include "display/screen_check.h"
#include "link/main_state.h"
#include "ui/window_place_qt.h"

namespace zorvik {

ScopeDisplayWindow::ScopeDisplayWindow(ScopeDisplay& display, QWidget* parent)
    : QWidget(parent), display_(display), mouse_(display.mouse()) {
  setObjectName("Display");
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);  // the cursor's read-out follows the mouse
  display_.onPainted = [this] { update(); };
  display_.onGeometryChanged = [this] { geometryChanged(); };
  display_.onCleared = [this] { update(); };
  geometryChanged();
}

ScopeDisplayWindow::~ScopeDisplayWindow() {
  display_.onPainted = nullptr;
  display_.onGeometryChanged = nullptr;
  display_.onCleared = nullptr;
}

void ScopeDisplayWindow::geometryChanged() {
  setFixedSize(display_.canvas().width(), display_.canvas().height());
  updateGeometry();
  update();
}

QSize ScopeDisplayWindow::sizeHint() const {
  return {display_.canvas().width(), display_.canvas().height()};
}

void ScopeDisplayWindow::showState(const MainState& state) {
  DisplayLabels& l = display_.labels();
  l.ModeTransparant = state.modeText;
  l.modeColor = state.modeColor;
  l.RISmodeTransparant = state.risVisible ? state.risCaption : std::string();
  l.noTrigger = state.noTriggerVisible;
  update();
}

void ScopeDisplayWindow::clear() {
  display_.clearDisplay();
}

void ScopeDisplayWindow::paintEvent(QPaintEvent*) {
  QPainter p(this);
  p.drawImage(0, 0, display_.canvas().image());
  paintLabels(p, display_.labels(), display_.settings(), display_.canvas().geometry());
  paintMouseTools(p);
}

QPoint ScopeDisplayWindow::logicalAt(QPoint pixel) const {
  const DisplayGeometry& g = display_.canvas().geometry();
  const int x = (pixel.x() - kPictureMargin) * 2 / g.halfScale();
  const int y = kTraceRows - (pixel.y() - kPictureMargin) * 2 / g.halfScale();
  return {std::clamp(x, 0, display_.plotWidth()), std::clamp(y, 0, kTraceRows)};
}

MouseScale ScopeDisplayWindow::mouseScale() const {
  MouseScale s;
  s.secondsPerUnit = static_cast<double>(display_.timeView().TimePerDiv) / kDivisionUnits;
  s.timeAtLeft = display_.timeView().ViewCentre - display_.plotWidth() / 2.0 * s.secondsPerUnit;
  s.voltsPerRow = static_cast<double>(display_.inputs().voltPerDiv) / kDivisionUnits;
  return s;
}

void ScopeDisplayWindow::mousePressEvent(QMouseEvent* event) {
  const QPoint at = logicalAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton)
    mouse_.leftDown(at.x(), at.y());
  else if (event->button() == Qt::RightButton)
    mouse_.rightDown(at.x(), at.y());
  else
    return;
  QToolTip::hideText();
  setCursor(Qt::CrossCursor);
  update();
}

void ScopeDisplayWindow::mouseMoveEvent(QMouseEvent* event) {
  const QPoint at = logicalAt(event->position().toPoint());
  if (event->buttons() & Qt::LeftButton) {
    mouse_.leftMove(at.x(), at.y(), mouseScale());
    update();
  } else if (event->buttons() & Qt::RightButton) {
    mouse_.rightMove(at.x(), at.y());
    update();
  } else if (QToolTip::isVisible()) {
    QToolTip::showText(event->globalPosition().toPoint(),
                       QString::fromStdString(DisplayMouse::cursorText(at.x(), at.y(), mouseScale())), this);
  }
}

void ScopeDisplayWindow::mouseReleaseEvent(QMouseEvent* event) {
  unsetCursor();
  if (event->button() == Qt::LeftButton) {
    mouse_.leftUp();
  } else if (event->button() == Qt::RightButton && mouse_.rightUp() && onSelection) {
    onSelection(mouse_.selection(), event->globalPosition().toPoint());
  }
}

bool ScopeDisplayWindow::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    auto* help = static_cast<QHelpEvent*>(event);
    const QPoint at = logicalAt(help->pos());
    QToolTip::showText(help->globalPos(),
                       QString::fromStdString(DisplayMouse::cursorText(at.x(), at.y(), mouseScale())), this);
    return true;
  }
  return QWidget::event(event);
}

void ScopeDisplayWindow::paintMouseTools(QPainter& p) const {
  const DisplayGeometry& g = display_.canvas().geometry();
  const int left = g.pixelX(0), right = g.pixelX(display_.plotWidth()), top = g.pixelY(kTraceRows),
            bottom = g.pixelY(0);
  const QFontMetrics fm(font());
  p.setFont(font());
  if (const DisplayMouse::Marker& m = mouse_.vertical(); m.visible) {
    const int x = g.pixelX(m.at);
    p.setPen(QPen(Qt::white, 1, Qt::DashLine));
    p.drawLine(x, top, x, bottom);
    const QString text = QString::fromStdString(m.text);
    const int w = fm.horizontalAdvance(text);
    const int tx = m.textAfter ? x + 3 : x - 3 - w;
    p.setPen(Qt::white);
    p.drawText(tx, g.pixelY(m.textAlong) + fm.ascent() / 2, text);
  }
  if (const DisplayMouse::Marker& m = mouse_.horizontal(); m.visible) {
    const int y = g.pixelY(m.at);
    p.setPen(QPen(Qt::white, 1, Qt::DashLine));
    p.drawLine(left, y, right, y);
    const QString text = QString::fromStdString(m.text);
    const int w = fm.horizontalAdvance(text);
    const int ty = m.textAfter ? y - 3 : y + 3 + fm.ascent();
    p.setPen(Qt::white);
    p.drawText(g.pixelX(m.textAlong) - w / 2, ty, text);
  }
  if (const DisplayMouse::Selection& s = mouse_.selection(); s.visible) {
    p.setPen(QPen(Qt::white, 1, Qt::DotLine));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRect(QPoint(g.pixelX(s.left()), g.pixelY(s.top())),
                     QPoint(g.pixelX(s.right()), g.pixelY(s.bottom()))));
  }
}

void checkScreenFor(QWidget* window, MessageSink& messages, const std::string& title) {
  if (!window) return;
  QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
  if (!screen) return;
  std::vector<ScreenSize> modes;
  for (QScreen* s : QGuiApplication::screens()) modes.push_back({s->size().width(), s->size().height()});
  const QSize size = window->frameGeometry().size();
  const ScreenCheck c =
      checkScreen({size.width(), size.height()}, {screen->size().width(), screen->size().height()}, modes);
  if (c.outcome == ScreenCheck::Outcome::Ask)
    messages.show(BoxKind::Question, title, c.text);
  else if (c.outcome == ScreenCheck::Outcome::Insufficient)
    messages.show(BoxKind::Information, title, c.text);
  // A window that grew (a larger zoom) comes back into the work area even when the screen holds it.
  moveIntoScreen(window);
}

}  // namespace zorvik
