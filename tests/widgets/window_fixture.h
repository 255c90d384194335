#pragma once
#include <QDir>
#include <memory>

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

}  // namespace zorvik::test
