// zorvik: the oscilloscope window.
#include <QApplication>
#include <QElapsedTimer>
#include <QIcon>
#include <QMessageBox>
#include <QTimer>
#include <iostream>
#include <memory>

#include "app/mainwin.h"
#include "config/cpu_speed.h"
#include "config/registry.h"
#include "config/registry_settings.h"
#include "config/registry_store.h"
#include "config/settings.h"
#include "core/fault.h"
#include "display/scope_display_window.h"
#include "session/command_line.h"
#include "session/instance_lock.h"
#include "session/link_choice.h"
#include "session/run_control.h"
#include "session/run_report.h"
#include "session/scope_session.h"

int main(int argc, char** argv) {
  // Help and version need no display: they are answered before Qt looks for one.
  if (auto request = zorvik::infoRequest({argv + 1, argv + argc}); request != zorvik::InfoRequest::None) {
    std::cout << (request == zorvik::InfoRequest::Help ? zorvik::guiUsage()
                                                       : "zorvik " + zorvik::programVersion() + "\n");
    return 0;
  }
  QApplication app(argc, argv);
  // The installed desktop entry and icon go by this id; Wayland shells match the window to them by it.
  QApplication::setDesktopFileName("org.zorvik.Zorvik");
  QApplication::setWindowIcon(QIcon::fromTheme("org.zorvik.Zorvik"));
  std::vector<std::string> args(argv + 1, argv + argc);
  zorvik::CommandLine commandLine;
  // No device library exists on this platform: the simulated instrument stands behind the link, here
  // or served by zorvik-sim.
  std::unique_ptr<zorvik::ClassOBEX> link;
  try {
    commandLine = zorvik::parseCommandLine(args);
    link = zorvik::makeLink(commandLine.simOptions, commandLine.device);
  } catch (const std::exception& e) {
    std::cerr << "zorvik: " << e.what() << "\n";
    QMessageBox::critical(nullptr, "Zorvik", QString::fromStdString(e.what()));
    return 2;
  }

  zorvik::InstanceLock lock(commandLine.words);
  zorvik::InstanceIdentity identity = zorvik::makeIdentity(lock.instance());

  // The settings store; when it can't be opened the program runs on defaults and leaves the file alone.
  std::unique_ptr<zorvik::RegistryStore> store;
  std::unique_ptr<zorvik::SettingsStore> settings;
  try {
    store = std::make_unique<zorvik::RegistryStore>(zorvik::RegistryStore::defaultPath());
    zorvik::MigrateLegacySettings(*store, identity.SettingsName);
    if (zorvik::hasWord(commandLine.words, "reset")) zorvik::ResetSettings(*store, identity.SettingsName);
    settings = std::make_unique<zorvik::RegistrySettings>(*store, identity.SettingsName);
  } catch (const std::exception& e) {
    QMessageBox::critical(
        nullptr, QString::fromStdString(identity.InstanceTitle),
        QString("The settings store can't be used; running on defaults.\n%1").arg(e.what()));
    store.reset();
    settings = std::make_unique<zorvik::MemorySettings>();
  }
  // --set values are stored before anything reads them, as if chosen in the menus.
  try {
    for (const std::string& s : commandLine.sets) {
      const zorvik::SettingAssignment a = zorvik::parseSettingAssignment(s);
      settings->SaveSettingValue(a.section, a.name, a.value);
    }
  } catch (const std::exception& e) {
    QMessageBox::critical(nullptr, QString::fromStdString(identity.InstanceTitle),
                          QString::fromStdString(e.what()));
  }
  // Some defaults hang on the processor's speed: a slower machine starts with less drawing work.
  settings->setCpuMHz(zorvik::CpuMHz());

  zorvik::mainwin window(*settings, identity, std::move(link), commandLine);
  window.setRegistry(store.get(), settings->cpuMHz());
  window.show();
  window.restoreDefaultPacket(commandLine.packetFile);

  // The figures of a timed run, counted from here: the packets, the display's paints, the processor.
  QElapsedTimer clock;
  clock.start();
  const int64_t packetsBefore = window.session().main().packetsReceived();
  const double cpuBefore = zorvik::processCpuSeconds();
  if (commandLine.reportAfter > 0) {
    // A timed run measures the stream: connected and running serially from the start.
    window.session().run().WorkMode_Click(true);
    window.session().main().KeyConnect_Click();
    QTimer::singleShot(static_cast<int>(commandLine.reportAfter * 1000), &app, [&] {
      zorvik::RunReport report;
      report.seconds = static_cast<double>(clock.elapsed()) / 1000.0;
      report.packets = window.session().main().packetsReceived() - packetsBefore;
      report.updates = window.displayWindow().updates();
      report.paints = window.displayWindow().paints();
      report.cpuSeconds = zorvik::processCpuSeconds() - cpuBefore;
      std::cout << report.line() << std::endl;
      // Out of the loop without closing the windows, which would ask to end the session first.
      QCoreApplication::exit(0);
    });
  }
  return app.exec();
}
