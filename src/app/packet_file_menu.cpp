#include "app/packet_file_menu.h"

#include <exception>

#include "export/packet_files.h"
#include "session/main_controller.h"

namespace zorvik {

namespace {

template <typename F>
void runGuarded(MainController& main, F&& command) {
  try {
    command();
  } catch (const std::exception& e) {
    main.messages().show(BoxKind::Critical, main.identity().InstanceTitle, e.what());
  }
}

}  // namespace

void addPacketFileMenu(QMenu* menu, MainController& main, FileDialogs& dialogs) {
  QMenu* save = menu->addMenu("Save last packet:");
  save->setObjectName("SaveLastPacket");
  QAction* binary = save->addAction("binary file", menu, [&main, &dialogs] {
    runGuarded(main, [&] { PacketFiles(main, dialogs).SaveLastPacket2binary(); });
  });
  binary->setObjectName("SaveLastPacket2binary");
  QAction* csv = save->addAction("CSV file", menu, [&main, &dialogs] {
    runGuarded(main, [&] { PacketFiles(main, dialogs).SaveLastPacket2csv(); });
  });
  csv->setObjectName("SaveLastPacket2csv");
  QAction* scaled = menu->addAction("Save to CSV (time, volts)", menu, [&main, &dialogs] {
    runGuarded(main, [&] { PacketFiles(main, dialogs).SaveLastPacket2scaledCsv(); });
  });
  scaled->setObjectName("SaveLastPacket2scaledCsv");
  QAction* restore = menu->addAction("Restore from file", menu, [&main, &dialogs] {
    runGuarded(main, [&] { PacketFiles(main, dialogs).RestorePacketFromBinary(); });
  });
  restore->setObjectName("RestorePacketFromBinary");
}

}  // namespace zorvik
