#include "export/file_io.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QString>

#include "core/fault.h"
#include "core/file_read.h"

namespace zorvik {

namespace {
QString qpath(const std::string& path) {
  return QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
}
}  // namespace

void writeFileReplacing(const std::string& path, std::string_view bytes) {
  if (path.empty()) throw Fault("no file name given");
  QSaveFile file(qpath(path));
  if (!file.open(QIODevice::WriteOnly))
    throw Fault("cannot write " + path + ": " + file.errorString().toStdString());
  qint64 written = file.write(bytes.data(), static_cast<qint64>(bytes.size()));
  if (written != static_cast<qint64>(bytes.size()) || !file.commit())
    throw Fault("cannot write " + path + ": " + file.errorString().toStdString());
}

bool isExistingFile(const std::string& path) {
  if (path.empty()) return false;
  QFileInfo info(qpath(path));
  return info.exists() && info.isFile();
}

std::string readWholeFile(const std::string& path, size_t maxBytes) {
  return readFileBounded(path, maxBytes, "file");
}

}  // namespace zorvik
