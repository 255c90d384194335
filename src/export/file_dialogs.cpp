#include "export/file_dialogs.h"

#include <filesystem>
#include <system_error>

namespace zorvik {

namespace fs = std::filesystem;

namespace {

std::string currentDirectory() {
  std::error_code ec;
  fs::path p = fs::current_path(ec);
  return ec ? std::string() : p.string();
}

// Whatever the platform's dialog does to the working directory is undone, also when it throws.
class WorkingDirectoryKeeper {
 public:
  WorkingDirectoryKeeper() : before_(currentDirectory()) {}
  ~WorkingDirectoryKeeper() {
    if (before_.empty() || currentDirectory() == before_) return;
    std::error_code ec;
    fs::current_path(before_, ec);
  }
  WorkingDirectoryKeeper(const WorkingDirectoryKeeper&) = delete;
  WorkingDirectoryKeeper& operator=(const WorkingDirectoryKeeper&) = delete;
  const std::string& before() const { return before_; }

 private:
  std::string before_;
};

std::string trimmedResult(std::string path) {
  size_t first = path.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  path = path.substr(first, path.find_last_not_of(' ') - first + 1);
  if (!path.empty() && path.back() == '\0') path.pop_back();
  return path;
}

std::string withExtension(const std::string& path, const std::string& extension) {
  if (path.empty() || extension.empty()) return path;
  size_t slash = path.find_last_of('/');
  std::string_view name = std::string_view(path).substr(slash == std::string::npos ? 0 : slash + 1);
  if (name.empty() || name.find('.') != std::string_view::npos) return path;
  return path + "." + extension;
}

std::string runDialog(FileDialogs& dialogs, SettingsStore& settings, FileDialogKind kind,
                      std::string_view filter, const std::string& defaultExtension,
                      const std::string& category) {
  WorkingDirectoryKeeper keeper;
  FileDialogRequest request;
  request.kind = kind;
  request.title = fileDialogTitle(kind, category);
  request.filters = parseFilterList(filter);
  request.defaultExtension = defaultExtension;
  request.initialFolder = keeper.before();
  if (!category.empty()) {
    std::string stored = settings.getText(kFoldersSection, category);
    if (!stored.empty() && folderSearchFinds(stored)) request.initialFolder = stored;
  }
  FileDialogAnswer answer = dialogs.ask(request);
  std::string path = withExtension(trimmedResult(answer.path), defaultExtension);
  if (!category.empty()) {
    std::string folder = answer.folder.empty() ? currentDirectory() : answer.folder;
    if (!folder.empty() && folder.back() != '/') folder += '/';
    settings.SaveSettingValue(kFoldersSection, category, folder);
  }
  return path;
}

}  // namespace

std::string fileDialogTitle(FileDialogKind kind, const std::string& category) {
  std::string title = kind == FileDialogKind::Save ? "File Save" : "File Open";
  if (!category.empty()) title += ": Zorvik " + category;
  return title;
}

bool folderSearchFinds(const std::string& path) {
  if (path.empty()) return false;
  std::error_code ec;
  if (path.back() != '/') return fs::is_regular_file(path, ec);
  fs::directory_iterator it(path, ec);
  for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
    std::string name = it->path().filename().string();
    std::error_code entryError;
    if (!name.empty() && name[0] != '.' && it->is_regular_file(entryError)) return true;
  }
  return false;
}

std::string SaveFileDialog(FileDialogs& dialogs, SettingsStore& settings, std::string_view filter,
                           const std::string& defaultExtension, const std::string& category) {
  return runDialog(dialogs, settings, FileDialogKind::Save, filter, defaultExtension, category);
}

std::string OpenFileDialog(FileDialogs& dialogs, SettingsStore& settings, std::string_view filter,
                           const std::string& category) {
  return runDialog(dialogs, settings, FileDialogKind::Open, filter, "", category);
}

}  // namespace zorvik
