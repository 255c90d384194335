#pragma once
#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>
#include <QWidget>
#include <string>

#include "analysis/analysis_window.h"

namespace zorvik {

class SettingsStore;
class StatStage;
class PacketFiles;

// Stat: how often each voltage level occurs in the record, in samples or in percent of them, with the
// plot's zoom, markers, styles (bars by default) and memory, and its exports.
class Stat : public AnalysisWindow {
  Q_OBJECT
 public:
  Stat(SettingsStore& settings, StatStage& stage, PacketFiles& files, DeviceContext& main,
       FileDialogs& dialogs, QWidget* parent = nullptr);
  ~Stat() override;

  void PlotHistogram();
  void SaveToCSV();
  bool percent() const { return percent_; }

 protected:
  PlotFrame frame() const override;
  PlotTexts texts() const override;
  void showCursor(double x, double y) override;
  void showReadouts(const PlotFrame& frame) override;

 private:
  QString quantityText(double count) const;

  StatStage& stage_;
  PacketFiles& files_;
  bool percent_ = false, normalize_ = false;
  QRadioButton* samples_ = nullptr;
  QRadioButton* percentKey_ = nullptr;
  QCheckBox* Normir = nullptr;
  QLabel* LabelLevel = nullptr;
  QLabel* LabelQTY = nullptr;
  QLabel* peak_ = nullptr;
};

}  // namespace zorvik
