#include "export/csv_text.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "core/fault.h"
#include "link/device_context.h"
#include "signal/packet.h"

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

namespace {

void appendNumber(std::string& out, const char* format, double value) {
  char buf[40];
  std::snprintf(buf, sizeof buf, format, value);
  out += buf;
}

}  // namespace

std::string scaledCsvText(std::string_view packet, const RecordScale& scale) {
  const PacketInfo info = decodePacket(packet);
  if (info.ignored) throw Fault("not a packet to export: " + std::to_string(packet.size()) + " bytes");
  if (info.segments != 1) throw Fault("only a one-segment packet has samples to export");
  const std::string_view s = info.segment1;
  auto code = [&](size_t i) { return static_cast<int>(static_cast<unsigned char>(s[i])); };
  // The meters' arithmetic, in floats, so that a row reads what a meter would show for that sample.
  auto volts8 = [&](int c) {
    return scale.FullScaleVolts * static_cast<float>(c - 128) / 256 + scale.ZeroVolts;
  };
  auto volts16 = [&](int c) {
    return scale.FullScaleVolts * static_cast<float>(c - 32768) / 65536 + scale.ZeroVolts;
  };
  // The period as its shortest decimal, so that 3 x 1e-6 is written 3e-06 and not the float's 3.0000001e-06.
  char periodText[32];
  std::snprintf(periodText, sizeof periodText, "%.7g", static_cast<double>(scale.SamplePeriod));
  const double period = std::strtod(periodText, nullptr);

  std::string out;
  auto row = [&](size_t index, double step) {
    appendNumber(out, "%.10g", static_cast<double>(index) * step);
  };
  if (info.isPeak) {
    out = "time_s,min_v,max_v\n";
    const double step = info.oneCharSample ? 2 * period : period;
    for (size_t i = 0; i + 1 < s.size(); i += 2) {
      row(i / 2, step);
      appendNumber(out, ",%.7g", volts8(std::min(code(i), code(i + 1))));
      appendNumber(out, ",%.7g\n", volts8(std::max(code(i), code(i + 1))));
    }
  } else if (info.isHiRes) {
    out = "time_s,volts\n";
    for (size_t i = 0; i + 1 < s.size(); i += 2) {
      row(i / 2, period);
      appendNumber(out, ",%.7g\n", volts16(code(i) * 256 + code(i + 1)));
    }
  } else {
    out = "time_s,volts\n";
    for (size_t i = 0; i < s.size(); ++i) {
      row(i, period);
      appendNumber(out, ",%.7g\n", volts8(code(i)));
    }
  }
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
