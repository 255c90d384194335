#pragma once
#include <QImage>
#include <functional>
#include <string>

#include "signal/stage_chain.h"

namespace zorvik {

// The wall mode ("Wallpaper show"): while it is on, every packet, once drawn, is captured like a saved
// picture and written to the wallpaper file, and the acquisition waits a moment (the user interface
// running) so that the desktop can take the file up before the next one replaces it.
class WallpaperShow : public ChainedStages {
 public:
  static constexpr int kWriteWaitMs = 100;    // before the desktop reads the file
  static constexpr int kDesktopWaitMs = 300;  // while the desktop shows it

  std::function<QImage()> capture = [] { return QImage(); };
  std::function<void(const QImage&)> write;  // the wallpaper file's writer unless a test sets another
  std::function<void(int)> wait;             // a wait with the event loop running unless a test sets another
  // A write that failed switches the mode off: one report, not one per packet.
  std::function<void(const std::string&)> onFault = [](const std::string&) {};

  WallpaperShow();

  bool on() const { return on_; }
  void setOn(bool on) { on_ = on; }

  // Puts this stage behind the last one of the chain that starts at `first` (once).
  void appendTo(ChainedStages& first);

  void wallpaper() override;

 private:
  bool on_ = false;
  bool busy_ = false;  // inside the waits, where the next packet may already run
};

}  // namespace zorvik
