#pragma once
#include <QImage>
#include <functional>
#include <memory>
#include <string>

#include "analysis/plot_picture.h"
#include "analysis/plot_style.h"
#include "display/view_zoom.h"

namespace zorvik {

class SettingsStore;
class Persistence;

// The plot of a spectrum or histogram window, without the window: its styles and memory, its zoom on
// both axes with each factor's view position, the grid and labels, and the two markers. The window and
// zorvik-cli draw through it; every setting goes to the window's own section as it changes.
class AnalysisView {
 public:
  AnalysisView(SettingsStore& store, const char* section);
  ~AnalysisView();

  const char* section() const { return section_; }
  const PlotStyle& style() const { return style_; }
  // Stored first: a store that fails leaves the style as it was. The memory key starts a new memory.
  void setStyle(StyleKey key, int value);
  // A style as zorvik-cli sets it, for this drawing only.
  void useStyle(StyleKey key, int value) { style_.set(key, value); }

  ViewZoom& hZoom() { return hZoom_; }
  ViewZoom& vZoom() { return vZoom_; }
  const ViewZoom& hZoom() const { return hZoom_; }
  const ViewZoom& vZoom() const { return vZoom_; }
  // Both axes at factor 1: FullViewKey.
  void fullView();

  // Not kept between runs: a new window shows both.
  bool grid() const { return grid_; }
  bool labels() const { return labels_; }
  void setGrid(bool on);
  void setLabels(bool on);

  // The axes the zoom shows of a frame.
  PlotRange range(const PlotFrame& frame) const;

  // The mouse's markers, at picture positions: the key down sets the first, a move the second; each
  // marker shows once the mouse has moved kMarkerMove or more along its axis.
  static constexpr int kMarkerMove = 6;
  void markerDown(const PlotFrame& frame, double px, double py);
  void markerMove(const PlotFrame& frame, double px, double py);
  // Markers at two places on the x axis, in its own units (zorvik-cli --markers); brought into the range.
  void setMarkers(const PlotFrame& frame, double x1, double x2);
  void clearMarkers();
  const PlotMarkers& markers() const { return markers_; }
  // The distances, "  " before each: MarkerHorText along x, MarkerVertText along y.
  std::string markerHorText(const PlotTexts& texts) const;
  std::string markerVertText(const PlotTexts& texts) const;

  // Whether acquire() reads the frame: only the memory keeps what it shows.
  bool takesFrames() const;
  // One acquisition into the memory (when it is on): true when this acquisition is to be drawn.
  bool acquire(const PlotFrame& frame);
  // The memory starts over (a setting changed what is drawn).
  void clearMemory();
  int32_t memoryCount(int x, int y) const;

  // The picture as the window shows it, or without labels and markers: the plot alone.
  // `scale`: device pixels a picture pixel, for a sharp plot on a high-resolution screen.
  QImage picture(const PlotFrame& frame, const PlotTexts& texts, bool withLabels = true, int scale = 1) const;

  // The picture changed without a new acquisition: the window draws again.
  std::function<void()> onChange = [] {};
  // MemoKey1 went on or off: the held maxima lose their meaning.
  std::function<void()> onMemoKey = [] {};

 private:
  SettingsStore& store_;
  const char* section_;
  PlotStyle style_;
  ViewZoom hZoom_, vZoom_;
  bool grid_ = true, labels_ = true;
  PlotMarkers markers_;
  double downX_ = 0, downY_ = 0;
  std::unique_ptr<Persistence> memory_;
  long long acquisitions_ = 0;
  bool decayPending_ = false;
};

}  // namespace zorvik
