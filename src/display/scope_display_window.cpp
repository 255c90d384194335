#include "display/scope_display_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <map>

#include "core/messages.h"
#include "display/label_painter.h"
#include "display/screen_check.h"
#include "display/trigger_level_text.h"
#include "display/wheel_zoom.h"
#include "link/main_state.h"
#include "ui/window_place_qt.h"

namespace zorvik {

ScopeDisplayWindow::ScopeDisplayWindow(ScopeDisplay& display, QWidget* parent)
    : QWidget(parent),
      display_(display),
      mouse_(display.mouse()),
      paced_(new PacedPaint(this, [this] { update(); })) {
  setObjectName("Display");
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);  // the cursor's read-out follows the mouse
  display_.onPainted = [this] { paced_->request(); };
  display_.onGeometryChanged = [this] { geometryChanged(); };
  display_.onCleared = [this] { paced_->request(); };
  rescale();
  geometryChanged();
}

ScopeDisplayWindow::~ScopeDisplayWindow() {
  display_.onPainted = nullptr;
  display_.onGeometryChanged = nullptr;
  display_.onCleared = nullptr;
}

void ScopeDisplayWindow::geometryChanged() {
  if (fit_) {
    setMinimumSize(minimumSizeHint());
    setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
  } else {
    setFixedSize(sizeHint());
  }
  updateGeometry();
  update();
}

QSize ScopeDisplayWindow::sizeHint() const {
  const DisplayGeometry& g = display_.canvas().geometry();
  return {g.windowWidth(), g.windowHeight()};
}

QSize ScopeDisplayWindow::minimumSizeHint() const {
  if (!fit_) return sizeHint();
  // The smallest fitted picture: one pixel for two units.
  DisplayGeometry g = display_.canvas().zoomGeometry();
  g.half = 1;
  return {g.windowWidth(), g.windowHeight()};
}

void ScopeDisplayWindow::setFitToWindow(bool on) {
  if (fit_ == on) return;
  fit_ = on;
  QWidget* top = window();
  // What the rest of the window takes, measured once: a panel beside the display that is taller than it
  // makes this more than it is, and the display then grows by what the window grows, never beyond.
  chrome_ = top == this ? QSize(0, 0) : (top->sizeHint() - sizeHint()).expandedTo(QSize(0, 0));
  if (watched_ && watched_ != this) watched_->removeEventFilter(this);
  watched_ = on ? top : nullptr;
  if (watched_ && watched_ != this) watched_->installEventFilter(this);
  geometryChanged();
  rescale();
}

QSize ScopeDisplayWindow::fitRoom() const {
  const QWidget* top = window();
  if (top == this) return size();
  return (top->size() - chrome_).expandedTo(QSize(1, 1));
}

void ScopeDisplayWindow::rescale() {
  ScreenScale screen;
  screen.ratio = wholePixelRatio(devicePixelRatioF());
  if (fit_) {
    const QSize room = fitRoom();
    screen.roomWidth = room.width() * screen.ratio;
    screen.roomHeight = room.height() * screen.ratio;
  }
  DisplayCanvas& canvas = display_.canvas();
  if (screen == canvas.screen()) return;
  const DisplayGeometry now = canvas.geometry(), next = screenGeometry(canvas.zoomGeometry(), screen);
  canvas.setScreen(screen);
  // A room that gives the same picture keeps what is drawn.
  if (now.halfScale() == next.halfScale() && now.ratio == next.ratio && now.zoomIndex == next.zoomIndex)
    return;
  display_.SetupDisplay();
  if (onRescaled) onRescaled();
}

void ScopeDisplayWindow::showState(const MainState& state) {
  DisplayLabels& l = display_.labels();
  l.ModeTransparant = state.modeText;
  l.modeColor = state.modeColor;
  l.RISmodeTransparant = state.risVisible ? state.risCaption : std::string();
  l.noTrigger = state.noTriggerVisible;
  // The state changes with every packet: shown with the packet's picture.
  paced_->request();
}

void ScopeDisplayWindow::clear() {
  display_.clearDisplay();
}

void ScopeDisplayWindow::paintEvent(QPaintEvent*) {
  ++paints_;
  QPainter p(this);
  const DisplayGeometry& g = display_.canvas().geometry();
  const QImage picture = display_.canvas().image();
  // Beside a fitted picture, or in the part of a window pixel a device pixel ratio leaves over.
  if (width() * g.ratio > picture.width() || height() * g.ratio > picture.height())
    p.fillRect(rect(), palette().window());
  // Everything below is drawn in device pixels: the surface one to one, texts and lines sharp.
  p.scale(1.0 / g.ratio, 1.0 / g.ratio);
  p.drawImage(0, 0, picture);
  paintLabels(p, display_.labels(), display_.settings(), g);
  paintLevelText(p);
  paintMouseTools(p);
}

