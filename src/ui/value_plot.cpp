#include "ui/value_plot.h"

#include <QMouseEvent>
#include <QPainter>

namespace zorvik {

ValuePlot::ValuePlot(const char* object, QSize pictureSize, QWidget* parent)
    : QWidget(parent), pictureSize_(pictureSize) {
  setObjectName(object);
  setMinimumSize(pictureSize);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setMouseTracking(true);
  setCursor(Qt::CrossCursor);
}

void ValuePlot::setPicture(QImage picture) {
  picture_ = std::move(picture);
  update();
}

void ValuePlot::paintEvent(QPaintEvent*) {
  QPainter p(this);
  p.fillRect(rect(), Qt::black);
  if (!picture_.isNull()) p.drawImage(rect(), picture_);
}

QPointF ValuePlot::toPicture(QPointF at) const {
  return {at.x() * pictureSize_.width() / std::max(width(), 1),
          at.y() * pictureSize_.height() / std::max(height(), 1)};
}

void ValuePlot::mousePressEvent(QMouseEvent* event) {
  const QPointF at = toPicture(event->position());
  if (event->button() == Qt::LeftButton && onPress) onPress(at.x(), at.y());
}

void ValuePlot::mouseMoveEvent(QMouseEvent* event) {
  const QPointF at = toPicture(event->position());
  if ((event->buttons() & Qt::LeftButton) && onDrag) onDrag(at.x(), at.y());
  if (onHover) onHover(at.x(), at.y());
}

}  // namespace zorvik
