#pragma once
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <functional>

namespace zorvik {

// Turns the event loop until `done` holds or `timeoutMs` has passed. True when `done` held.
inline bool spinUntil(std::function<bool()> done, int timeoutMs) {
  QElapsedTimer clock;
  clock.start();
  while (!done()) {
    if (clock.elapsed() >= timeoutMs) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    QThread::msleep(1);
  }
  return true;
}

// Turns the event loop for `ms`, whatever happens.
inline void spinFor(int ms) {
  spinUntil([] { return false; }, ms);
}

}  // namespace zorvik
