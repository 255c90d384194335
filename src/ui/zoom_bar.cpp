#include "ui/zoom_bar.h"

#include <QBoxLayout>
#include <QSignalBlocker>

namespace zorvik {

ZoomBar::ZoomBar(ViewZoom& zoom, QWidget* parent, const char* scrollName) : QWidget(parent), zoom_(zoom) {
  const bool horizontal = zoom.axis() == ZoomAxis::Horizontal;
  setObjectName(horizontal ? "HorZoomBar" : "VertZoomBar");
  QBoxLayout* box = horizontal ? static_cast<QBoxLayout*>(new QHBoxLayout(this)) : new QVBoxLayout(this);
  box->setContentsMargins(0, 0, 0, 0);
  box->setSpacing(2);
  for (int factor : zoom.keyFactors()) {
    auto* key = new QToolButton(this);
    const QString n = QString::number(factor);
    key->setObjectName(horizontal ? "Hzoom" + n : "x" + n + "Vzoom1");
    key->setText("x" + n);
    key->setCheckable(true);
    key->setToolTip(QString::fromStdString(zoom.keyToolTip(factor)));
    key->setFocusPolicy(Qt::NoFocus);  // the window's keyboard table keeps the keys
    connect(key, &QToolButton::clicked, this, [this, factor](bool on) { zoom_.keyClicked(factor, on); });
    box->addWidget(key, 0, horizontal ? Qt::Alignment() : Qt::AlignHCenter);
    keys_.push_back(key);
  }
  scroll_ = new QScrollBar(horizontal ? Qt::Horizontal : Qt::Vertical, this);
  scroll_->setObjectName(scrollName ? scrollName : horizontal ? "HScrollView" : "ScrollVzoom1");
  scroll_->setRange(ViewZoom::kMin, ViewZoom::kMax);
  scroll_->setSingleStep((ViewZoom::kMax - ViewZoom::kMin) / 100);
  // The largest value shows the record's left end and the top of the scale: the thumb stands there.
  scroll_->setInvertedAppearance(true);
  scroll_->setInvertedControls(!horizontal);
  scroll_->setFocusPolicy(Qt::NoFocus);
  connect(scroll_, &QScrollBar::valueChanged, this, [this](int v) { zoom_.setValue(v); });
  box->addWidget(scroll_, 1, horizontal ? Qt::Alignment() : Qt::AlignHCenter);
  refresh();
}

void ZoomBar::refresh() {
  for (size_t i = 0; i < keys_.size(); ++i) {
    QSignalBlocker b(keys_[i]);
    keys_[i]->setChecked(zoom_.keyOn(zoom_.keyFactors()[i]));
  }
  QSignalBlocker b(scroll_);
  scroll_->setPageStep(zoom_.largeStep());
  scroll_->setValue(zoom_.value());
  scroll_->setEnabled(zoom_.scrollEnabled());
  scroll_->setToolTip(QString::fromStdString(zoom_.scrollToolTip()));
}

}  // namespace zorvik
