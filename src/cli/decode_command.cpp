#include "cli/decode_command.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cctype>

#include "core/fault.h"
#include "core/file_read.h"
#include "export/zrv_file.h"
#include "session/command_line.h"
#include "signal/packet.h"

namespace zorvik {

std::string readPacketBytes(const std::string& path) {
  std::string bytes = readFileBounded(path, kZrvMaxBytes, "packet file");
  // A raw packet keeps any other name; under the packet file's own extension the magic must be there, as
  // the window's restore asks.
  std::string extension = path.size() >= 4 ? path.substr(path.size() - 4) : std::string();
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (extension == ".zrv" && !hasZrvMagic(bytes)) throw Fault("This is not zorvik file: " + path);
  return bytes;
}

PacketInfo requirePacket(const std::string& path, std::string_view packet) {
  PacketInfo info = decodePacket(packet);
  if (info.ignored)
    throw Fault("not a packet: " + path + " holds " + std::to_string(packet.size()) + " bytes");
  return info;
}

PacketInfo readPacketFile(const std::string& path, std::string& packet) {
  packet = readPacketBytes(path);
  if (auto zrv = parseZrv(packet)) packet = zrv->packet;
  return requirePacket(path, packet);
}

bool takeScaleOption(const std::vector<std::string>& args, size_t& i, ScaleOptions& scale) {
  std::string v;
  if (takeValue(args, i, "--volts-per-div", v)) {
    scale.voltsPerDiv = numberOption("--volts-per-div", v);
    if (!(scale.voltsPerDiv > 0)) throw Fault("--volts-per-div must be above 0");
  } else if (takeValue(args, i, "--sample-period", v)) {
    scale.samplePeriod = numberOption("--sample-period", v);
    if (!(scale.samplePeriod > 0)) throw Fault("--sample-period must be above 0");
  } else if (takeValue(args, i, "--zero", v)) {
    scale.zero = numberOption("--zero", v);
  } else {
    return false;
  }
  return true;
}

void takeFileArgument(const std::string& word, std::string& file, const char* usage) {
  if (!word.empty() && word[0] == '-') throw Fault("unknown option: " + word);
  if (!file.empty()) throw Fault(usage);
  file = word;
}

int runDecodeCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream&) {
  if (args.size() != 1) throw Fault("usage: zorvik-cli decode FILE");
  std::string bytes = readPacketBytes(args[0]);
  QJsonObject o;
  std::string packet = bytes;
  if (auto zrv = parseZrv(bytes)) {
    packet = zrv->packet;
    o["format"] = "zrv";
    if (zrv->samplesPerDiv) o["samples_per_div"] = *zrv->samplesPerDiv;
  } else {
    o["format"] = "packet";
  }
  PacketInfo info = decodePacket(packet);
  o["length"] = static_cast<qint64>(info.length);
  o["ignored"] = info.ignored;
  if (!info.ignored) {
    o["segments"] = info.segments;
    o["master"] = static_cast<qint64>(info.master);
    o["triggered"] = info.triggered;
    o["hw_ris"] = info.hwRis;
    QJsonArray words, modes;
    for (int n = 0; n < info.segments; ++n) {
      words.append(static_cast<qint64>(info.segmentWords[n]));
      modes.append(static_cast<qint64>(segmentMode(info.segmentWords[n])));
    }
    o["segment_words"] = words;
    o["segment_modes"] = modes;
    o["sample_count"] = info.sampleCount;
    o["is_hires"] = info.isHiRes;
    o["is_peak"] = info.isPeak;
    o["one_char_sample"] = info.oneCharSample;
  }
  out << QJsonDocument(o).toJson(QJsonDocument::Compact).toStdString() << "\n";
  return 0;
}

}  // namespace zorvik
