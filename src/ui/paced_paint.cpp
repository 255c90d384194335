#include "ui/paced_paint.h"

#include <QScreen>
#include <QWidget>

namespace zorvik {

PacedPaint::PacedPaint(QWidget* widget, std::function<void()> paint)
    : QObject(widget), widget_(widget), paint_(std::move(paint)) {
  clock_.start();
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, [this] { run(); });
}

void PacedPaint::request() {
  // The screen can change as the window moves; its rate is read as it is needed.
  if (QScreen* screen = widget_->screen()) pacer_.setRate(screen->refreshRate());
  const int wait = pacer_.changed(clock_.elapsed());
  if (wait == 0) run();
  if (wait > 0) timer_.start(wait);
}

void PacedPaint::now() {
  timer_.stop();
  run();
}

void PacedPaint::run() {
  pacer_.painted(clock_.elapsed());
  paint_();
}

}  // namespace zorvik
