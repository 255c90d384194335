#include "export/csv_text.h"

#include <cstdio>

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
  for (size_t i = kSkipped; i < packet.size(); ++i)
    appendCsvInteger(out, static_cast<unsigned char>(packet[i]));
  return out;
}

std::string floatText(float value) {
  if (value == 0) return "0";
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.7G", static_cast<double>(value));
  return buf;
}

std::string spectrumCsvText(const std::vector<float>& amplitudes, int bins) {
  std::string out;
  for (int i = 0; i < bins && i < static_cast<int>(amplitudes.size()); ++i) {
    out += floatText(amplitudes[static_cast<size_t>(i)]);
    out += '\r';
  }
  return out;
}

}  // namespace zorvik
