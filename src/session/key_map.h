#pragma once
#include <cstdint>
#include <string>

namespace zorvik {

// What the keys of the main window do. Each target that is not built yet does nothing.
class KeyActions {
 public:
  virtual ~KeyActions() = default;
  virtual void closeProgram() {}
  virtual void toggleSyncroLine() {}
  virtual void toggleNullLine() {}
  virtual void toggleInterpolation() {}
  virtual void linePlot() {}
  virtual void psetPlot() {}
  virtual void toggleWide() {}
  virtual void toggleZoom() {}  // only on a screen at least 1280 pixels wide
  virtual void showDebugCommand() {}
  virtual void layoutDisplay() {}
  virtual void stepHScrollCenter(int /*step*/) {}
  virtual void stepVScroll(int /*step*/) {}
  virtual void stepTimeDiv(int /*step*/) {}
  virtual void stepVoltDiv(int /*step*/) {}
  virtual void keyStart() {}
  virtual void toggleAverage() {}
  virtual void toggleHiRes() {}
  virtual void toggleOpenClose() {}
  virtual void toggleMemoKey() {}
  virtual void toggleGround() {}
  virtual void toggleAutoWait() {}
  virtual void calibrate() {}
  virtual void stepTrigLevel(int /*step*/) {}
  virtual void toggleWorkMode() {}
  virtual void repaintDisplay() {}
  virtual void plotSpeedTest() {}
  // Second level of "M": the meter of that key (one of "DHLVAUNFPWCTBR5/\\'."), "S" the FFT, "Q" the
  // histogram.
  virtual void openMeter(char /*key*/) {}
  virtual void openMeterFFT() {}
  virtual void openMeterStat() {}
  // Second level of "B": 'B' BMP, 'G' GIF, 'J' JPEG, 'C' clipboard; "W" the picture window; the recorder.
  virtual void savePicture(char /*kind*/) {}
  virtual void openPictureWindow() {}
  virtual void startRecorder(char /*key*/) {}
  // Second level of "F".
  virtual void toggleFilterL() {}
  virtual void toggleFilterH() {}
};

// The keyboard of the main window: single keys, and the prefixes "M" (meter), "F" (filter) and "B"
// (picture) whose second key counts within 4000 ms.
class KeyMap {
 public:
  static constexpr int64_t kPrefixWindowMs = 4000;
  explicit KeyMap(KeyActions& actions) : actions_(actions) {}

  // key: a letter or digit or sign as typed ("a" and "A" alike), or one of "Esc", "Left", "Right", "Up",
  // "Down", "Home", "End", "PageUp", "PageDown", "Backspace". Returns whether the key was taken.
  bool press(const std::string& key, int64_t nowMs, bool shift = false, bool alt = false);
  // A name press() knows: one of the named keys above, or one printable character.
  static bool isKeyName(const std::string& key);
  char pendingPrefix() const { return prefix_; }
  bool devMode = false;

 private:
  bool secondLevel(char prefix, char key);
  KeyActions& actions_;
  char prefix_ = 0;
  int64_t prefixAt_ = 0;
};

}  // namespace zorvik
