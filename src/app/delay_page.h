#pragma once
#include <QButtonGroup>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>

#include "ui/kept_page.h"

namespace zorvik {

class DelayControl;
class TriggerControl;
struct MainState;

// "Trigger delay": the delay in µs by digits, a weight for the digit the scroll moves, off and restore.
class DelayPage : public KeptPage {
  Q_OBJECT
 public:
  DelayPage(DelayControl& delay, TriggerControl& trigger, const MainState& state, QWidget* parent = nullptr);
  void refresh();

 private:
  DelayControl& delay_;
  TriggerControl& trigger_;
  const MainState& state_;
  QLabel* TrigDelayLbl = nullptr;
  QLabel* TimeAsqLbl = nullptr;
  QScrollBar* Coma = nullptr;
  QPushButton* KeyDelayOff = nullptr;
  QPushButton* KeyDelayRestore = nullptr;
  bool filling_ = false;  // keeps Coma quiet while the page is filled
};

}  // namespace zorvik
