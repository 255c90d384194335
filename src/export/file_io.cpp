#include "export/file_io.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QString>

#include "core/fault.h"

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
  QFile file(qpath(path));
  if (!file.open(QIODevice::ReadOnly))
    throw Fault("cannot read " + path + ": " + file.errorString().toStdString());
  std::string bytes;
  char buffer[65536];
  for (;;) {
    qint64 n = file.read(buffer, sizeof buffer);
    if (n < 0) throw Fault("cannot read " + path + ": " + file.errorString().toStdString());
    if (n == 0) break;
    if (bytes.size() + static_cast<size_t>(n) > maxBytes)
      throw Fault(path + " is too large (more than " + std::to_string(maxBytes) + " bytes)");
    bytes.append(buffer, static_cast<size_t>(n));
  }
  return bytes;
}

}  // namespace zorvik
