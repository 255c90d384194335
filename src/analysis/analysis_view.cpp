#include "analysis/analysis_view.h"

#include <algorithm>
#include <cmath>

#include "config/settings.h"
#include "display/persistence.h"
#include "spectrum/plot_columns.h"

namespace zorvik {

namespace {
const std::vector<int> kKeys = {2, 5, 10};

double finiteOr(double v, double fallback) {
  return std::isfinite(v) ? v : fallback;
}
}  // namespace

AnalysisView::AnalysisView(SettingsStore& store, const char* section)
    : store_(store),
      section_(section),
      style_(PlotStyle::load(store, section)),
      hZoom_(store, ZoomAxis::Horizontal, {section, "HorZoom", kKeys, " times hor expand"}),
      vZoom_(store, ZoomAxis::Vertical, {section, "Vert1Zoom", kKeys, " times vert expand"}),
      memory_(std::make_unique<Persistence>()) {
  hZoom_.restore();
  vZoom_.restore();
  auto changed = [this] {
    clearMemory();
    onChange();
  };
  hZoom_.onChange = changed;
  vZoom_.onChange = changed;
}

AnalysisView::~AnalysisView() = default;

void AnalysisView::setStyle(StyleKey key, int value) {
  PlotStyle next = style_;
  next.set(key, value);
  store_.saveInt(section_, styleEntry(key).name, next[key]);
  const bool memoKey = key == StyleKey::Memory && next[key] != style_[key];
  style_ = next;
  clearMemory();
  if (memoKey) onMemoKey();
  onChange();
}

void AnalysisView::fullView() {
  if (hZoom_.factor() > 1) hZoom_.keyClicked(hZoom_.factor(), false);
  if (vZoom_.factor() > 1) vZoom_.keyClicked(vZoom_.factor(), false);
}

void AnalysisView::setGrid(bool on) {
  grid_ = on;
  onChange();
}

void AnalysisView::setLabels(bool on) {
  labels_ = on;
  onChange();
}

PlotRange AnalysisView::range(const PlotFrame& frame) const {
  return zoomedRange(frame.full, hZoom_.factor(), hZoom_.position(), vZoom_.factor(), vZoom_.position());
}

void AnalysisView::markerDown(const PlotFrame& frame, double px, double py) {
  const PlotRange r = range(frame);
  downX_ = px;
  downY_ = py;
  markers_ = {};
  markers_.x1 = markers_.x2 = axisX(r, px);
  markers_.y1 = markers_.y2 = axisY(r, py);
  onChange();
}

void AnalysisView::markerMove(const PlotFrame& frame, double px, double py) {
  const PlotRange r = range(frame);
  markers_.x2 = axisX(r, px);
  markers_.y2 = axisY(r, py);
  markers_.vertical = markers_.vertical || std::abs(px - downX_) >= kMarkerMove;
  markers_.horizontal = markers_.horizontal || std::abs(py - downY_) >= kMarkerMove;
  onChange();
}

void AnalysisView::setMarkers(const PlotFrame& frame, double x1, double x2) {
  const double low = frame.full.left, high = frame.full.left + frame.full.span;
  auto inRange = [&](double x) { return std::clamp(finiteOr(x, low), low, std::max(low, high)); };
  markers_ = {};
  markers_.vertical = true;
  markers_.x1 = inRange(x1);
  markers_.x2 = inRange(x2);
  onChange();
}

void AnalysisView::clearMarkers() {
  markers_ = {};
  onChange();
}

std::string AnalysisView::markerHorText(const PlotTexts& texts) const {
  return markers_.vertical && texts.dx ? "  " + texts.dx(std::abs(markers_.x2 - markers_.x1)) : std::string();
}

std::string AnalysisView::markerVertText(const PlotTexts& texts) const {
  return markers_.horizontal && texts.dy ? "  " + texts.dy(std::abs(markers_.y2 - markers_.y1))
                                         : std::string();
}

bool AnalysisView::takesFrames() const {
  return style_.on(StyleKey::Memory);
}

bool AnalysisView::acquire(const PlotFrame& frame) {
  ++acquisitions_;
  if (!style_.on(StyleKey::Memory)) return true;
  const bool grading = style_.grading();
  const int depth = grading ? style_.persistDepth() : 1;
  // The last acquisition's decay, now that its picture has been drawn.
  if (decayPending_ && grading && depth > 1)
    memory_->decay(0, PlotGeometry::kWidth - 1, 1, depth, style_.on(StyleKey::LeaveSingle));
  decayPending_ = true;
  if (frame.valid) {
    const std::vector<float> columns = frameColumns(frame, range(frame), style_);
    for (int x = 0; x < PlotGeometry::kWidth; ++x) {
      const float row = columns[static_cast<size_t>(x)];
      if (row == kEmptyColumn) continue;
      const int y =
          std::clamp(Persistence::kRows - 1 - static_cast<int>(std::floor(row)), 0, Persistence::kRows - 1);
      if (style_.on(StyleKey::Fill))
        memory_->addSpan(x, 0, y, depth);
      else
        memory_->addHit(x, y, depth);
    }
  }
  const long long every = style_.acqPerPlot();
  return !grading || (acquisitions_ - 1) % every == 0 || acquisitions_ < every;
}

void AnalysisView::clearMemory() {
  memory_->clear();
  acquisitions_ = 0;
  decayPending_ = false;
}

int32_t AnalysisView::memoryCount(int x, int y) const {
  return memory_->count(x, y);
}

QImage AnalysisView::picture(const PlotFrame& frame, const PlotTexts& texts, bool withLabels,
                             int scale) const {
  PlotLook look;
  look.scale = scale;
  look.range = range(frame);
  look.grid = grid_;
  look.labels = labels_ && withLabels;
  if (withLabels) {
    look.markers = markers_;
    look.markerHorText = markerHorText(texts);
    look.markerVertText = markerVertText(texts);
  }
  const std::vector<float> columns = frameColumns(frame, look.range, style_);
  return drawPlot(frame, columns, look, style_, texts, style_.on(StyleKey::Memory) ? memory_.get() : nullptr);
}

}  // namespace zorvik
