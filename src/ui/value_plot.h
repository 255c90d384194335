#pragma once
#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

namespace zorvik {

// The plot of the spectrum and the histogram: the main display's grid, the trace through the columns,
// the scale's texts at the corners, and the cursor's place handed to the owner for its read-out.
class ValuePlot : public QWidget {
  Q_OBJECT
 public:
  static constexpr int kWidth = 400, kHeight = 256, kMargin = 10;

  explicit ValuePlot(const char* object, QWidget* parent = nullptr);
  struct Texts {
    QString top, bottom, left, right;
  };
  // rows: the row of each column (0 the top, kHeight the bottom), or the empty mark.
  void setPicture(std::vector<float> rows, Texts texts, bool valid);
  QSize sizeHint() const override { return {kWidth + 2 * kMargin, kHeight + 2 * kMargin}; }
  // The cursor over the plot: across 0 (left) to 1 (right), down 0 (top) to 1 (bottom).
  std::function<void(double across, double down)> onCursor;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  std::vector<float> rows_;
  Texts texts_;
  bool valid_ = false;
};

}  // namespace zorvik
