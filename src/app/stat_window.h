#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QWidget>
#include <functional>
#include <string>

namespace zorvik {

class SettingsStore;
class StatStage;
class PacketFiles;
class ValuePlot;

// Stat: how often each voltage level occurs in the record, in samples or in percent of them.
class Stat : public QWidget {
  Q_OBJECT
 public:
  Stat(SettingsStore& settings, StatStage& stage, PacketFiles& files, QWidget* parent = nullptr);
  ~Stat() override;

  void PlotHistogram();
  void SaveToCSV();
  bool percent() const { return percent_; }
  std::function<void(const std::string&)> onFault = [](const std::string&) {};
  std::function<void()> onClosed = [] {};
  std::function<bool()> memoOn = [] { return false; };

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void store(const char* name, long long value);
  QString quantityText(double count) const;

  SettingsStore& settings_;
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
