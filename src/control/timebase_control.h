#pragma once
#include <cstdint>
#include <functional>
#include <string>

#include "control/listeners.h"
#include "control/scale_lists.h"
#include "control/timebase_rule.h"

namespace zorvik {

class DeviceContext;

// What the horizontal controls show.
struct TimebaseModel {
  int ScrollTimeDiv = 15;           // position of the time/div scroll, 4..26
  int TimeDiv = 15;                 // the list entry whose time the rule is given
  bool timeDivMarked = true;        // the entry's selection mark; cleared while the echo is awaited
  bool fastEntriesEnabled = false;  // positions 4 to 7, only with RIS
  bool EnableRIS = false;
  bool RealtmDraw = true;
  bool ParallPlotEn = true;
  bool MaximizeClock = false;
  int SampleMemoDepth = 1;  // "Min.(fast)", "Norm", "High", "Max(slow)"
  bool KeepPropPresamp = true;
  int horZoom = 1;  // the horizontal zoom the fast positions stand on without RIS (1: none)

  int HScrollCenterMax = 0;    // TCh
  int HScrollCenterValue = 0;  // TC
  bool HScrollCenterEnabled = false;
  std::string HScrollCenterToolTip;

  int ScreenSamples = 0;
  ClockWindow clock;
  float CentreTime = 0;  // seconds from the trigger to the middle of the record
  float DelaySeconds = 0;
};

extern const char* const kMemoDepthEntries[4];

// The time base: the selection rule and its writes (MC, TS, QS), RS, the presamples (TC), the echoes of
// all of them, the memory limits of the mode and the horizontal controls. Online the writers only write
// and the echoes move the model; offline they store and move it at once.
class TimebaseControl {
 public:
  explicit TimebaseControl(DeviceContext& main);

  const TimebaseModel& model() const { return model_; }
  Listeners onChange;  // the controls
  Listeners onScale;   // the time scale moved: labels, grid text, replot
  // The horizontal zoom keys, pressed by the fast positions without RIS.
  std::function<void(int zoom)> onHorZoom = [](int) {};
  // The user pressed a zoom key: the fast positions go on from that zoom.
  void noteHorZoom(int zoom) { model_.horZoom = zoom > 1 ? zoom : 1; }
  // After an MC echo: the trigger delay follows the clock.
  std::function<void()> onClock = [] {};
  // Width of the acquisition area in pixels (320, 480 in Wide) and the state of the trigger delay.
  std::function<int()> acqWidthPixels = [] { return 320; };
  std::function<bool()> delayOn = [] { return false; };

  void loadSettings();

  // The controls.
  void ScrollTimeDiv_Change(int position);
  void stepTimeDiv(int step);
  void EnableRIS_Click(bool on);
  void RealtmDraw_Click(bool on);
  void SampleMemoDepth_Click(int index);
  void KeepPropPresamp_Click(bool on);
  void MaximizeClock_Click(bool on);
  void HScrollCenter_Change(int value);
  void stepHScrollCenter(int step);
  void setDelaySeconds(double seconds);

  // Operations.
  void SetupTimeDiv();
  TimebaseRuleResult PutGetRegisterMCTSRS(float timePerDiv);
  void PutGetRegisterRS();
  void PutGetRegisterQS(int32_t samples);
  void PutGetRegisterTC();

  // Echoes and limit steps.
  void samplingUpdate();  // MC
  void timeBaseUpdate();  // TS
  void rsUpdate();
  void qsUpdate();
  void presampleUpdate();  // TC
  void limitsOfMode();
  void sampleLimitStep();
  void presampleLimitStep();

  // The seconds per division of the present entry.
  float secondsPerDiv() const { return timeDivValue(model_.TimeDiv); }
  // RIS would run: RIS allowed and a position below 500 ns.
  bool risWouldRun() const { return model_.EnableRIS && model_.ScrollTimeDiv < kTimeDivRealTime; }

 private:
  bool followSamplePeriod();  // true when the time per division is one of the list
  void updateCentre();
  void showPresamples();
  void setHorZoom(int zoom);
  void storePresamples();
  void field(const std::string& name, int64_t value);
  void changed();

  DeviceContext& main_;
  TimebaseModel model_;
  int lastPosition_ = 15;
  int rememberedTCh_ = 0;
  bool ruleDueOnRs_ = false;
  bool zoomStandsIn_ = false;  // the horizontal zoom serves a fast position without RIS
  float presentTimePerDiv_ = 0;
};

}  // namespace zorvik
