#include "cli/firmware_command.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "core/fault.h"
#include "core/file_read.h"
#include "core/latin1_text.h"
#include "firmware/zfw_image.h"

namespace zorvik {

int runZfwCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream&) {
  if (args.size() != 1) throw Fault("usage: zorvik-cli zfw FILE");
  const std::optional<ZfwImage> image = parseZfw(readFileBounded(args[0], kZfwMaxBytes, "firmware image"));
  if (!image) throw Fault("Firmware file error! " + args[0]);
  QJsonObject o;
  o["target"] = latin1Text(image->target);
  o["version"] = latin1Text(image->version);
  o["date"] = latin1Text(image->date);
  o["body_length"] = static_cast<qint64>(image->body.size());
  o["sector_count"] = image->SectorCount;
  o["sector_size"] = image->SectorSize;
  out << QJsonDocument(o).toJson(QJsonDocument::Compact).toStdString() << "\n";
  return 0;
}

}  // namespace zorvik
