#pragma once
#include <QWidget>

#include "display/scope_display.h"

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
  // MainView::clearDisplay: Cls (markers hidden).
  void clear() { display_.clearDisplay(); }
  ScopeDisplay& display() { return display_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void geometryChanged();
  ScopeDisplay& display_;
};

// The screen check at the end of SetupDisplay for the window that holds the display. The modes offered
// are the sizes of the attached screens; when one holds the window the question is asked, but the mode
// is not changed, since the platform leaves that to the desktop. Then the window is moved back into the
// work area.
void checkScreenFor(QWidget* window, MessageSink& messages, const std::string& title);

}  // namespace zorvik
