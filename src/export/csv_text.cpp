#include "export/csv_text.h"

namespace zorvik {

void appendCsvInteger(std::string& out, long long value) {
  if (value >= 0) out += ' ';
  out += std::to_string(value);
  out += '\r';
}

std::string packetCsvText(std::string_view packet) {
  constexpr size_t kSkipped = 4;
  std::string out;
  if (packet.size() <= kSkipped) return out;
  out.reserve((packet.size() - kSkipped) * 5);
  for (size_t i = kSkipped; i < packet.size(); ++i) appendCsvInteger(out, static_cast<unsigned char>(packet[i]));
  return out;
}

}  // namespace zorvik
