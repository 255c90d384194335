#pragma once
#include <QElapsedTimer>
#include <QMenu>
#include <QMenuBar>
#include <QVBoxLayout>
#include <QWidget>
#include <exception>
#include <functional>
#include <memory>
#include <string>

#include "analysis/analysis_view.h"
#include "export/animation_recorder.h"
#include "export/picture_options.h"
#include "ui/paced_paint.h"

class QPushButton;
class QComboBox;

namespace zorvik {

class SettingsStore;
class DeviceContext;
class FileDialogs;
class ValuePlot;
class ZoomBar;

// The frame the spectrum and histogram windows share: their section of the settings, the plot with its
// zoom keys and scrolls, the mouse markers, the Grid, Labels, style and memory menus, pictures and the
// animation recorder (section "SaveSpectrum" or "SaveStat"), and the place and size kept at closing.
// What is plotted and how its axes read come from the window (frame and texts).
class AnalysisWindow : public QWidget {
  Q_OBJECT
 public:
  AnalysisWindow(SettingsStore& settings, DeviceContext& main, FileDialogs& dialogs, const char* section,
                 const char* saveSection, QWidget* parent);
  ~AnalysisWindow() override;

  std::function<void(const std::string&)> onFault = [](const std::string&) {};
  std::function<void()> onClosed = [] {};

  AnalysisView& view() { return view_; }
  const AnalysisView& view() const { return view_; }
  // What the window shows, as a picture file gets it: with the labels and markers, or the plot alone.
  QImage picture(bool withLabels) const;
  const AnimationRecorder& recorder() const { return recorder_; }

 protected:
  virtual PlotFrame frame() const = 0;
  virtual PlotTexts texts() const = 0;
  // The cursor's read-out, in the axes' units (x with the frame's origin added).
  virtual void showCursor(double x, double y) = 0;

  // The controls above the plot go into `controls`; the plot, its zoom and the read-outs follow.
  void buildFrame(QLayout* controls, QLayout* readouts);
  QMenu* fileMenu() { return file_; }
  // File → Save to CSV-file, first in the menu.
  void addCsvAction(std::function<void()> save);
  // Draws the picture again (a setting changed what it shows).
  void replot();
  // The read-outs beside the plot, after each drawing of this frame.
  virtual void showReadouts(const PlotFrame& frame) = 0;
  // A new acquisition has been computed: into the memory, drawn when due, and to the recorder.
  void acquired();

  void store(const char* name, long long value);
  // An action whose fault becomes the owner's box.
  template <typename F>
  void guarded(F&& action) {
    try {
      action();
    } catch (const std::exception& e) {
      onFault(e.what());
    }
  }
  void closeEvent(QCloseEvent* event) override;
  // The stored place and size, pulled onto the screen.
  void restoreGeometry();

  SettingsStore& settings_;
  DeviceContext& main_;
  FileDialogs& dialogs_;
  AnalysisView view_;
  PictureOptions pictureOptions_;

 private:
  void buildMenus();
  void buildStyleMenu(QMenu* menu);
  void buildMemoryMenu(QMenu* menu);
  // A check mark of a style value, and a list of its choices (item i sets first + i).
  void addStyleToggle(QMenu* menu, const char* caption, const char* object, StyleKey key);
  void addStyleChoices(QMenu* menu, const char* object, StyleKey key, const std::vector<QString>& captions,
                       int first);
  void buildPictureMenu(QMenu* menu);
  void buildAnimationMenu(QMenu* menu);
  void refreshControls();
  // The frame is made once a drawing: it copies the window's values.
  void draw(const PlotFrame& frame);

  const char* section_;
  QMenuBar* menuBar_ = nullptr;
  QMenu* file_ = nullptr;
  ValuePlot* plot_ = nullptr;
  ZoomBar* hBar_ = nullptr;
  ZoomBar* vBar_ = nullptr;
  QPushButton* memoKey_ = nullptr;
  QComboBox* interpolation_ = nullptr;
  std::vector<std::function<void()>> refreshers_;  // menu marks that follow the view
  AnimationRecorder recorder_;
  QElapsedTimer sinceLast_;
  PacedPaint* paced_;
};

}  // namespace zorvik
