#pragma once
#include <QScrollBar>
#include <QToolButton>
#include <QWidget>
#include <vector>

#include "display/view_zoom.h"

namespace zorvik {

// The zoom keys of one axis and the scroll that places the zoomed view: Hzoom2 ... Hzoom10 with
// HScrollView below the display, x2Vzoom1 ... x10Vzoom1 with ScrollVzoom1 beside it; the spectrum and
// histogram windows have the same keys with scrolls of their own names.
class ZoomBar : public QWidget {
  Q_OBJECT
 public:
  // `scrollName`: the scroll's name where it is not the main display's.
  ZoomBar(ViewZoom& zoom, QWidget* parent = nullptr, const char* scrollName = nullptr);
  // The keys and the scroll as the zoom stands.
  void refresh();

 private:
  ViewZoom& zoom_;
  std::vector<QToolButton*> keys_;
  QScrollBar* scroll_ = nullptr;
};

}  // namespace zorvik
