#pragma once
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <array>
#include <functional>

#include "measure/slow_stats.h"
#include "measure/spectrum_reader_window.h"

namespace zorvik {

class SettingsStore;
class SpectrumEngine;

// mainmeter ("Max.freq"): the strongest line of the spectrum in a band, beyond the bin width, as
// amplitude, level, period and frequency, each with its minimum, maximum and slow average.
class mainmeter : public SpectrumReaderWindow {
  Q_OBJECT
 public:
  // Open, it is one of the stage's readers; its Sin(x)/x check box is the stage's.
  mainmeter(SettingsStore& settings, SpectrumStage& stage, QWidget* parent = nullptr);
  // The spectrum's data.
  void Ind(const SpectrumEngine& e);
  bool sinxx() const { return SinXxInterpolation->isChecked(); }
  std::function<void(const std::string&)> onFault = [](const std::string&) {};

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  enum Group { Amplitude, Level, Period, Frequency, kGroups };
  void show(Group g, bool all);
  QString text(Group g, float value) const;

  SettingsStore& settings_;
  QElapsedTimer clock_;
  std::array<SlowStats, kGroups> stats_;
  std::array<std::array<QLabel*, 4>, kGroups> labels_{};  // current, minimum, maximum, average
  QLineEdit* MinFreq = nullptr;
  QLineEdit* MaxFreq = nullptr;
  QCheckBox* SinXxInterpolation = nullptr;
};

}  // namespace zorvik
