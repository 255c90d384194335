#pragma once
#include <QImage>
#include <QWidget>
#include <functional>

namespace zorvik {

// The plot of the spectrum and the histogram: shows the picture its window draws, stretched to the
// room it has, and hands the mouse on in the picture's own pixels.
class ValuePlot : public QWidget {
  Q_OBJECT
 public:
  explicit ValuePlot(const char* object, QSize pictureSize, QWidget* parent = nullptr);
  void setPicture(QImage picture);
  const QImage& picture() const { return picture_; }
  QSize sizeHint() const override { return pictureSize_; }

  // Positions in the picture's pixels.
  std::function<void(double x, double y)> onPress, onDrag, onHover;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  QPointF toPicture(QPointF at) const;

  QSize pictureSize_;
  QImage picture_;
};

}  // namespace zorvik
