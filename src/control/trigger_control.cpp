#include "control/trigger_control.h"

#include <algorithm>
#include <cmath>

#include "core/eng_text.h"
#include "link/device_context.h"

namespace zorvik {

int32_t countsFromMicros(double micros, int32_t mc, int32_t mcd) {
  double clock = mc >= 1 ? mc : (mcd >= 1 ? mcd : 2000);
  double counts = std::trunc(micros * kCountsPerMicrosecondTimesMC / clock);
  if (!(counts < kMaxCounts)) return kMaxCounts;  // NaN and long times alike
  return counts < 0 ? 0 : static_cast<int32_t>(counts);
}

int64_t microsFromCounts(int64_t counts, int32_t mc) {
  // Rounded: the counts were cut from whole µs, so cutting again would lose one µs per session.
  return std::llround(static_cast<double>(counts) * mc / kCountsPerMicrosecondTimesMC);
}

TriggerControl::TriggerControl(DeviceContext& main) : main_(main) {
  loadSettings();
}

void TriggerControl::loadSettings() {
  SettingsStore& s = main_.settings();
  std::string pol = s.getText("Ch1", "TrigRiseFall");
  // A caption this program did not write counts as the rising edge.
  model_.TrigInd1 = (pol == "/" || pol == "\\" || pol == "X") ? pol : "/";
  model_.TrigPolar1 = model_.TrigInd1;
  model_.level = std::clamp(s.getInt("Ch1", "TrigPoz"), 0, 255);
  model_.hysteresisF = s.getInt("Ch1", "TrigFallHist") & 3;
  model_.hysteresisR = s.getInt("Ch1", "TrigRiseHist") & 3;
  model_.speed = s.getInt("Ch1", "TrigSpeed") & 3;
  model_.AutoTrig1 = s.getBool("Ch1", "AutoTrigLevel");
  model_.delayMicros = static_cast<int32_t>(s.getDouble("Mode", "TrigDelay"));
  DeviceCache& c = main_.cache();
  c.T1 =
      static_cast<uint8_t>(polarityBits() + model_.hysteresisF + model_.hysteresisR * 4 + model_.speed * 64);
  c.S1 = static_cast<uint8_t>(model_.level);
  SetupTriggerCompensation();
  showTimeouts();
}

void TriggerControl::showTimeouts() {
  // The inputs show what is stored (and goes out at the next session); "now" shows what the device runs.
  auto& f = main_.mutableState().fields;
  f["DeviceTrigPage.TrigWaitTimeAuto"] = std::to_string(main_.settings().getInt("Mode", "TimeoutAuto"));
  f["DeviceTrigPage.TrigWaitTimeNorm"] = std::to_string(main_.settings().getInt("Mode", "TimeoutWait"));
  f["DeviceTrigPage.CurTrigWaitTime"] = lastTA_ < 0 && lastTW_ < 0
                                            ? std::string("-")
                                            : "Auto " + std::to_string(model_.timeoutAutoMicros) + ", Norm " +
                                                  std::to_string(model_.timeoutWaitMicros);
}

int TriggerControl::polarityBits() const {
  if (model_.TrigInd1 == "/") return 0x20;
  if (model_.TrigInd1 == "\\") return 0x10;
  if (model_.TrigInd1 == "X") return 0x30;
  return 0;
}

void TriggerControl::TrigPolar1_Click() {
  // The blank is never set here: only an echo with no edge bit brings it.
  model_.TrigInd1 = model_.TrigInd1 == "/" ? "\\" : model_.TrigInd1 == "\\" ? "X" : "/";
  PutGetRegisterT1();
}

void TriggerControl::setSpeed(int index) {
  model_.speed = index & 3;
  PutGetRegisterT1();
  main_.settings().saveInt("Ch1", "TrigSpeed", model_.speed);
  SetupTriggerCompensation();
}

void TriggerControl::setHysteresisF(int index) {
  model_.hysteresisF = index & 3;
  PutGetRegisterT1();
}

void TriggerControl::setHysteresisR(int index) {
  model_.hysteresisR = index & 3;
  PutGetRegisterT1();
}

void TriggerControl::setAutoTrig(bool on) {
  model_.AutoTrig1 = on;
  main_.settings().saveInt("Ch1", "AutoTrigLevel", on ? 1 : 0);
  onChange();
}

void TriggerControl::PutGetRegisterT1() {
  uint8_t v = static_cast<uint8_t>(polarityBits() + (model_.hysteresisF & 3) + (model_.hysteresisR & 3) * 4 +
                                   (model_.speed & 3) * 64);
  if (main_.Online()) {
    main_.link()->PutRegister1("T1", v);
    return;
  }
  main_.cache().T1 = v;
  main_.settings().SaveSettingValue("Ch1", "TrigRiseFall", model_.TrigInd1);
  main_.settings().saveInt("Ch1", "TrigFallHist", model_.hysteresisF);
  main_.settings().saveInt("Ch1", "TrigRiseHist", model_.hysteresisR);
  model_.TrigPolar1 = model_.TrigInd1;
  SetupTriggerCompensation();
}

void TriggerControl::t1Echo() {
  uint8_t t1 = main_.cache().T1;
  int edges = t1 & 0x30;
  model_.TrigInd1 = edges == 0x30 ? "X" : edges == 0x20 ? "/" : edges == 0x10 ? "\\" : " ";
  model_.TrigPolar1 = edges == 0 ? "No" : model_.TrigInd1;
  main_.settings().SaveSettingValue("Ch1", "TrigRiseFall", model_.TrigInd1);
  model_.hysteresisF = t1 & 3;
  model_.hysteresisR = (t1 >> 2) & 3;
  model_.speed = (t1 >> 6) & 3;
  main_.settings().saveInt("Ch1", "TrigFallHist", model_.hysteresisF);
  main_.settings().saveInt("Ch1", "TrigRiseHist", model_.hysteresisR);
  main_.settings().saveInt("Ch1", "TrigSpeed", model_.speed);
  SetupTriggerCompensation();
}

std::string TriggerControl::compensationKey() const {
  return "TrigCompens" + std::to_string(model_.speed) + model_.TrigInd1;
}

void TriggerControl::SetupTriggerCompensation() {
  model_.compensationNs = main_.settings().getDouble("Ch1", compensationKey());
  model_.TrigCompensation = model_.compensationNs * 1e-9;
  onChange();
}

void TriggerControl::stepCompensation(double ns) {
  model_.compensationNs += ns;
  main_.settings().SaveSettingValue("Ch1", compensationKey(),
                                    std::to_string(static_cast<long long>(model_.compensationNs)));
  SetupTriggerCompensation();
}

void TriggerControl::setLevel(int position) {
  position = std::clamp(position, 0, 255);
  model_.level = position;
  if (main_.Online()) {
    main_.link()->PutRegister1("S1", static_cast<uint8_t>(position));  // the echo stores it
  } else {
    main_.settings().saveInt("Ch1", "TrigPoz", position);
    main_.cache().S1 = static_cast<uint8_t>(position);
  }
  onChange();
}

void TriggerControl::PutGetRegisterS1() {
  if (main_.Online()) main_.link()->PutRegister1("S1", main_.cache().S1);
}

void TriggerControl::s1Echo() {
  model_.level = main_.cache().S1;
  main_.settings().saveInt("Ch1", "TrigPoz", model_.level);
  main_.mutableState().fields["TrigLev1"] = std::to_string(model_.level);
  onChange();
}

double TriggerControl::markerTop(int level, double z, double p, double min, double max) {
  double span = max - min;
  double shift = span > 0 ? (1 - 1 / z) * 256 * (p - min) / span : 0;
  return (level - shift) * z;
}

int TriggerControl::levelFromMarker(double centre, double z, double p, double min, double max) {
  double span = max - min;
  double shift = span > 0 ? (1 - 1 / z) * 256 * (p - min) / span : 0;
  double level = z > 0 ? (centre + shift) / z : centre;
  return static_cast<int>(std::clamp(std::lround(level), 0L, 255L));
}

void TriggerControl::writeTime(const char* reg, const char* key, int32_t& cacheValue) {
  double micros = main_.settings().getDouble("Mode", key);
  int32_t counts = countsFromMicros(micros, main_.cache().MC, main_.cache().MCd);
  if (main_.Online()) {
    main_.link()->PutRegister4(reg, counts);
  } else {
    cacheValue = counts;
  }
}

void TriggerControl::PutGetRegisterTD() {
  writeTime("TD", "TrigDelay", main_.cache().TD);
  if (!main_.Online()) tdEcho();
}
void TriggerControl::PutGetRegisterTA() {
  writeTime("TA", "TimeoutAuto", main_.cache().TA);
  showTimeouts();
}
void TriggerControl::PutGetRegisterTW() {
  writeTime("TW", "TimeoutWait", main_.cache().TW);
  showTimeouts();
}

void TriggerControl::tdEcho() {
  const DeviceCache& c = main_.cache();
  double stored = main_.settings().getDouble("Mode", "TrigDelay");
  model_.delayMicros = static_cast<int32_t>(stored);
  if (c.MC >= 1) {
    model_.DelaySeconds = c.MC / 8333333333.333333 * c.TD;
    onDelay(model_.DelaySeconds);
  }
  bool on = c.MC >= 1 ? c.TD != 0 : stored != 0;
  model_.delayOn = on;
  model_.keyDelayToolTip = on ? engineeringText(model_.DelaySeconds, "s") + " after trigger."
                              : "Delay is OFF. Pre & post sampling are possible";
  onChange();
}

void TriggerControl::timeoutEcho() {
  const DeviceCache& c = main_.cache();
  if (c.MC <= 0) return;
  // One hook serves both echoes: store the one that moved.
  if (c.TA != lastTA_) {
    lastTA_ = c.TA;
    model_.timeoutAutoMicros = static_cast<int32_t>(microsFromCounts(c.TA, c.MC));
    main_.settings().saveInt("Mode", "TimeoutAuto", model_.timeoutAutoMicros);
  }
  if (c.TW != lastTW_) {
    lastTW_ = c.TW;
    model_.timeoutWaitMicros = static_cast<int32_t>(microsFromCounts(c.TW, c.MC));
    main_.settings().saveInt("Mode", "TimeoutWait", model_.timeoutWaitMicros);
  }
  showTimeouts();
  main_.changed();  // the trigger page shows the time-outs now in force
  onChange();
}

}  // namespace zorvik
