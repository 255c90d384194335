#include "cli/spectrum_command.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "cli/decode_command.h"
#include "core/fault.h"
#include "measure/main_meter.h"
#include "measure/thd.h"
#include "session/command_line.h"
#include "signal/packet.h"
#include "spectrum/spectrum_stage.h"

namespace zorvik {

namespace {
const char* const kUsage =
    "usage: zorvik-cli spectrum FILE [--window 0..6] [--doubled] [--dc] [--sample-period S] [--volts-per-div "
    "V] "
    "[--zero V] [--lines K] [--refine] [--band MIN_KHZ:MAX_KHZ] [--sinxx] [--thd H] [--power]";
}  // namespace

int runSpectrumCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream&) {
  std::string file, v;
  ScaleOptions scale;
  int window = 0, lines = 5, thd = 0;
  bool doubled = false, dc = false, refine = false, sinxx = false, power = false, band = false;
  std::string bandMin, bandMax;
  for (size_t i = 0; i < args.size(); ++i) {
    if (takeScaleOption(args, i, scale)) {
      continue;
    } else if (takeValue(args, i, "--window", v)) {
      window = wholeNumberOption("--window", v, 0, 6);
    } else if (args[i] == "--doubled") {
      doubled = true;
    } else if (args[i] == "--dc") {
      dc = true;
    } else if (args[i] == "--refine") {
      refine = true;
    } else if (takeValue(args, i, "--band", v)) {
      const size_t colon = v.find(':');
      if (colon == std::string::npos) throw Fault("--band takes MIN_KHZ:MAX_KHZ, not \"" + v + "\"");
      band = true;
      bandMin = v.substr(0, colon);
      bandMax = v.substr(colon + 1);
    } else if (args[i] == "--sinxx") {
      sinxx = true;
    } else if (takeValue(args, i, "--thd", v)) {
      thd = wholeNumberOption("--thd", v, 1, 1000);
    } else if (args[i] == "--power") {
      power = true;
    } else if (takeValue(args, i, "--lines", v)) {
      lines = wholeNumberOption("--lines", v, 0, 1000);
    } else {
      takeFileArgument(args[i], file, kUsage);
    }
  }
  if (file.empty()) throw Fault(kUsage);
  std::string packet;
  const PacketInfo info = readPacketFile(file, packet);

  // The window's stage with the readers the options open: its rules choose the window function and the
  // refinement here as they do behind the spectrum window.
  SpectrumStage stage([&scale] {
    return SpectrumStage::Scale{static_cast<float>(scale.samplePeriod),
                                static_cast<float>(8 * scale.voltsPerDiv), static_cast<float>(scale.zero)};
  });
  stage.visible = [] { return true; };
  stage.setDCfreq(dc);
  stage.setDoubled(doubled);
  stage.setWindowFunction(window);
  if (refine) {  // as a normalised Sin(x)/x plot
    stage.setInterpolation(1);
    stage.setNormalize(true);
  }
  stage.setMainMeterSinxx(sinxx);
  stage.setReaderOpen(SpectrumStage::Reader::MainMeter, band || sinxx);
  stage.setReaderOpen(SpectrumStage::Reader::Thd, thd > 0);
  stage.spectrum(SegmentData{info.segment1, info.isHiRes, info.isPeak, info.oneCharSample});
  const SpectrumEngine& e = stage.engine();
  const double binHz = e.SpecBins > 0 ? e.MaxFreq / e.SpecBins : 0;

  QJsonObject o;
  o["window"] = kWindowFunctions[stage.settings().WindowFunction];
  o["max_freq"] = e.MaxFreq;
  o["spec_bins"] = e.SpecBins;
  o["bin_hz"] = binHz;
  o["frame_length"] = e.FrameLength;
  o["frame_start"] = e.FrameStart;
  o["buffer_length"] = e.BufferLength;
  o["peak_bin"] = e.PeakBin;
  o["peak_freq"] = e.PeakBin * binHz;
  o["peak_amp"] = e.PeakAmp;
  o["full_amp"] = e.FullAmp;
  // The strongest bins, strongest first; the lower bin first among equals.
  std::vector<size_t> order(e.SpecAmp.size());
  std::iota(order.begin(), order.end(), size_t{0});
  const size_t k = std::min(order.size(), static_cast<size_t>(lines));
  std::partial_sort(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(k), order.end(),
                    [&](size_t a, size_t b) {
                      return e.SpecAmp[a] > e.SpecAmp[b] || (e.SpecAmp[a] == e.SpecAmp[b] && a < b);
                    });
  QJsonArray strongest;
  for (size_t i = 0; i < k; ++i)
    strongest.append(QJsonObject{{"bin", static_cast<qint64>(order[i])},
                                 {"freq", static_cast<double>(order[i]) * binHz},
                                 {"amp", e.SpecAmp[order[i]]}});
  o["lines"] = strongest;
  o["refined"] = e.Refined;
  if (band || sinxx) {
    const MainMeterReading m = readMainMeter(e, bandMin, bandMax, sinxx);
    QJsonObject mm;
    if (!m.signal) {
      mm["status"] = "No signal";
    } else {
      mm["amplitude"] = m.amplitude;
      mm["level_dbv"] = std::log(m.amplitude) * 8.68588924407959;
      mm["frequency"] = m.frequency;
      mm["period"] = m.frequency > 0 ? 1 / m.frequency : 0.0;
    }
    o["main_meter"] = mm;
  }
  if (thd > 0) {
    const ThdResult r = computeThd(e, stage.samplePeriod(), thd, power);
    QJsonObject t;
    t["valid"] = r.valid;
    t["percent"] = r.value;
    QJsonArray harmonics;
    for (const Harmonic& h : r.lines)
      harmonics.append(QJsonObject{{"number", h.number}, {"freq", h.freq}, {"amp", h.amplitude}});
    t["harmonics"] = harmonics;
    o["thd"] = t;
  }
  out << QJsonDocument(o).toJson(QJsonDocument::Compact).toStdString() << "\n";
  return 0;
}

}  // namespace zorvik
