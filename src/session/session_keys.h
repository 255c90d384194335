#pragma once
#include "session/run_key_actions.h"

namespace zorvik {

class ScopeSession;

// The keys of the keyboard table that the session core answers: run control and the trigger, the
// channel, the time base and the display's settings. A window adds the keys that need it (close,
// meters, pictures, the zoom that needs a wide screen).
class SessionKeys : public RunKeyActions {
 public:
  explicit SessionKeys(ScopeSession& session);

  void toggleSyncroLine() override;
  void toggleNullLine() override;
  void toggleInterpolation() override;
  void linePlot() override;
  void psetPlot() override;
  void toggleWide() override;
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

 protected:
  ScopeSession& s_;

 private:
  int lastInterpolation_ = 2;  // what "I" brings back after it switched interpolation off
};

}  // namespace zorvik
