#include "ui/file_dialog_qt.h"

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

#include "core/latin1_text.h"
#include "export/dialog_filter.h"

namespace zorvik {

namespace {
// A path is the file system's bytes, not text of the program: it goes through Qt's file-name encoding
// (UTF-8 here), the same that QFile uses to reach the file, so the name that comes back is the one chosen.
QString pathText(const std::string& path) {
  return QFile::decodeName(QByteArray::fromStdString(path));
}
std::string pathBytes(const QString& path) {
  return QFile::encodeName(path).toStdString();
}
}  // namespace

FileDialogAnswer QtFileDialogs::ask(const FileDialogRequest& request) {
  QFileDialog dialog(owner_, latin1Text(request.title));
  dialog.setObjectName("FileDialog");
  const bool save = request.kind == FileDialogKind::Save;
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite, false);
  if (save && !request.defaultExtension.empty())
    dialog.setDefaultSuffix(latin1Text(request.defaultExtension));
  QStringList filters;
  for (const FileFilter& f : request.filters) filters << latin1Text(qtNameFilter(f));
  if (!filters.isEmpty()) dialog.setNameFilters(filters);
  // A remembered file stands for its folder, with the file already chosen.
  QFileInfo initial(pathText(request.initialFolder));
  if (initial.isFile()) {
    dialog.setDirectory(initial.absolutePath());
    dialog.selectFile(initial.fileName());
  } else if (!request.initialFolder.empty()) {
    dialog.setDirectory(initial.absoluteFilePath());
  }
  FileDialogAnswer answer;
  if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
    answer.path = pathBytes(dialog.selectedFiles().first());
  answer.folder = pathBytes(dialog.directory().absolutePath());
  return answer;
}

}  // namespace zorvik
