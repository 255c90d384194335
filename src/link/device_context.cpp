#include "link/device_context.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QThread>

namespace zorvik {

InstanceIdentity makeIdentity(int instance) {
  InstanceIdentity id;
  id.instance = instance == 2 ? 2 : 1;
  if (id.instance == 1) {
    id.InstanceTitle = "ZORVIK 1";
    id.caption = "ZORVIK digital oscilloscope  v." + std::to_string(ZORVIK_VERSION_MAJOR) + "." +
                 std::to_string(ZORVIK_VERSION_MINOR) + "." + std::to_string(ZORVIK_VERSION_PATCH);
  } else {
    id.InstanceTitle = "ZORVIK 2";
    id.caption = "ZORVIK: second device";
  }
  id.SettingsName = "Zorvik DSO" + std::to_string(id.instance);
  return id;
}

bool DeviceContext::Online() {
  bool online = false;
  if (link_) link_->GetOnline(online);
  return online;
}

void DeviceContext::Wait(int ms) {
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < ms) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    QThread::msleep(1);
  }
}

uint32_t DeviceContext::tickMs() {
  return static_cast<uint32_t>(QDateTime::currentMSecsSinceEpoch() & 0xFFFFFFFF);
}

bool DeviceContext::limitFlag(const std::string& name) const {
  for (int i = 0; i < 7; ++i)
    if (name == kLimitNames[i]) return limitFlags_[i];
  return false;
}

}  // namespace zorvik
