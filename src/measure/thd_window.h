#pragma once
#include <QCheckBox>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <functional>
#include <vector>

#include "measure/slow_stats.h"
#include "measure/spectrum_reader_window.h"

namespace zorvik {

class SettingsStore;
class SpectrumEngine;

// THDmeter: the total harmonic distortion of the strongest line, with its minimum, maximum and slow
// average, and the list of the harmonics when asked.
class THDmeter : public SpectrumReaderWindow {
  Q_OBJECT
 public:
  // Open, it is one of the stage's readers: its fundamental is refined and its window is not rectangular.
  THDmeter(SettingsStore& settings, SpectrumStage& stage, QWidget* parent = nullptr);
  void Ind(const SpectrumEngine& e, float samplePeriod);
  const SlowStats& stats() const { return stats_; }
  std::function<void(const std::string&)> onFault = [](const std::string&) {};

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void reset();
  QString percent(float v) const;

  SettingsStore& settings_;
  QElapsedTimer clock_;
  SlowStats stats_;
  QLabel* CurVal = nullptr;
  QLabel* MinVal = nullptr;
  QLabel* MaxVal = nullptr;
  QLabel* AvgVal = nullptr;
  QLineEdit* MaxHarm = nullptr;
  QCheckBox* PowerMode = nullptr;
  QCheckBox* HarmList = nullptr;
  QGroupBox* FrameList = nullptr;
  QGridLayout* list_ = nullptr;
  std::vector<std::array<QLabel*, 3>> rows_;  // HarmNum, HarmFreq, HarmAmp
};

}  // namespace zorvik
