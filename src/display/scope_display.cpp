#include "display/scope_display.h"

#include <algorithm>

#include "display/trace_painter.h"

namespace zorvik {

namespace {
// The settings keep colours as 0xBBGGRR.
QRgb fromBgr(int bgr) {
  const uint32_t v = static_cast<uint32_t>(bgr);
  return qRgb(static_cast<int>(v & 0xFF), static_cast<int>((v >> 8) & 0xFF),
              static_cast<int>((v >> 16) & 0xFF));
}
constexpr QRgb kRisLineColour = 0xFF800000;  // colour 4 of the basic palette
}  // namespace

ScopeDisplay::ScopeDisplay(DisplayHost& host, SettingsStore& store, int cpuMHz)
    : host_(host),
      store_(store),
      columns_(std::make_unique<TraceColumns>()),
      peaks_(std::make_unique<PeakColumns>()) {
  settings_.load(store, cpuMHz);
  SetupDisplay();
}

void ScopeDisplay::SetupDisplay() {
  settings_.zoom = normalizeZoomIndex(settings_.zoom);
  canvas_.setup(settings_.geometry(), fromBgr(settings_.backColor), settings_.gridVisible);
  canvas_.setDrawMode(settings_.gridFore ? DrawMode::MergePen : DrawMode::CopyPen);
  if (mode_.refresh(longModeTexts())) labels_.Ch1Transparant = mode_.text();
  refreshTimeBase();
  refreshVertical();
  if (onGeometryChanged) onGeometryChanged();
  painted();
}

void ScopeDisplay::refreshTimeBase() {
  UpdateCentreTime(time_, sampleCount_, inputs_.PreSamples, inputs_, host_.SamplePeriod());
  UpdateTimeBase(time_, inputs_, host_.SamplePeriod(), host_.SamplesPerDiv(), settings_.plotWidth());
  UpdateTimeLabels(labels_, time_, settings_.plotWidth(), settings_.wide);
  labels_.triggerX = triggerLineX(time_, inputs_, settings_.plotWidth());
}

void ScopeDisplay::refreshVertical() {
  UpdateVertLabels(labels_, inputs_);
  labels_.nullRow = nullLineRow(inputs_);
  const int level = inputs_.triggerLevelRow;
  labels_.triggerLevelRow = level >= 0 && level <= kTraceRows ? std::optional<int>(level) : std::nullopt;
}

void ScopeDisplay::sampleCountChanged(int n) {
  sampleCount_ = n;
  refreshTimeBase();
  next().sampleCountChanged(n);
}

void ScopeDisplay::SetModeLabel(uint32_t mode, bool multi, int n) {
  if (mode_.SetModeLabel(mode, multi, n, longModeTexts())) labels_.Ch1Transparant = mode_.text();
  next().SetModeLabel(mode, multi, n);
}

bool ScopeDisplay::DoPlot() const {
  const int64_t count = host_.PacketCount();
  const int per = settings_.acqPerPlotCount();
  return (count - 1) % per == 0 || count < per || !settings_.Grading();
}

void ScopeDisplay::PrepareFirstPlot() {
  const bool replot = host_.ReplotNeeded();
  if (settings_.memory == 0 || settings_.gradingChecked() || replot) clearDisplay();
  if (!replot) return;
  persistence_.clear();
  host_.setPacketCount(0);
  host_.setReplotNeeded(false);
  host_.restartAveraging();
}

void ScopeDisplay::ClearIntensity() {
  persistence_.clear();
  host_.setPacketCount(0);
  clearDisplay();
}

void ScopeDisplay::clearDisplay() {
  canvas_.clear();
  mouse_.clear();
  if (onCleared) onCleared();
  painted();
}

void ScopeDisplay::drawRisLine(int x1, int x2, int row) {
  canvas_.setDrawWidth(1);
  canvas_.line(x1, row, x2, row, kRisLineColour);
  painted();
}

GradeStyle ScopeDisplay::gradeStyle(int colorItem) const {
  GradeStyle g;
  g.colour = settings_.memoMode == 2;
  g.emphasis = settings_.emphasis();
  g.inverted = settings_.emphasizeInvert;
  g.colorItem = colorItem;
  g.byBitmap = settings_.byBitmap;
  return g;
}

void ScopeDisplay::painted() {
  if (onPainted) onPainted();
}

void ScopeDisplay::PlotSamples(std::string_view segment, int n, bool allowDecimation, bool twoBytes) {
  if (segment.size() < 8) return;
  const int spd = host_.SamplesPerDiv();
  if (spd <= 0) return;
  const DisplaySettings& s = settings_;
  TraceColumns& c = *columns_;
  samples_.fill(segment, twoBytes);
  ResampleRequest r;
  r.plotWidth = s.plotWidth();
  r.ratio = static_cast<float>(32.0 / spd * std::max(1, inputs_.hZoom));
  r.hViewFrac = inputs_.hViewFrac;
  r.interp = s.interp();
  r.taps = s.taps();
  r.xStep = s.xStep();
  r.keepFan = s.peakDecimation && !allowDecimation;
  r.vZoom = inputs_.vZoom;
  r.vViewFrac = inputs_.vViewFrac;
  resampler_.run(samples_, r, c);
  if (labels_.Ch1InterpTransparant != c.label) labels_.Ch1InterpTransparant = c.label;

  const bool grading = s.Grading();
  const bool doPlot = DoPlot();
  if (n == 1 && doPlot) PrepareFirstPlot();
  const int depth = s.persistDepth();
  if (grading) {
    for (int x = c.xFirst; x <= c.xLast; x += c.xStep) {
      if (c.fanCount > 0) {
        const uint8_t* rows = c.fanRows(x);
        for (int j = 0; j < c.fanCount; ++j) persistence_.addHit(x, rows[j], depth);
      } else {
        persistence_.addHit(x, c.Y[static_cast<size_t>(x)], depth);
      }
    }
  }

  TracePainter painter(canvas_, s);
  bool decayed = false;
  canvas_.setDrawWidth(s.drawLineWidth());
  if (s.linePlot && s.memory == 0) painter.vectorPass(c);
  if (s.psetPlot || s.memory == 1) {
    if ((s.pixelColor == s.lineColor && s.linePlot) || s.risRainbow)
      canvas_.setDrawWidth(canvas_.drawWidth() + 1);
    if (!grading) {
      painter.pointPass(c);
    } else if (doPlot) {
      // The decay follows the render row by row; the rainbow pass below reads no counts.
      persistence_.renderAndDecay(canvas_, c.xFirst, c.xLast, c.xStep, gradeStyle(s.pixelColor), depth,
                                  s.leaveSingle);
      decayed = true;
    }
  }
  const int32_t ts = host_.TS();
  if (s.risRainbow && ts > 0 && ts < 512) {
    canvas_.setDrawWidth(canvas_.drawWidth() - 1);
    painter.rainbowPass(c, ts);
  }
  if (grading && depth > 1 && !decayed) persistence_.decay(c.xFirst, c.xLast, c.xStep, depth, s.leaveSingle);
  painted();
}

void ScopeDisplay::PlotPeaks(std::string_view segment, int n, bool halfRatePairs) {
  const DisplaySettings& s = settings_;
  PeakRequest r;
  r.plotWidth = s.plotWidth();
  r.samplesPerDiv = host_.SamplesPerDiv();
  r.hZoom = inputs_.hZoom;
  r.halfRatePairs = halfRatePairs;
  r.hViewFrac = inputs_.hViewFrac;
  r.xStep = s.xStep();
  r.lineMax = s.peakInterpolation == 1;
  r.vZoom = inputs_.vZoom;
  r.vViewFrac = inputs_.vViewFrac;
  PeakColumns& c = *peaks_;
  if (!peakResampler_.run(segment, r, c)) return;

  const bool grading = s.Grading();
  const bool doPlot = DoPlot();
  if (n == 1 && doPlot) PrepareFirstPlot();
  const int depth = s.persistDepth();
  if (grading) {
    // Each column counts its span and the gap to the column before.
    int prevLo = -1, prevHi = -1;
    for (int x = c.xFirst; x <= c.xLast; x += c.xStep) {
      const int lo = c.lo[static_cast<size_t>(x)], hi = c.hi[static_cast<size_t>(x)];
      if (prevLo < 0) prevLo = lo, prevHi = hi;
      persistence_.addSpan(x, std::min(lo, prevHi), std::max(hi, prevLo), depth);
      prevLo = lo;
      prevHi = hi;
    }
  }
  canvas_.setDrawWidth(s.drawPeakWidth());
  if (!grading)
    TracePainter(canvas_, s).peakPass(c);
  else if (doPlot)
    persistence_.renderAndDecay(canvas_, c.xFirst, c.xLast, c.xStep, gradeStyle(s.peakColor), depth,
                                s.leaveSingle);
  else if (depth > 1)
    persistence_.decay(c.xFirst, c.xLast, c.xStep, depth, s.leaveSingle);
  painted();
}

}  // namespace zorvik
