#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QSlider>
#include <QWidget>
#include <functional>

namespace zorvik {

class TriggerControl;

// The trigger controls of the front panel: level, polarity, speed, automatic level, and the delay key.
class TriggerPanel : public QWidget {
  Q_OBJECT
 public:
  TriggerPanel(TriggerControl& trigger, std::function<void()> openDelayPage, QWidget* parent = nullptr);
  void refresh();

 private:
  TriggerControl& trigger_;
  QSlider* ScrollTrigCH1 = nullptr;
  QPushButton* TrigPolar1 = nullptr;
  QComboBox* TrigFilter1 = nullptr;
  QCheckBox* AutoTrig1 = nullptr;
  QPushButton* KeyDelay = nullptr;
};

}  // namespace zorvik
