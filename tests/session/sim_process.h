#pragma once
#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <string>
#include <vector>

#include "sim/event_loop_helpers.h"

namespace zorvik::test {

// zorvik-sim as a child process on a Unix socket in a folder of its own. The program is the one built
// beside the tests (ZORVIK_SIM_PROGRAM overrides).
class SimProcess {
 public:
  SimProcess() = default;
  ~SimProcess() { kill(); }

  // Starts the server and waits until it listens; false (with the reason in `failure`) when it does not.
  bool start(const std::vector<std::string>& simOptions = {}) {
    QStringList args{"--listen", QString::fromStdString(address())};
    for (const std::string& o : simOptions) args << "--sim" << QString::fromStdString(o);
    process_.setProgram(program());
    process_.setArguments(args);
    process_.start();
    if (!spinUntil([&] { return process_.state() == QProcess::NotRunning || listening(); }, 10000)) {
      failure = "zorvik-sim did not start listening";
      return false;
    }
    if (!listening()) {
      failure = "zorvik-sim: " + process_.readAllStandardError().toStdString();
      return false;
    }
    return true;
  }
  // SIGKILL: the process has no chance to say goodbye, as when a cable is pulled.
  void kill() {
    if (process_.state() == QProcess::NotRunning) return;
    process_.kill();
    spinUntil([&] { return process_.state() == QProcess::NotRunning; }, 5000);
    output_.clear();
  }
  std::string address() const { return "unix:" + dir_.filePath("z.sock").toStdString(); }
  std::string failure;

 private:
  static QString program() {
    const QByteArray env = qgetenv("ZORVIK_SIM_PROGRAM");
    return env.isEmpty() ? QCoreApplication::applicationDirPath() + "/zorvik-sim"
                         : QString::fromLocal8Bit(env);
  }
  bool listening() {
    output_ += process_.readAllStandardOutput().toStdString();
    return output_.find("listening on") != std::string::npos;
  }

  QTemporaryDir dir_;
  QProcess process_;
  std::string output_;
};

}  // namespace zorvik::test
