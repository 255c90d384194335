#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QWidget>
#include <vector>

#include "spectrum/spectrum_plot.h"

namespace zorvik {

class SettingsStore;
class SpectrumStage;
class PacketFiles;

// The plot of the spectrum: grid, the trace through the columns, the scale at the corners, and the
// frequency and amplitude under the cursor.
class SpectrumPlot : public QWidget {
  Q_OBJECT
 public:
  SpectrumPlot(const SpectrumStage& stage, QWidget* parent = nullptr);
  void setPicture(const std::vector<float>& rows, const SpectrumScale& scale, bool dB, bool valid);
  QSize sizeHint() const override { return {kWidth + 2 * kMargin, kHeight + 2 * kMargin}; }
  std::function<void(const QString& frequency, const QString& amplitude)> onCursor;

  static constexpr int kWidth = 400, kHeight = 256, kMargin = 10;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  const SpectrumStage& stage_;
  std::vector<float> rows_;
  SpectrumScale scale_;
  bool dB_ = false, valid_ = false;
};

// Spectrum: the amplitude spectrum of each acquisition while the window is open, with its window
// function, the frame, the amplitude scale and the CSV export.
class Spectrum : public QWidget {
  Q_OBJECT
 public:
  Spectrum(SettingsStore& settings, SpectrumStage& stage, PacketFiles& files, QWidget* parent = nullptr);
  ~Spectrum() override;

  // Draws the last computation; also after a setting that only changes the picture.
  void PlotSpectrum();
  void SaveToCSV();
  const SpectrumPlotSettings& plotSettings() const { return plot_; }
  // Store failures and export faults go to the owner's box.
  std::function<void(const std::string&)> onFault = [](const std::string&) {};
  std::function<void()> onClosed = [] {};
  std::function<bool()> memoOn = [] { return false; };  // the main display's MemoKey1

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void loadSettings();
  void store(const char* name, long long value);
  void computationChanged();

  SettingsStore& settings_;
  SpectrumStage& stage_;
  PacketFiles& files_;
  SpectrumPlotSettings plot_;
  SpectrumPlot* display_ = nullptr;
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
};

}  // namespace zorvik
