#pragma once
#include <QCheckBox>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>
#include <functional>
#include <vector>

#include "measure/slow_stats.h"

namespace zorvik {

class SettingsStore;
class SpectrumEngine;

// THDmeter: the total harmonic distortion of the strongest line, with its minimum, maximum and slow
// average, and the list of the harmonics when asked.
class THDmeter : public QWidget {
  Q_OBJECT
 public:
  THDmeter(SettingsStore& settings, QWidget* parent = nullptr);
  void Ind(const SpectrumEngine& e, float samplePeriod);
  const SlowStats& stats() const { return stats_; }
  std::function<bool()> rectangularWindow = [] { return false; };
  std::function<void()> useHamming = [] {};
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
