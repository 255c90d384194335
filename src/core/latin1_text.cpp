#include "core/latin1_text.h"

namespace zorvik {

QString latin1Text(std::string_view bytes) {
  return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::string latin1Bytes(const QString& text) {
  std::string bytes;
  bytes.reserve(static_cast<size_t>(text.size()));
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar c = text[i];
    if (c.unicode() <= 0xFF) {
      bytes += static_cast<char>(c.unicode());
      continue;
    }
    bytes += kNoLatin1Byte;
    if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) ++i;
  }
  return bytes;
}

}  // namespace zorvik
