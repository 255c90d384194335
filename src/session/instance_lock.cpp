#include "session/instance_lock.h"

#include <QDir>
#include <QString>
#include <cstdlib>

namespace zorvik {

bool hasWord(const std::vector<std::string>& args, const std::string& word) {
  for (const auto& a : args)
    if (a.find(word) != std::string::npos) return true;
  return false;
}

InstanceLock::InstanceLock(const std::vector<std::string>& args, const std::string& lockDir) {
  QString dir = QString::fromStdString(lockDir);
  if (dir.isEmpty()) {
    const char* env = std::getenv("ZORVIK_LOCK_DIR");
    dir = env && *env ? QString::fromLocal8Bit(env) : QDir::tempPath();
  }
  lock_ = std::make_unique<QLockFile>(dir + "/zorvik-instance-1.lock");
  lock_->setStaleLockTime(0);
  bool free = lock_->tryLock(0);
  instance_ = (free || hasWord(args, "first")) ? 1 : 2;
}

}  // namespace zorvik
