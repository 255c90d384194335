#include "ui/value_plot.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "spectrum/spectrum_plot.h"

namespace zorvik {

ValuePlot::ValuePlot(const char* object, QWidget* parent) : QWidget(parent) {
  setObjectName(object);
  setFixedSize(sizeHint());
  setMouseTracking(true);
}

void ValuePlot::setPicture(std::vector<float> rows, Texts texts, bool valid) {
  rows_ = std::move(rows);
  texts_ = std::move(texts);
  valid_ = valid;
  update();
}

void ValuePlot::paintEvent(QPaintEvent*) {
  QPainter p(this);
  p.fillRect(rect(), Qt::black);
  // Lines one device pixel wide: on a high-resolution screen thin and sharp, not a window pixel doubled.
  const double thin = 1 / std::max(devicePixelRatioF(), 1.0);
  // The grid of the main display: olive division lines, ten across and eight high.
  p.setPen(QPen(QColor(128, 128, 0), thin));
  for (int i = 0; i <= 10; ++i)
    p.drawLine(kMargin + i * kWidth / 10, kMargin, kMargin + i * kWidth / 10, kMargin + kHeight);
  for (int i = 0; i <= 8; ++i)
    p.drawLine(kMargin, kMargin + i * kHeight / 8, kMargin + kWidth, kMargin + i * kHeight / 8);
  if (!valid_) return;
  p.setPen(QPen(QColor(0, 255, 0), thin));
  QPolygonF line;
  for (size_t x = 0; x < rows_.size(); ++x)
    if (rows_[x] != kEmptyColumn)
      line << QPointF(kMargin + static_cast<double>(x), kMargin + std::clamp<double>(rows_[x], 0, kHeight));
  p.drawPolyline(line);
  p.setPen(Qt::white);
  p.drawText(kMargin + 2, kMargin + 12, texts_.top);
  p.drawText(kMargin + 2, kMargin + kHeight - 4, texts_.bottom);
  p.drawText(QRect(kMargin, kMargin + kHeight - 32, kWidth - 2, 14), Qt::AlignLeft, texts_.left);
  p.drawText(QRect(kMargin, kMargin + kHeight - 16, kWidth - 2, 14), Qt::AlignRight, texts_.right);
}

void ValuePlot::mouseMoveEvent(QMouseEvent* event) {
  if (!onCursor || !valid_) return;
  const QPointF at = event->position();
  onCursor(std::clamp((at.x() - kMargin) / (kWidth - 1), 0.0, 1.0),
           std::clamp((at.y() - kMargin) / kHeight, 0.0, 1.0));
}

}  // namespace zorvik