QPoint ScopeDisplayWindow::logicalAt(QPoint pixel) const {
  const DisplayGeometry& g = display_.canvas().geometry();
  const int x = (pixel.x() * g.ratio - g.margin()) * 2 / g.halfScale();
  const int y = kTraceRows - (pixel.y() * g.ratio - g.margin()) * 2 / g.halfScale();
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

void ScopeDisplayWindow::wheelEvent(QWheelEvent* event) {
  const QPoint d = event->angleDelta();
  const int notches = takeWheelNotches(wheelRest_, d.y() != 0 ? d.y() : d.x());
  event->accept();
  if (notches == 0) return;
  const bool vertical = event->modifiers() & Qt::ShiftModifier;
  if (event->modifiers() & Qt::ControlModifier)
    wheelScroll(vertical, notches);
  else
    wheelZoom(vertical, notches);
}

void ScopeDisplayWindow::wheelZoom(bool vertical, int notches) {
  // The keys of the axis by factor, as the zoom bars name them ("Hzoom4", "x5Vzoom1").
  std::map<int, QAbstractButton*> keys;
  const QRegularExpression name(vertical ? "^x(\\d+)Vzoom1$" : "^Hzoom(\\d+)$");
  for (QAbstractButton* key : window()->findChildren<QAbstractButton*>(name))
    keys[name.match(key->objectName()).captured(1).toInt()] = key;
  std::vector<int> factors;
  int present = 1;
  for (const auto& [factor, key] : keys) {
    factors.push_back(factor);
    if (key->isChecked()) present = factor;
  }
  const int next = wheelZoomFactor(factors, present, notches);
  if (next == present) return;
  // A click on a key, as the user's: onto the next factor, or off the present one for no zoom.
  QAbstractButton* key = keys[next == 1 ? present : next];
  if (key->isEnabled()) key->click();
}

void ScopeDisplayWindow::wheelScroll(bool vertical, int notches) {
  QScrollBar* scroll = window()->findChild<QScrollBar*>(vertical ? "ScrollVzoom1" : "HScrollView");
  if (!scroll || !scroll->isEnabled()) return;
  const int step = scroll->singleStep() * std::max(QApplication::wheelScrollLines(), 1);
  scroll->setValue(
      wheelScrollValue(vertical ? ZoomAxis::Vertical : ZoomAxis::Horizontal, scroll->value(), notches, step));
}

void ScopeDisplayWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (fit_ && window() == this) rescale();
}

bool ScopeDisplayWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == watched_ && event->type() == QEvent::Resize && fit_) rescale();
  return QWidget::eventFilter(watched, event);
}

bool ScopeDisplayWindow::event(QEvent* event) {
  if (event->type() == QEvent::ScreenChangeInternal || event->type() == QEvent::Show) rescale();
  if (event->type() == QEvent::ToolTip) {
    auto* help = static_cast<QHelpEvent*>(event);
    const QPoint at = logicalAt(help->pos());
    QToolTip::showText(help->globalPos(),
                       QString::fromStdString(DisplayMouse::cursorText(at.x(), at.y(), mouseScale())), this);
    return true;
  }
  return QWidget::event(event);
}

// The widget's font at the device pixels the display is painted in.
static QFont deviceFont(QFont f, int ratio) {
  if (f.pixelSize() > 0)
    f.setPixelSize(f.pixelSize() * ratio);
  else
    f.setPointSizeF(f.pointSizeF() * ratio);
  return f;
}

void ScopeDisplayWindow::paintLevelText(QPainter& p) const {
  const std::string volts = triggerLevelText(display_.inputs());
  if (volts.empty()) return;
  const DisplayGeometry& g = display_.canvas().geometry();
  p.save();
  p.setFont(deviceFont(font(), g.ratio));
  const QFontMetrics fm(p.font());
  const QString text = QString::fromStdString(volts);
  // Against the right edge, where the level's marker stands beside the display; above the level's line
  // unless that runs into the label band.
  const int y = g.pixelY(display_.inputs().triggerLevelRow), gap = 2 * g.ratio;
  const int baseline = y - gap - fm.descent() - 2 * fm.height() < g.pixelY(kTraceRows)
                           ? y + gap + fm.ascent()
                           : y - gap - fm.descent();
  p.setPen(QColor(255, 255, 0));
  p.drawText(g.pixelX(display_.plotWidth()) - gap - fm.horizontalAdvance(text), baseline, text);
  p.restore();
}

void ScopeDisplayWindow::paintMouseTools(QPainter& p) const {
  const DisplayGeometry& g = display_.canvas().geometry();
  const int left = g.pixelX(0), right = g.pixelX(display_.plotWidth()), top = g.pixelY(kTraceRows),
            bottom = g.pixelY(0), gap = 3 * g.ratio;
  p.setFont(deviceFont(font(), g.ratio));
  const QFontMetrics fm(p.font());
  if (const DisplayMouse::Marker& m = mouse_.vertical(); m.visible) {
    const int x = g.pixelX(m.at);
    p.setPen(QPen(Qt::white, 1, Qt::DashLine));
    p.drawLine(x, top, x, bottom);
    const QString text = QString::fromStdString(m.text);
    const int w = fm.horizontalAdvance(text);
    const int tx = m.textAfter ? x + gap : x - gap - w;
    p.setPen(Qt::white);
    p.drawText(tx, g.pixelY(m.textAlong) + fm.ascent() / 2, text);
  }
  if (const DisplayMouse::Marker& m = mouse_.horizontal(); m.visible) {
    const int y = g.pixelY(m.at);
    p.setPen(QPen(Qt::white, 1, Qt::DashLine));
    p.drawLine(left, y, right, y);
    const QString text = QString::fromStdString(m.text);
    const int w = fm.horizontalAdvance(text);
    const int ty = m.textAfter ? y - gap : y + gap + fm.ascent();
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
