#pragma once
#include <QWidget>
#include <string>

namespace zorvik {

// A plain view of the last packet on the grid, until the plotter with its resampling and persistence
// takes its place: one pixel column per sample, 32 pixels a division, 10 by 8 divisions.
class TracePlaceholder : public QWidget {
  Q_OBJECT
 public:
  explicit TracePlaceholder(QWidget* parent = nullptr);
  void showPacket(const std::string& packet);
  void clear();
  QSize sizeHint() const override { return {640, 512}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::string packet_;
};

}  // namespace zorvik
