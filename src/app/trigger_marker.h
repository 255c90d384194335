#pragma once
#include <QWidget>

namespace zorvik {

class TriggerControl;
class ScopeDisplay;

// TrigInd1: the trigger's polarity caption in a narrow strip beside the display, at the level's height.
// Dragging it with the mouse sets the level.
class TriggerMarker : public QWidget {
  Q_OBJECT
 public:
  TriggerMarker(TriggerControl& trigger, const ScopeDisplay& display, QWidget* parent = nullptr);
  // The level or the polarity changed, or the display's size.
  void refresh();
  QSize sizeHint() const override;
  // The level a pointer at this height gives.
  int levelAt(int y) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  TriggerControl& trigger_;
  const ScopeDisplay& display_;
};

}  // namespace zorvik
