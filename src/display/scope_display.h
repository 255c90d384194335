#pragma once
#include <functional>
#include <memory>
#include <string_view>

#include "display/display_canvas.h"
#include "display/display_host.h"
#include "display/display_labels.h"
#include "display/display_mouse.h"
#include "display/display_settings.h"
#include "display/mode_label.h"
#include "display/peak_resampler.h"
#include "display/persistence.h"
#include "display/plot_inputs.h"
#include "display/sample_buffer.h"
#include "display/sample_resampler.h"
#include "display/time_view.h"
#include "display/trace_columns.h"
#include "signal/stage_chain.h"

namespace zorvik {

class SettingsStore;

// The waveform display as the packet's stage: it takes the sample count, the mode label and the two
// plotters, draws into its surface with the persistence, and hands every other hook on to the next stage.
class ScopeDisplay : public ChainedStages {
 public:
  ScopeDisplay(DisplayHost& host, SettingsStore& store, int cpuMHz);

  // Settings: change a field, then save it by its catalogue name; SetupDisplay after the zoom, Wide,
  // the grid or the background changed.
  DisplaySettings& settings() { return settings_; }
  const DisplaySettings& settings() const { return settings_; }
  void saveSetting(std::string_view name) { settings_.save(store_, name); }
  void SetupDisplay();

  // The controllers' values; refresh after a change of the time base or of the vertical scale.
  PlotInputs& inputs() { return inputs_; }
  const PlotInputs& inputs() const { return inputs_; }
  void refreshTimeBase();
  void refreshVertical();

  // PacketStages.
  void sampleCountChanged(int n) override;
  void SetModeLabel(uint32_t mode, bool multi, int n) override;
  void PlotSamples(std::string_view segment, int n, bool allowDecimation, bool twoBytes) override;
  void PlotPeaks(std::string_view segment, int n, bool halfRatePairs) override;

  bool DoPlot() const;
  void PrepareFirstPlot();
  // The command of setting changes and of the no-trigger event: counts and packet counter to zero, and Cls.
  void ClearIntensity();
  // Cls: back to the grid picture (the markers are hidden by the window).
  void clearDisplay();
  // The RIS diagnostic line of a row.
  void drawRisLine(int x1, int x2, int row);
  int plotWidth() const { return settings_.plotWidth(); }

  DisplayCanvas& canvas() { return canvas_; }
  const DisplayCanvas& canvas() const { return canvas_; }
  DisplayLabels& labels() { return labels_; }
  const DisplayLabels& labels() const { return labels_; }
  const Persistence& persistence() const { return persistence_; }
  const TimeView& timeView() const { return time_; }
  const TraceColumns& columns() const { return *columns_; }
  // The markers and the selection over the picture; every clearing of the display hides them.
  DisplayMouse& mouse() { return mouse_; }
  const DisplayMouse& mouse() const { return mouse_; }

  // The window's hooks: the surface changed; its size changed; the display was cleared.
  std::function<void()> onPainted;
  std::function<void()> onGeometryChanged;
  std::function<void()> onCleared;

 private:
  DisplayMouse mouse_;
  bool longModeTexts() const { return settings_.wide || settings_.zoom >= 1; }
  GradeStyle gradeStyle(int colorItem) const;
  void painted();

  DisplayHost& host_;
  SettingsStore& store_;
  DisplaySettings settings_;
  PlotInputs inputs_;
  DisplayCanvas canvas_;
  DisplayLabels labels_;
  ModeLabel mode_;
  TimeView time_;
  int sampleCount_ = 0;
  SampleBuf samples_;
  SampleResampler resampler_;
  std::unique_ptr<TraceColumns> columns_;
  PeakResampler peakResampler_;
  std::unique_ptr<PeakColumns> peaks_;
  Persistence persistence_;
};

}  // namespace zorvik
