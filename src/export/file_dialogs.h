#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "config/settings.h"
#include "export/dialog_filter.h"

namespace zorvik {

enum class FileDialogKind { Save, Open };

// What the platform's dialog is asked to show.
struct FileDialogRequest {
  FileDialogKind kind = FileDialogKind::Open;
  std::string title;
  std::vector<FileFilter> filters;
  std::string defaultExtension;  // save only: added to a name typed without one
  std::string initialFolder;     // a folder, or a file whose folder is meant
};

struct FileDialogAnswer {
  std::string path;    // empty when cancelled
  std::string folder;  // where the dialog stood at its end, confirmed or cancelled; empty if unknown
};

// The platform step of a file dialog: Qt's dialog in the window, given answers in tests and the CLI.
// A save dialog asks before it lets the user pick an existing file.
class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  virtual FileDialogAnswer ask(const FileDialogRequest& request) = 0;
};

// The section that remembers the last folder of each category of file.
constexpr const char* kFoldersSection = "Folders";

// The file name for every export, or empty when the user cancels. `filter` is a double-zero list. The
// dialog starts in the folder remembered under `category` when a search for that path finds a file, else
// in the working directory; afterwards, confirmed or cancelled, the folder the dialog ended in is
// remembered (with a trailing separator, so that the next search looks inside it) and the working
// directory is what it was before.
std::string SaveFileDialog(FileDialogs& dialogs, SettingsStore& settings, std::string_view filter,
                           const std::string& defaultExtension, const std::string& category);
std::string OpenFileDialog(FileDialogs& dialogs, SettingsStore& settings, std::string_view filter,
                           const std::string& category);

// "File Save: Zorvik CSV data"; only the verb when the category is empty.
std::string fileDialogTitle(FileDialogKind kind, const std::string& category);
// The search that decides whether a remembered path is used: a path ending in a separator finds the
// visible regular files inside that folder; any other path finds only a regular file of that name. So a
// bare folder name finds nothing.
bool folderSearchFinds(const std::string& path);

}  // namespace zorvik
