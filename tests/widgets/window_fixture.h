#pragma once
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>

#include "app/mainwin.h"
#include "sim/sim_config.h"
#include "sim/simulated_obex.h"

namespace zorvik::test {

// The main window on the simulated instrument, shown offline with the repository's default.zrv drawn.
inline std::unique_ptr<mainwin> windowWithDefaultPacket(SettingsStore& settings) {
  CommandLine cl;
  auto w =
      std::make_unique<mainwin>(settings, makeIdentity(1), std::make_unique<SimulatedObex>(SimConfig{}), cl);
  w->show();
  const QString previous = QDir::currentPath();
  QDir::setCurrent(QT_TESTCASE_SOURCEDIR "/data");
  w->restoreDefaultPacket();
  QDir::setCurrent(previous);
  return w;
}

// The main window on the simulated instrument with these options, shown.
inline std::unique_ptr<mainwin> simWindow(SettingsStore& settings, const std::string& simOptions) {
  SimConfig config;
  applySimOptions(config, simOptions);
  CommandLine cl;
  auto w = std::make_unique<mainwin>(settings, makeIdentity(1), std::make_unique<SimulatedObex>(config), cl);
  w->show();
  return w;
}

// Acts on the file dialog once it stands, and again at every tick until it closes: a dialog still busy
// reading its folder may ignore the first accept.
inline void onDialog(std::function<void(QFileDialog*)> act) {
  auto* timer = new QTimer;
  QObject::connect(timer, &QTimer::timeout, [timer, act] {
    for (QWidget* w : QApplication::topLevelWidgets()) {
      if (auto* d = qobject_cast<QFileDialog*>(w); d && d->isVisible()) {
        QObject::connect(d, &QDialog::finished, timer, &QTimer::stop, Qt::UniqueConnection);
        QObject::connect(d, &QDialog::finished, timer, &QObject::deleteLater, Qt::UniqueConnection);
        act(d);
        return;
      }
    }
  });
  timer->start(20);
}

}  // namespace zorvik::test
