#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QWidget>

#include "analysis/analysis_window.h"
#include "spectrum/spectrum_plot.h"

namespace zorvik {

class SettingsStore;
class SpectrumStage;
class PacketFiles;
class TimebaseControl;
class mainmeter;
class THDmeter;

// Spectrum: the amplitude spectrum of each acquisition while the window is open, with its window
// function, the frame, the amplitude scale, the plot's zoom, markers, styles and memory, and its exports.
class Spectrum : public AnalysisWindow {
  Q_OBJECT
 public:
  // `timebase`: the record length asked of the instrument (SampleMemoDepth); none leaves the list out.
  Spectrum(SettingsStore& settings, SpectrumStage& stage, PacketFiles& files, DeviceContext& main,
           FileDialogs& dialogs, TimebaseControl* timebase, QWidget* parent = nullptr);
  ~Spectrum() override;

  // Draws the last computation; also after a setting that only changes the picture.
  void PlotSpectrum();
  void SaveToCSV();
  // The plot's settings as the picture uses them (the memo key is the window's own).
  SpectrumPlotSettings plotSettings() const;
  const SpectrumStage& stage() const { return stage_; }

 protected:
  PlotFrame frame() const override;
  PlotTexts texts() const override;
  void showCursor(double x, double y) override;
  void showReadouts(const PlotFrame& frame) override;

 private:
  // The controls show the stage's settings.
  void showSettings();
  void feedMeters();
  void toggleMeter(QWidget* meter);
  void computed();

  SpectrumStage& stage_;
  PacketFiles& files_;
  TimebaseControl* timebase_;
  int lastAcquisition_ = 0;
  QRadioButton* volts_ = nullptr;
  QRadioButton* decibels_ = nullptr;
  QComboBox* DBdiap = nullptr;
  QCheckBox* Normir = nullptr;
  QCheckBox* DCfreq = nullptr;
  QComboBox* WindowFunction = nullptr;
  QCheckBox* Doubled = nullptr;
  QComboBox* SampleMemoDepth = nullptr;
  QLabel* OknoSamples = nullptr;
  QLabel* LabelFrq = nullptr;
  QLabel* LabelAmp = nullptr;
  QLabel* peak_ = nullptr;
  mainmeter* mainMeter_ = nullptr;
  THDmeter* thdMeter_ = nullptr;
};

}  // namespace zorvik
