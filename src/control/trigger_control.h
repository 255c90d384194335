#pragma once
#include <cstdint>
#include <functional>
#include <string>

namespace zorvik {

class DeviceContext;

// One count of the trigger's delay and time-outs is 12 clock periods.
constexpr double kCountsPerMicrosecondTimesMC = 8333.333333333334;
constexpr int32_t kMaxCounts = 2147483647;

// Counts for a time in µs at the clock MC (10 ps units), falling back to MCd, then to 2000.
int32_t countsFromMicros(double micros, int32_t mc, int32_t mcd);
// µs for counts, rounded to a whole number.
int64_t microsFromCounts(int64_t counts, int32_t mc);

struct TriggerModel {
  std::string TrigInd1 = "/";                       // polarity caption: "/", "\\", "X" or a blank
  std::string TrigPolar1 = "/";                     // the same, "No" for none
  int level = 127;                                  // ScrollTrigCH1, 0..255
  int hysteresisF = 0, hysteresisR = 0, speed = 0;  // list indexes 0..3
  bool AutoTrig1 = true;
  double compensationNs = 0;    // TriggerCompensation1
  double TrigCompensation = 0;  // seconds
  double DelaySeconds = 0;
  bool delayOn = false;  // KeyDelay marked, HScrollCenter disabled
  std::string keyDelayToolTip = "Delay is OFF. Pre & post sampling are possible";
  int32_t delayMicros = 0, timeoutAutoMicros = 0, timeoutWaitMicros = 0;
};

// Level, polarity, hysteresis and speed of the trigger (T1, S1), its delay (TD) and time-outs (TA, TW).
// Online the writers only write and the echo moves the model; offline they store at once.
class TriggerControl {
 public:
  explicit TriggerControl(DeviceContext& main);
  const TriggerModel& model() const { return model_; }
  std::function<void()> onChange = [] {};
  // The time base recomputes the record's centre when the delay changes.
  std::function<void(double delaySeconds)> onDelay = [](double) {};

  void loadSettings();
  void TrigPolar1_Click();
  void setSpeed(int index);
  void setHysteresisF(int index);
  void setHysteresisR(int index);
  void setAutoTrig(bool on);
  void setLevel(int position);
  void stepLevel(int step) { setLevel(model_.level + step); }
  void stepCompensation(double ns);
  // The marker of the level on the 256-high frame, at vertical zoom z and scroll position p in min..max.
  static double markerTop(int level, double z, double p, double min, double max);
  static int levelFromMarker(double centre, double z, double p, double min, double max);

  void PutGetRegisterT1();
  void PutGetRegisterS1();
  void PutGetRegisterTD();
  void PutGetRegisterTA();
  void PutGetRegisterTW();
  void SetupTriggerCompensation();

  void t1Echo();
  void s1Echo();
  void tdEcho();
  void timeoutEcho();

 private:
  int polarityBits() const;
  std::string compensationKey() const;
  void writeTime(const char* reg, const char* key, int32_t& cacheValue);
  void showTimeouts();

  DeviceContext& main_;
  TriggerModel model_;
  int64_t lastTA_ = -1, lastTW_ = -1;
};

}  // namespace zorvik
