#pragma once
#include <QString>

#include "session/run_key_actions.h"

namespace zorvik {

class mainwin;

// The keys the window answers beyond run control: the channel, the time base and the display.
class WindowKeys : public RunKeyActions {
 public:
  WindowKeys(mainwin& window, MainController& main, RunControl& run, TriggerControl& trigger)
      : RunKeyActions(main, run, trigger), w_(window) {}

  void closeProgram() override;
  void toggleSyncroLine() override;
  void toggleNullLine() override;
  void toggleInterpolation() override;
  void linePlot() override;
  void psetPlot() override;
  void toggleWide() override;
  void toggleZoom() override;
  void layoutDisplay() override;
  void toggleMemoKey() override;
  void stepHScrollCenter(int step) override;
  void stepVScroll(int step) override;
  void stepTimeDiv(int step) override;
  void stepVoltDiv(int step) override;
  void toggleAverage() override;
  void toggleHiRes() override;
  void toggleOpenClose() override;
  void toggleGround() override;
  void toggleFilterL() override;
  void toggleFilterH() override;
  void openMeter(char key) override;
  void openMeterFFT() override;
  void openMeterStat() override;
  void savePicture(char kind) override;
  void openPictureWindow() override;
  void startRecorder(char key) override;

 private:
  // Runs a menu item of the window by its name; `open` leaves an item that is already checked alone.
  void trigger(const QString& item, bool open = false);
  mainwin& w_;
  int lastInterpolation_ = 2;  // what "I" brings back after it switched interpolation off
};

}  // namespace zorvik
