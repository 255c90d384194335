#include "ui/file_dialog_qt.h"

#include <QFileDialog>
#include <QFileInfo>

#include "export/dialog_filter.h"

namespace zorvik {

namespace {
QString q(const std::string& s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }
}  // namespace

FileDialogAnswer QtFileDialogs::ask(const FileDialogRequest& request) {
  QFileDialog dialog(owner_, q(request.title));
  dialog.setObjectName("FileDialog");
  const bool save = request.kind == FileDialogKind::Save;
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite, false);
  if (save && !request.defaultExtension.empty()) dialog.setDefaultSuffix(q(request.defaultExtension));
  QStringList filters;
  for (const FileFilter& f : request.filters) filters << q(qtNameFilter(f));
  if (!filters.isEmpty()) dialog.setNameFilters(filters);
  // A remembered file stands for its folder, with the file already chosen.
  QFileInfo initial(q(request.initialFolder));
  if (initial.isFile()) {
    dialog.setDirectory(initial.absolutePath());
    dialog.selectFile(initial.fileName());
  } else if (!request.initialFolder.empty()) {
    dialog.setDirectory(initial.absoluteFilePath());
  }
  FileDialogAnswer answer;
  if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
    answer.path = dialog.selectedFiles().first().toStdString();
  answer.folder = dialog.directory().absolutePath().toStdString();
  return answer;
}

}  // namespace zorvik
