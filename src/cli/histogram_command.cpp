#include "cli/histogram_command.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

#include "cli/decode_command.h"
#include "core/fault.h"
#include "export/file_io.h"
#include "export/text_file.h"
#include "session/command_line.h"
#include "stat/histogram.h"

namespace zorvik {

namespace {

const char* const kUsage =
    "usage: zorvik-cli histogram FILE [--csv OUT] [--percent] [--volts-per-div V] [--zero V]";

int histogram(const std::vector<std::string>& args, std::ostream& out) {
  std::string file, csv;
  bool percent = false;
  ScaleOptions scale;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string v;
    if (takeValue(args, i, "--csv", v)) {
      csv = v;
    } else if (args[i] == "--percent") {
      percent = true;
    } else if (!takeScaleOption(args, i, scale)) {
      takeFileArgument(args[i], file, kUsage);
    }
  }
  if (file.empty()) throw Fault(kUsage);
  std::string packet;
  const PacketInfo info = readPacketFile(file, packet);

  HistogramEngine h;
  const double fullScale = 8 * scale.voltsPerDiv;
  h.BuildHistogram({info.segment1, info.isHiRes, info.isPeak, info.oneCharSample,
                    static_cast<float>(fullScale), static_cast<float>(scale.zero)});
  if (!csv.empty()) writeFileReplacing(csv, textFileBytes(histogramCsvText(h)));

  QJsonArray counts, shares;
  for (int32_t c : h.HistCount) {
    counts.append(c);
    shares.append(h.HistSamples > 0 ? 100.0 * c / h.HistSamples : 0.0);
  }
  QJsonObject o;
  o["samples"] = h.HistSamples;
  o["counts"] = counts;
  o["max_count"] = *std::max_element(h.HistCount.begin(), h.HistCount.end());
  // From the scale in double precision: the engine's float ends would print as 0.800000011920929.
  o["level_low"] = scale.zero - fullScale / 2;
  o["level_high"] = scale.zero + fullScale / 2;
  if (percent) o["percent"] = shares;
  out << QJsonDocument(o).toJson(QJsonDocument::Compact).toStdString() << "\n";
  return 0;
}

}  // namespace

int runHistogramCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  try {
    return histogram(args, out);
  } catch (const std::exception& e) {
    err << "zorvik-cli: " << e.what() << "\n";
    return 2;
  }
}

}  // namespace zorvik
