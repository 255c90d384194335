#include "ui/window_place_qt.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>

#include "core/window_place.h"

namespace zorvik {

namespace {
PlaceRect rect(const QRect& r) {
  return {r.x(), r.y(), r.width(), r.height()};
}

QRect workArea(const QWidget* window) {
  QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
  return screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
}

// Not yet shown, a window has no frame: its size is what its layout asks for.
QRect frameOf(QWidget* window) {
  if (window->isVisible()) return window->frameGeometry();
  return QRect(window->pos(), window->size().expandedTo(window->sizeHint()));
}
}  // namespace

void placeOpenedWindow(QWidget* window, std::optional<QPoint> stored) {
  if (!window) return;
  const PlaceRect area = rect(workArea(window));
  PlaceRect own = rect(frameOf(window));
  if (stored) {
    own.x = stored->x();
    own.y = stored->y();
    const PlacePoint at = intoArea(own, area);
    window->move(at.x, at.y);
    return;
  }
  QWidget* root = window->parentWidget();
  while (root && root->parentWidget()) root = root->parentWidget();
  if (!root) root = QApplication::activeWindow();
  if (!root || root == window) {
    const PlacePoint at = intoArea(own, area);
    window->move(at.x, at.y);
    return;
  }
  root = root->window();
  std::vector<PlacePoint> open;
  for (QWidget* w : QApplication::topLevelWidgets())
    if (w != window && w != root && w->isVisible()) open.push_back({w->x(), w->y()});
  const PlacePoint at = besideMain(own, rect(root->frameGeometry()), area, open);
  window->move(at.x, at.y);
}

void moveIntoScreen(QWidget* window) {
  if (!window) return;
  const PlacePoint at = intoArea(rect(window->frameGeometry()), rect(workArea(window)));
  window->move(at.x, at.y);
}

}  // namespace zorvik
