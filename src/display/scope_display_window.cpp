#include "display/scope_display_window.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include "display/label_painter.h"
#include "display/screen_check.h"
#include "link/main_state.h"
#include "ui/messages.h"

namespace zorvik {

ScopeDisplayWindow::ScopeDisplayWindow(ScopeDisplay& display, QWidget* parent) : QWidget(parent), display_(display) {
  setObjectName("Display");
  setAttribute(Qt::WA_OpaquePaintEvent);
  display_.onPainted = [this] { update(); };
  display_.onGeometryChanged = [this] { geometryChanged(); };
  geometryChanged();
}

ScopeDisplayWindow::~ScopeDisplayWindow() {
  display_.onPainted = nullptr;
  display_.onGeometryChanged = nullptr;
}

void ScopeDisplayWindow::geometryChanged() {
  setFixedSize(display_.canvas().width(), display_.canvas().height());
  updateGeometry();
  update();
}

QSize ScopeDisplayWindow::sizeHint() const { return {display_.canvas().width(), display_.canvas().height()}; }

void ScopeDisplayWindow::showState(const MainState& state) {
  DisplayLabels& l = display_.labels();
  l.ModeTransparant = state.modeText;
  l.modeColor = state.modeColor;
  l.RISmodeTransparant = state.risVisible ? state.risCaption : std::string();
  l.noTrigger = state.noTriggerVisible;
  update();
}

void ScopeDisplayWindow::paintEvent(QPaintEvent*) {
  QPainter p(this);
  p.drawImage(0, 0, display_.canvas().image());
  paintLabels(p, display_.labels(), display_.settings(), display_.canvas().geometry());
}

void checkScreenFor(QWidget* window, MessageSink& messages, const std::string& title) {
  if (!window) return;
  QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
  if (!screen) return;
  const QRect area = screen->availableGeometry();
  std::vector<ScreenSize> modes;
  for (QScreen* s : QGuiApplication::screens()) modes.push_back({s->size().width(), s->size().height()});
  const QSize size = window->frameGeometry().size();
  const ScreenCheck c = checkScreen({size.width(), size.height()}, {screen->size().width(), screen->size().height()}, modes);
  if (c.outcome == ScreenCheck::Outcome::Fits) return;
  if (c.outcome == ScreenCheck::Outcome::Ask)
    messages.show(BoxKind::Question, title, c.text);
  else
    messages.show(BoxKind::Information, title, c.text);
  QPoint at = window->pos();
  at.setX(std::max(area.left(), std::min(at.x(), area.right() - size.width())));
  at.setY(std::max(area.top(), std::min(at.y(), area.bottom() - size.height())));
  window->move(at);
}

}  // namespace zorvik
