// zorvik-cli: the headless tool over the same core as the window.
#include <QCoreApplication>
#include <QGuiApplication>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/bench_command.h"
#include "cli/decode_command.h"
#include "cli/files_command.h"
#include "cli/firmware_command.h"
#include "cli/measure_command.h"
#include "cli/render_command.h"
#include "cli/session_command.h"
#include "cli/settings_command.h"
#include "cli/spectrum_command.h"
#include "cli/timebase_command.h"
#include "core/fault.h"

namespace {

int usage(std::ostream& out) {
  out << "usage: zorvik-cli <command> [options]\n"
         "  decode FILE                       decode a packet or zrv file\n"
         "  measure FILE [--volts-per-div V] [--zero V] [--sample-period S] [--level 0..3] [--trigger "
         "0..255]\n"
         "          [--negative] [--20-80]      the nineteen meters on segment 1\n"
         "  spectrum FILE [--window 0..6] [--doubled] [--dc] [--sample-period S] [--volts-per-div V] [--zero "
         "V]\n"
         "          [--lines K]                 the amplitude spectrum of segment 1\n"
         "  session [--sim K=V,...] [--packets N] [--single] [--timeout S] [--keys K1,K2,...]\n"
         "          [--meters all|LIST] [--spectrum] [--histogram] [--save-last FILE.zrv] [--set "
         "SECTION/NAME=VALUE]\n"
         "  render FILE... --png OUT.png [--zoom 0..3] [--wide] [--interp none|line|sinx|lanczos|lagrange]\n"
         "          [--taps N] [--hzoom 1|2|4|5|10] [--vzoom 1|2|5|10] [--samples-per-div N] [--labels]\n"
         "          [--persist intensity|color] [--depth infinite|128|32|8] [--repeat N] [--set "
         "SECTION/NAME=VALUE]\n"
         "  timebase SECONDS_PER_DIV [--limits NAME=V,...] [--ris] [--maximize] [--memo-depth 0..3] "
         "[--wide]\n"
         "          [--clock-min MHZ] [--clock-max MHZ] [--qsh N] [--ts N]\n"
         "  bench [FILE...] [--packets N] [--wide] [--interp ...] [--taps N] [--persist intensity|color]\n"
         "          [--depth infinite|128|32|8] [--samples-per-div N]\n"
         "  csv FILE --out OUT.csv             the packet CSV of a packet or zrv file\n"
         "  sim --packets N --out DIR [--sim K=V,...] [--set SECTION/NAME=VALUE]\n"
         "  zfw FILE                          a firmware image's head and sectors\n"
         "  settings [--instance 1|2] set SECTION/NAME=VALUE... | get SECTION/NAME | export FILE | import "
         "FILE | reset\n";
  return 2;
}

// Stderr carries the one error line of a command; Qt's own notes (such as the offscreen platform's
// complaint about XDG_RUNTIME_DIR) would add lines to it. Only its critical and fatal messages pass.
void qtMessages(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtCriticalMsg || type == QtFatalMsg)
    std::cerr << "zorvik-cli: Qt: " << text.toStdString() << "\n";
}

// The picture commands paint text, which needs the GUI application; without a display they run on the
// offscreen platform.
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv, const std::string& command) {
  if (command != "render") return std::make_unique<QCoreApplication>(argc, argv);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  return std::make_unique<QGuiApplication>(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  if (args.empty() || args[0] == "--help" || args[0] == "-h")
    return usage(args.empty() ? std::cerr : std::cout);
  std::string command = args[0];
  args.erase(args.begin());
  qInstallMessageHandler(qtMessages);
  std::unique_ptr<QCoreApplication> app = makeApplication(argc, argv, command);
  try {
    if (command == "decode") return zorvik::runDecodeCommand(args, std::cout, std::cerr);
    if (command == "measure") return zorvik::runMeasureCommand(args, std::cout, std::cerr);
    if (command == "spectrum") return zorvik::runSpectrumCommand(args, std::cout, std::cerr);
    if (command == "session") return zorvik::runSessionCommand(args, std::cout, std::cerr);
    if (command == "render") return zorvik::runRenderCommand(args, std::cout, std::cerr);
    if (command == "timebase") return zorvik::runTimebaseCommand(args, std::cout, std::cerr);
    if (command == "bench") return zorvik::runBenchCommand(args, std::cout, std::cerr);
    if (command == "csv") return zorvik::runCsvCommand(args, std::cout, std::cerr);
    if (command == "sim") return zorvik::runSimCommand(args, std::cout, std::cerr);
    if (command == "zfw") return zorvik::runZfwCommand(args, std::cout, std::cerr);
    if (command == "settings") return zorvik::runSettingsCommand(args, std::cout, std::cerr);
    std::cerr << "zorvik-cli: unknown command: " << command << "\n";
    return 2;
  } catch (const std::exception& e) {
    std::cerr << "zorvik-cli: " << e.what() << "\n";
    return 2;
  }
}
