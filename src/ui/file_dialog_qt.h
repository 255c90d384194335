#pragma once
#include <QPointer>
#include <QWidget>

#include "export/file_dialogs.h"

namespace zorvik {

// The file dialogs of the window: Qt's dialog, modal over its owner, asking before it overwrites.
class QtFileDialogs : public FileDialogs {
 public:
  explicit QtFileDialogs(QWidget* owner = nullptr) : owner_(owner) {}
  void setOwner(QWidget* owner) { owner_ = owner; }
  FileDialogAnswer ask(const FileDialogRequest& request) override;

 private:
  QPointer<QWidget> owner_;
};

}  // namespace zorvik
