// zorvik-cli: the headless tool over the same core as the window.
#include <QCoreApplication>
#include <QGuiApplication>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/command_table.h"
#include "session/command_line.h"

namespace {

// Stderr carries the one error line of a command; Qt's own notes (such as the offscreen platform's
// complaint about XDG_RUNTIME_DIR) would add lines to it. Only its critical and fatal messages pass.
void qtMessages(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtCriticalMsg || type == QtFatalMsg)
    std::cerr << "zorvik-cli: Qt: " << text.toStdString() << "\n";
}

// The picture commands paint text, which needs the GUI application; without a display they run on the
// offscreen platform.
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv, const std::string& command) {
  if (command != "render" && command != "picture" && command != "animate")
    return std::make_unique<QCoreApplication>(argc, argv);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  return std::make_unique<QGuiApplication>(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  if (args.empty()) {
    std::cerr << "zorvik-cli: no command (zorvik-cli --help lists them)\n";
    return 2;
  }
  // Help and version ahead of the command's own parsing: they must not need a valid command line.
  const zorvik::CliCommand* command = zorvik::findCliCommand(args[0]);
  const std::vector<std::string> rest(args.begin() + 1, args.end());
  switch (zorvik::infoRequest(command ? rest : std::vector<std::string>{args[0]})) {
    case zorvik::InfoRequest::Help:
      std::cout << (command ? command->usage : zorvik::cliOverview());
      return 0;
    case zorvik::InfoRequest::Version:
      std::cout << "zorvik-cli " << zorvik::programVersion() << "\n";
      return 0;
    case zorvik::InfoRequest::None:
      break;
  }
  if (!command) {
    std::cerr << "zorvik-cli: unknown command: " << args[0] << " (zorvik-cli --help lists them)\n";
    return 2;
  }
  qInstallMessageHandler(qtMessages);
  std::unique_ptr<QCoreApplication> app = makeApplication(argc, argv, command->name);
  try {
    return command->run(rest, std::cout, std::cerr);
  } catch (const std::exception& e) {
    std::cerr << "zorvik-cli: " << e.what() << "\n";
    return 2;
  }
}
