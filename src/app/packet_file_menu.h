#pragma once
#include <QMenu>

namespace zorvik {

class FileDialogs;
class MainController;

// Adds to the menu the submenu "Save last packet:" with "binary file" and "CSV file", and the entry
// "Restore from file", each bound to the packet file commands. A fault of a command becomes the critical
// box and the program goes on. The controller and the dialogs must outlive the menu.
void addPacketFileMenu(QMenu* menu, MainController& main, FileDialogs& dialogs);

}  // namespace zorvik
