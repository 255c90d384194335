#pragma once
#include <QWidget>
#include <functional>

#include "display/display_mouse.h"
#include "display/scope_display.h"
#include "ui/paced_paint.h"

namespace zorvik {

struct MainState;
class MessageSink;

// The display on the main window: the surface as it stands, with the labels and marker lines drawn over
// it. The surface is drawn by the core; the window only shows it and follows its size.
class ScopeDisplayWindow : public QWidget {
  Q_OBJECT
 public:
  explicit ScopeDisplayWindow(ScopeDisplay& display, QWidget* parent = nullptr);
  ~ScopeDisplayWindow() override;

  // The status texts of the label band from the main window's state.
  void showState(const MainState& state);
  // MainView::clearDisplay: Cls, markers and selection hidden.
  void clear();
  ScopeDisplay& display() { return display_; }
  const DisplayMouse& mouse() const { return display_.mouse(); }
  // Markers and selection hidden, the picture kept.
  void hideMouseTools() {
    display_.mouse().clear();
    update();
  }

  // The display's logical units at a pixel of the widget (x 0 to PlotWidth, y 0 at the bottom to 256).
  QPoint logicalAt(QPoint pixel) const;
  // The scale of the view as the mouse tools read it.
  MouseScale mouseScale() const;

  // A selection stands when the right key came up: the window pops its menu at this global position.
  std::function<void(const DisplayMouse::Selection&, QPoint)> onSelection;
  // The surface was laid out anew for the screen (its ratio or the fitted size changed) and stands
  // cleared: the owner draws the last packet again.
  std::function<void()> onRescaled;

  // "Fit to window": the display grows and shrinks with the window, drawn at the screen's resolution;
  // saved pictures keep the stored zoom's size. Off, the display keeps the zoom's size.
  void setFitToWindow(bool on);
  bool fitToWindow() const { return fit_; }
  // Lays the surface out again when the screen's ratio or the room to fit changed.
  void rescale();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

  // The changes of the picture and the state (one or more a packet), and how many paints showed them: at
  // most one a frame of the screen.
  int64_t updates() const { return paced_->pacer().changes(); }
  int64_t paints() const { return paints_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void geometryChanged();
  void paintMouseTools(QPainter& p) const;
  void paintLevelText(QPainter& p) const;
  // The room the display may take in the window, in window pixels.
  QSize fitRoom() const;
  // The wheel's notches on the zoom keys or, with Control, on the zoomed view's scroll.
  void wheelZoom(bool vertical, int notches);
  void wheelScroll(bool vertical, int notches);
  ScopeDisplay& display_;
  DisplayMouse& mouse_;  // the display's own
  bool fit_ = false;
  int wheelRest_ = 0;
  QWidget* watched_ = nullptr;  // the top-level window whose size the fitted display follows
  QSize chrome_;                // the window's size beside the fitted display
  PacedPaint* paced_;           // new packets repaint at the screen's rate at most
  int64_t paints_ = 0;
};

// The screen check at the end of SetupDisplay for the window that holds the display. The modes offered
// are the sizes of the attached screens; when one holds the window the question is asked, but the mode
// is not changed, since the platform leaves that to the desktop. Then the window is moved back into the
// work area.
void checkScreenFor(QWidget* window, MessageSink& messages, const std::string& title);

}  // namespace zorvik
