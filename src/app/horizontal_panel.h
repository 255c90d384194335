#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QScrollBar>
#include <QWidget>

namespace zorvik {

class TimebaseControl;

// The time base's controls below the display: time/div, RIS, presamples, real-time transmit and the
// memory depth. It shows the time base's model and hands the user's actions to it.
class HorizontalPanel : public QWidget {
  Q_OBJECT
 public:
  explicit HorizontalPanel(TimebaseControl& timebase, QWidget* parent = nullptr);
  void refresh();

 private:
  TimebaseControl& timebase_;
  QComboBox* TimeDiv = nullptr;
  QScrollBar* ScrollTimeDiv = nullptr;
  QCheckBox* EnableRIS = nullptr;
  QScrollBar* HScrollCenter = nullptr;
  QCheckBox* RealtmDraw = nullptr;
  QComboBox* SampleMemoDepth = nullptr;
  QCheckBox* KeepPropPresamp = nullptr;
};

}  // namespace zorvik
