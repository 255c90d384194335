#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QWidget>
#include <vector>

#include "spectrum/spectrum_plot.h"
#include "ui/analysis_window.h"

namespace zorvik {

class SettingsStore;
class SpectrumStage;
class PacketFiles;
class ValuePlot;
class mainmeter;
class THDmeter;

// Spectrum: the amplitude spectrum of each acquisition while the window is open, with its window
// function, the frame, the amplitude scale and the CSV export.
class Spectrum : public AnalysisWindow {
  Q_OBJECT
 public:
  Spectrum(SettingsStore& settings, SpectrumStage& stage, PacketFiles& files, QWidget* parent = nullptr);
  ~Spectrum() override;

  // Draws the last computation; also after a setting that only changes the picture.
  void PlotSpectrum();
  void SaveToCSV();
  const SpectrumPlotSettings& plotSettings() const;
  const SpectrumStage& stage() const { return stage_; }
  // Store failures and export faults go to the owner's box.

 private:
  // The controls show the stage's settings.
  void showSettings();
  void feedMeters();
  void toggleMeter(QWidget* meter);

  SpectrumStage& stage_;
  PacketFiles& files_;
  ValuePlot* display_ = nullptr;
  SpectrumScale scale_;
  QRadioButton* volts_ = nullptr;
  QRadioButton* decibels_ = nullptr;
  QComboBox* DBdiap = nullptr;
  QCheckBox* Normir = nullptr;
  QCheckBox* DCfreq = nullptr;
  QComboBox* WindowFunction = nullptr;
  QCheckBox* Doubled = nullptr;
  QComboBox* Interpolation = nullptr;
  QLabel* OknoSamples = nullptr;
  QLabel* LabelFrq = nullptr;
  QLabel* LabelAmp = nullptr;
  QLabel* peak_ = nullptr;
  mainmeter* mainMeter_ = nullptr;
  THDmeter* thdMeter_ = nullptr;
};

}  // namespace zorvik
