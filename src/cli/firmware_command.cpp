#include "cli/firmware_command.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "cli/decode_command.h"
#include "core/fault.h"
#include "firmware/zfw_image.h"

namespace zorvik {

int runZfwCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream&) {
  if (args.size() != 1) throw Fault("usage: zorvik-cli zfw FILE");
  const std::optional<ZfwImage> image = parseZfw(readFileBytes(args[0]));
  if (!image) throw Fault("Firmware file error! " + args[0]);
  QJsonObject o;
  o["target"] = QString::fromLatin1(image->target.data(), static_cast<qsizetype>(image->target.size()));
  o["version"] = QString::fromLatin1(image->version.data(), static_cast<qsizetype>(image->version.size()));
  o["date"] = QString::fromLatin1(image->date.data(), static_cast<qsizetype>(image->date.size()));
  o["body_length"] = static_cast<qint64>(image->body.size());
  o["sector_count"] = image->SectorCount;
  o["sector_size"] = image->SectorSize;
  out << QJsonDocument(o).toJson(QJsonDocument::Compact).toStdString() << "\n";
  return 0;
}

}  // namespace zorvik
