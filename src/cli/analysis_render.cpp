#include "cli/analysis_render.h"

#include <QBuffer>
#include <cmath>

#include "analysis/analysis_frames.h"
#include "analysis/analysis_view.h"
#include "cli/decode_command.h"
#include "cli/display_command.h"
#include "cli/headless_picture.h"
#include "config/settings.h"
#include "core/fault.h"
#include "export/file_io.h"
#include "session/command_line.h"
#include "signal/packet.h"
#include "spectrum/spectrum_stage.h"
#include "stat/stat_stage.h"

namespace zorvik {

namespace {

const char* const kUsage =
    "usage: zorvik-cli render FILE --view spectrum|histogram --png OUT.png [view options]";

struct ViewArgs {
  std::string file, png, view;
  ScaleOptions scale;
  int window = -1, rangeIndex = -1, interpolation = -1;
  bool dB = false, percent = false, normalize = false, doubled = false, dc = false;
  int hZoom = 1, vZoom = 1;
  double hPos = 0.5, vPos = 0.5;
  bool markers = false;
  double marker1 = 0, marker2 = 0;
  std::vector<std::string> styles;
};

int zoomFactor(const std::string& name, const std::string& v) {
  return pickOption(name, v, {{"1", 1}, {"2", 2}, {"5", 5}, {"10", 10}});
}

double position(const std::string& name, const std::string& v) {
  const double p = numberOption(name, v);
  if (!(p >= 0 && p <= 1)) throw Fault(name + " takes a position from 0 to 1, not \"" + v + "\"");
  return p;
}

ViewArgs parseArgs(const std::vector<std::string>& args) {
  ViewArgs a;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string v;
    if (takeScaleOption(args, i, a.scale)) {
      continue;
    } else if (takeValue(args, i, "--view", v)) {
      if (v != "spectrum" && v != "histogram")
        throw Fault("--view takes spectrum or histogram, not \"" + v + "\"");
      a.view = v;
    } else if (takeValue(args, i, "--png", v)) {
      a.png = v;
    } else if (takeValue(args, i, "--window", v)) {
      a.window = wholeNumberOption("--window", v, 0, 6);
    } else if (args[i] == "--db") {
      a.dB = true;
    } else if (takeValue(args, i, "--range", v)) {
      const int db = wholeNumberOption("--range", v, 10, 70);
      if (db % 10 != 0) throw Fault("--range takes 10, 20, ... 70 dB, not \"" + v + "\"");
      a.rangeIndex = db / 10 - 1;
    } else if (args[i] == "--percent") {
      a.percent = true;
    } else if (args[i] == "--normalize") {
      a.normalize = true;
    } else if (args[i] == "--doubled") {
      a.doubled = true;
    } else if (args[i] == "--dc") {
      a.dc = true;
    } else if (takeValue(args, i, "--hzoom", v)) {
      a.hZoom = zoomFactor("--hzoom", v);
    } else if (takeValue(args, i, "--vzoom", v)) {
      a.vZoom = zoomFactor("--vzoom", v);
    } else if (takeValue(args, i, "--hpos", v)) {
      a.hPos = position("--hpos", v);
    } else if (takeValue(args, i, "--vpos", v)) {
      a.vPos = position("--vpos", v);
    } else if (takeValue(args, i, "--markers", v)) {
      const size_t colon = v.find(':');
      if (colon == std::string::npos) throw Fault("--markers takes X1:X2, not \"" + v + "\"");
      a.markers = true;
      a.marker1 = numberOption("--markers", v.substr(0, colon));
      a.marker2 = numberOption("--markers", v.substr(colon + 1));
    } else if (takeValue(args, i, "--style", v)) {
      for (size_t start = 0; start <= v.size();) {
        const size_t comma = std::min(v.find(',', start), v.size());
        const std::string s = v.substr(start, comma - start);
        if (s != "line" && s != "pixel" && s != "fill")
          throw Fault("--style takes line, pixel or fill (or a comma list), not \"" + v + "\"");
        a.styles.push_back(s);
        start = comma + 1;
      }
    } else if (takeValue(args, i, "--interp", v)) {
      a.interpolation =
          pickOption("--interp", v, {{"none", 0}, {"sinxx", 1}, {"lanczos", 2}, {"lagrange", 3}});
    } else {
      takeFileArgument(args[i], a.file, kUsage);
    }
  }
  if (a.file.empty() || a.png.empty() || a.view.empty()) throw Fault(kUsage);
  return a;
}

// The view's settings as the window would have them, in a store of its own.
void setView(AnalysisView& view, const ViewArgs& a) {
  if (!a.styles.empty()) {
    for (StyleKey k : {StyleKey::Line, StyleKey::Pixel, StyleKey::Fill}) view.useStyle(k, 0);
    for (const std::string& s : a.styles)
      view.useStyle(s == "line" ? StyleKey::Line : s == "pixel" ? StyleKey::Pixel : StyleKey::Fill, 1);
  }
  if (a.interpolation >= 0) view.useStyle(StyleKey::Interpolation, a.interpolation);
  view.hZoom().keyClicked(a.hZoom, a.hZoom > 1);
  view.vZoom().keyClicked(a.vZoom, a.vZoom > 1);
  const double range = ViewZoom::kMax - ViewZoom::kMin;
  if (a.hZoom > 1) view.hZoom().setValue(static_cast<int>(std::lround(ViewZoom::kMax - a.hPos * range)));
  if (a.vZoom > 1) view.vZoom().setValue(static_cast<int>(std::lround(ViewZoom::kMin + a.vPos * range)));
}

QImage spectrumPicture(const ViewArgs& a, const PacketInfo& info, AnalysisView& view) {
  const ScaleOptions s = a.scale;
  SpectrumStage stage([s] {
    return SpectrumStage::Scale{static_cast<float>(s.samplePeriod), static_cast<float>(8 * s.voltsPerDiv),
                                static_cast<float>(s.zero)};
  });
  stage.visible = [] { return true; };
  if (a.window >= 0) stage.setWindowFunction(a.window);
  stage.setDb(a.dB);
  if (a.rangeIndex >= 0) stage.setDbRangeIndex(a.rangeIndex);
  stage.setNormalize(a.normalize);
  stage.setDoubled(a.doubled);
  stage.setDCfreq(a.dc);
  stage.setInterpolation(view.style()[StyleKey::Interpolation]);
  stage.spectrum(SegmentData{info.segment1, info.isHiRes, info.isPeak, info.oneCharSample});
  const SpectrumPlotSettings plot = stage.plot();
  const PlotFrame frame = spectrumFrame(stage.engine(), plot, stage.HaveData());
  if (!frame.valid) throw Fault("the packet has no spectrum to draw (no record, or no signal to scale by)");
  if (a.markers) view.setMarkers(frame, a.marker1, a.marker2);
  view.acquire(frame);
  return view.picture(frame, spectrumTexts(plot.dB));
}

QImage histogramPicture(const ViewArgs& a, const PacketInfo& info, AnalysisView& view) {
  const ScaleOptions s = a.scale;
  StatStage stage([s] {
    return StatStage::Scale{static_cast<float>(8 * s.voltsPerDiv), static_cast<float>(s.zero)};
  });
  stage.visible = [] { return true; };
  stage.stat(SegmentData{info.segment1, info.isHiRes, info.isPeak, info.oneCharSample});
  const HistogramEngine& h = stage.engine();
  const PlotFrame frame = histogramFrame(h, a.normalize, false, stage.HaveData());
  if (!frame.valid) throw Fault("the packet has no histogram to draw (no record)");
  // Markers are given as levels in volts: the axis starts at the lowest level.
  if (a.markers) view.setMarkers(frame, a.marker1 - frame.origin, a.marker2 - frame.origin);
  view.acquire(frame);
  return view.picture(frame, histogramTexts(h, a.percent));
}

}  // namespace

bool asksForView(const std::vector<std::string>& args) {
  for (const std::string& a : args)
    if (a == "--view") return true;
  return false;
}

int renderView(const std::vector<std::string>& args) {
  const ViewArgs a = parseArgs(args);
  std::string packet;
  const PacketInfo info = readPacketFile(a.file, packet);
  if (info.segment1.empty()) throw Fault("the packet has no single record to plot");
  MemorySettings store;
  const bool spectrum = a.view == "spectrum";
  AnalysisView view(store, spectrum ? "Spectrum" : "Stat");
  setView(view, a);
  const QImage picture = spectrum ? spectrumPicture(a, info, view) : histogramPicture(a, info, view);
  writeFileReplacing(a.png, pngBytes(picture));
  return 0;
}

}  // namespace zorvik
