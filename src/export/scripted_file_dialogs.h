#pragma once
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "export/file_dialogs.h"

namespace zorvik {

// Answers each dialog with the next given path (none left: cancelled) and keeps every request. The
// dialog ends in the folder of the path it gives, or where it started when cancelled.
class ScriptedFileDialogs : public FileDialogs {
 public:
  ScriptedFileDialogs() = default;
  explicit ScriptedFileDialogs(std::deque<std::string> paths) : answers(std::move(paths)) {}

  FileDialogAnswer ask(const FileDialogRequest& request) override {
    requests.push_back(request);
    if (whileOpen) whileOpen();
    FileDialogAnswer a;
    if (!answers.empty()) {
      a.path = answers.front();
      answers.pop_front();
    }
    size_t slash = a.path.find_last_of('/');
    if (a.path.empty())
      a.folder = request.initialFolder;
    else if (slash != std::string::npos)
      a.folder = a.path.substr(0, slash == 0 ? 1 : slash);
    return a;
  }

  std::deque<std::string> answers;
  std::vector<FileDialogRequest> requests;
  // Runs while the dialog stands, as events and the user would.
  std::function<void()> whileOpen;
};

}  // namespace zorvik
