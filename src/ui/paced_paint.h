#pragma once
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>

#include "core/frame_pacer.h"

class QWidget;

namespace zorvik {

// A widget's paint at the rate of the screen it is on, however fast its data change: request() after
// each change, and `paint` runs now or at the end of the screen's frame with the latest data.
class PacedPaint : public QObject {
 public:
  PacedPaint(QWidget* widget, std::function<void()> paint);
  void request();
  // A paint that must not wait (the user's own action): now, and the frame starts again.
  void now();

  const FramePacer& pacer() const { return pacer_; }

 private:
  void run();

  QWidget* widget_;
  std::function<void()> paint_;
  FramePacer pacer_;
  QElapsedTimer clock_;
  QTimer timer_;
};

}  // namespace zorvik
