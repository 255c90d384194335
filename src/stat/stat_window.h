#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QWidget>
#include <functional>
#include <string>

#include "ui/analysis_window.h"

namespace zorvik {

class SettingsStore;
class StatStage;
class PacketFiles;
class ValuePlot;

// Stat: how often each voltage level occurs in the record, in samples or in percent of them.
class Stat : public AnalysisWindow {
  Q_OBJECT
 public:
  Stat(SettingsStore& settings, StatStage& stage, PacketFiles& files, QWidget* parent = nullptr);
  ~Stat() override;

  void PlotHistogram();
  void SaveToCSV();
  bool percent() const { return percent_; }

 private:
  QString quantityText(double count) const;

  StatStage& stage_;
  PacketFiles& files_;
  bool percent_ = false, normalize_ = false;
  int interpolation_ = 0, interpolationPoints_ = 3;
  double top_ = 0;  // the count at the top of the plot
  ValuePlot* display_ = nullptr;
  QRadioButton* samples_ = nullptr;
  QRadioButton* percentKey_ = nullptr;
  QCheckBox* Normir = nullptr;
  QComboBox* Interpolation = nullptr;
  QLabel* LabelLevel = nullptr;
  QLabel* LabelQTY = nullptr;
  QLabel* peak_ = nullptr;
};

}  // namespace zorvik
