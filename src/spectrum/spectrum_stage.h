#pragma once
#include <array>
#include <functional>
#include <string>

#include "signal/stage_chain.h"
#include "spectrum/spectrum_engine.h"
#include "spectrum/spectrum_plot.h"

namespace zorvik {

class SettingsStore;

// The spectrum in the packet's stages: while its window is visible each acquisition's segment is
// transformed, and the window draws it. The segment is kept, so that a changed setting computes again.
// It also holds the spectrum's settings (section "Spectrum") and the rules that its readers impose on the
// computation: the refinement of the strongest line and a window whose peak can be rebuilt.
class SpectrumStage : public ChainedStages {
 public:
  // The record's scale at the time of the packet.
  struct Scale {
    float SamplePeriod = 1e-6f, FullScaleVolts = 1.6f, ZeroVolts = 0;
  };
  // The readers of the spectrum besides its plot.
  enum class Reader { MainMeter, Thd };

  explicit SpectrumStage(std::function<Scale()> scale) : scale_(std::move(scale)) {}

  std::function<bool()> visible = [] { return false; };
  std::function<void()> onComputed = [] {};
  // A setting that only changes the picture: the plot is drawn again from the last computation.
  std::function<void()> onPlotChanged = [] {};
  // A rule moved a setting the window shows (the window function).
  std::function<void()> onSettingsMoved = [] {};

  const SpectrumSettings& settings() const { return settings_; }
  const SpectrumPlotSettings& plot() const { return plot_; }
  SpectrumEngine& engine() { return engine_; }
  const SpectrumEngine& engine() const { return engine_; }
  bool HaveData() const { return haveData_; }
  float samplePeriod() const { return input_.SamplePeriod; }
  int AcqCount() const { return acqCount_; }
  // Samples in the last acquisition's record (OknoSamples).
  int recordLength() const {
    return static_cast<int>(input_.IsHiRes || input_.IsPeak ? samples_.size() / 2 : samples_.size());
  }

  // The settings of section "Spectrum" (and the main meter's Sin(x)/x of section "Meters"); the setters
  // below store into the same store. Without a store they only move the model.
  void loadSettings(SettingsStore& store);
  void setDb(bool on);
  void setDbRangeIndex(int index);  // DBdiap: 10 to 70 dB
  int dbRangeIndex() const { return dbRangeIndex_; }
  void setNormalize(bool on);
  void setDCfreq(bool on);
  void setDoubled(bool on);
  void setWindowFunction(int index);
  void setInterpolation(int index);
  void setMainMeterSinxx(bool on);
  bool mainMeterSinxx() const { return mainMeterSinxx_; }

  // A reader opened or closed, whichever way; the next computation follows.
  void setReaderOpen(Reader reader, bool open);
  bool readerOpen(Reader reader) const { return open_[static_cast<size_t>(reader)]; }
  // The strongest line is rebuilt between bins for an interpolated, normalised plot and while the THD
  // meter is open.
  bool refinePeak() const;
  // Sin(x)/x is wanted of the spectrum: an interpolated plot, the main meter with Sin(x)/x, the THD meter.
  // It cannot rebuild the peak of the rectangular window's leakage.
  bool sinxxWanted() const;

  void spectrum(const SegmentData& segment) override;
  // The last acquisition again, after a setting that changes the computation.
  void ComputeSpectrum();

 private:
  // The readers' rules, applied before each computation.
  void applyReaderRules();
  // A setting that changes the computation: the held maximum has lost its meaning.
  void computationChanged();
  void store(const char* section, const char* name, long long value);

  std::function<Scale()> scale_;
  SettingsStore* store_ = nullptr;
  SpectrumSettings settings_;
  SpectrumPlotSettings plot_;
  int dbRangeIndex_ = 4;
  bool mainMeterSinxx_ = true;
  std::array<bool, 2> open_{};
  SpectrumEngine engine_;
  std::string samples_;
  SpectrumInput input_;
  bool haveData_ = false;
  int acqCount_ = 0;
};

}  // namespace zorvik
