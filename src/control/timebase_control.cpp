#include "control/timebase_control.h"

#include <algorithm>
#include <cmath>

#include "core/eng_text.h"
#include "core/fault.h"
#include "core/whole_numbers.h"
#include "link/device_context.h"

namespace zorvik {

const char* const kMemoDepthEntries[4] = {"Min.(fast)", "Norm", "High", "Max(slow)"};

namespace {

constexpr const char* kSection = "Sampling";
const char* const kRuleLimits[7] = {"MCl", "MCh", "TOv", "TOl", "TMl", "TMh", "TPl"};

int32_t limitEntry(const std::array<std::array<int32_t, kLimitColumns>, kLimitRows>& table, int row,
                   int column) {
  if (row < 0 || row >= kLimitRows || column < 0 || column >= kLimitColumns)
    throw Fault("Memory limit table: row " + std::to_string(row) + ", column " + std::to_string(column) +
                " is out of range");
  return table[static_cast<size_t>(row)][static_cast<size_t>(column)];
}

}  // namespace

TimebaseControl::TimebaseControl(DeviceContext& main) : main_(main) {
  loadSettings();
}

void TimebaseControl::loadSettings() {
  SettingsStore& s = main_.settings();
  model_.SampleMemoDepth = std::clamp(s.getInt(kSection, "MemoDepth"), 0, 3);
  model_.EnableRIS = s.getInt(kSection, "RIS") != 0;
  model_.fastEntriesEnabled = model_.EnableRIS;
  model_.KeepPropPresamp = s.getInt(kSection, "KeepPropPresmp") == 1;
  model_.RealtmDraw = s.getInt(kSection, "ROLL") != 0;
  model_.ParallPlotEn = s.getBool(kSection, "RollEn");
  main_.cache().RS = static_cast<uint8_t>((model_.RealtmDraw ? 2 : 0) + (model_.EnableRIS ? 1 : 0));

  // A first start stands at the lowest position of the list.
  int position = std::clamp(s.getInt(kSection, "TimePerDiv", kTimeDivFirst), kTimeDivFirst, kTimeDivLast);
  model_.ScrollTimeDiv = lastPosition_ = position;
  // The display restores its own zoom; the list stands where the fast position put it.
  bool standIn = position < kTimeDivRealTime && !model_.EnableRIS;
  model_.TimeDiv = standIn ? kTimeDivRealTime : position;
  model_.horZoom = standIn ? fallbackZoom(position) : 1;
  zoomStandsIn_ = standIn;
  model_.timeDivMarked = true;
  if (!main_.Online()) SetupTimeDiv();
}

void TimebaseControl::changed() {
  main_.changed();
  onChange();
}

void TimebaseControl::field(const std::string& name, int64_t value) {
  main_.mutableState().fields[name] = std::to_string(value);
}

void TimebaseControl::setHorZoom(int zoom) {
  model_.horZoom = zoom;
  onHorZoom(zoom);
}

// --- the time/div controls ------------------------------------------------------------------------

void TimebaseControl::ScrollTimeDiv_Change(int position) {
  position = std::clamp(position, kTimeDivFirst, kTimeDivLast);
  const int previous = lastPosition_;
  model_.ScrollTimeDiv = lastPosition_ = position;
  if (position >= kTimeDivRealTime || model_.EnableRIS) {
    if (zoomStandsIn_) {
      zoomStandsIn_ = false;
      if (!model_.EnableRIS && previous < kTimeDivRealTime)
        setHorZoom(zoomAfterRise(model_.horZoom, position - previous));
      else
        setHorZoom(1);  // RIS now samples the position itself
    }
    model_.TimeDiv = position;
  } else {
    // Faster than real sampling: 500 ns, stretched by the zoom.
    model_.TimeDiv = kTimeDivRealTime;
    zoomStandsIn_ = true;
    setHorZoom(fallbackZoom(position));
  }
  model_.timeDivMarked = true;
  if (!main_.Online()) main_.settings().saveInt(kSection, "TimePerDiv", position);
  SetupTimeDiv();
  changed();
}

void TimebaseControl::stepTimeDiv(int step) {
  int target = std::clamp(model_.ScrollTimeDiv + step, kTimeDivFirst, kTimeDivLast);
  if (target != model_.ScrollTimeDiv) ScrollTimeDiv_Change(target);
}

void TimebaseControl::EnableRIS_Click(bool on) {
  model_.EnableRIS = on;
  // Online the rule runs again when the device has taken the new RS.
  if (main_.Online()) ruleDueOnRs_ = true;
  PutGetRegisterRS();
  changed();
}

void TimebaseControl::RealtmDraw_Click(bool on) {
  model_.RealtmDraw = on;
  main_.settings().saveInt(kSection, "ROLL", on ? 1 : 0);
  PutGetRegisterRS();
  changed();
}

void TimebaseControl::SampleMemoDepth_Click(int index) {
  if (index < 0 || index > 3) return;
  model_.SampleMemoDepth = index;
  main_.settings().saveInt(kSection, "MemoDepth", index);
  SetupTimeDiv();
  changed();
}

void TimebaseControl::KeepPropPresamp_Click(bool on) {
  model_.KeepPropPresamp = on;
  main_.settings().saveInt(kSection, "KeepPropPresmp", on ? 1 : 0);
  changed();
}

void TimebaseControl::MaximizeClock_Click(bool on) {
  model_.MaximizeClock = on;
  changed();
}

// --- the rule -------------------------------------------------------------------------------------

void TimebaseControl::SetupTimeDiv() {
  if (main_.Online()) {
    bool missing = false;
    for (const char* name : kRuleLimits) {
      if (main_.limitFlag(name)) continue;
      main_.link()->GetProperty(name);
      missing = true;
    }
    if (missing) return;  // their answers run the rule
    PutGetRegisterMCTSRS(secondsPerDiv());
    model_.timeDivMarked = false;  // the echo marks the entry the device runs
    changed();
    return;
  }
  if (main_.scale().SamplesPerDiv == 0) throw Fault("Division by zero: SamplesPerDiv is 0");
  {
    RecordScale scale = main_.scale();
    scale.SamplePeriod = secondsPerDiv() / static_cast<float>(main_.scale().SamplesPerDiv);
    main_.setScale(scale);
  }
  main_.setReplotNeeded(true);
  updateCentre();
  onScale();
  changed();
}

TimebaseRuleResult TimebaseControl::PutGetRegisterMCTSRS(float timePerDiv) {
  DeviceCache& c = main_.cache();
  SettingsStore& s = main_.settings();
  TimebaseRuleInput in;
  in.timePerDiv = timePerDiv;
  in.limits = {c.MCd, c.MCl, c.MCh, c.TOv, c.TOl, c.TMl, c.TMh, c.TPl};
  ClockSettings clock{s.getInt("MCUclock", "Minimum"), s.getInt("MCUclock", "Manual min"),
                      s.getInt("MCUclock", "Maximum"), s.getInt("MCUclock", "Manual max")};
  in.clock = model_.clock = clockWindow(in.limits, clock);
  in.EnableRIS = model_.EnableRIS;
  in.MaximizeClock = model_.MaximizeClock;
  in.MemoDepth = model_.SampleMemoDepth;
  in.AcqWidthPixels = acqWidthPixels();
  in.qsTableEntry = [&c](int32_t ts) { return limitEntry(c.QShTable, c.limitRow(ts), c.limitColumn()); };
  presentTimePerDiv_ = timePerDiv;

  TimebaseRuleResult r = selectTimebase(in);
  {
    RecordScale scale = main_.scale();
    scale.SamplesPerDiv = r.SamplesPerDiv;
    main_.setScale(scale);
  }
  model_.ScreenSamples = r.ScreenSamples;
  field("DeviceSamplingPage.CurSamplesPerDiv", r.SamplesPerDiv);
  if (!r.ok()) {
    const std::string& title = main_.identity().InstanceTitle;
    main_.messages().show(BoxKind::InfoBox, title, r.message, title);
    changed();
    return r;
  }
  // The common end, in this order: TS when it moves, MC always, QS, then a new zero.
  if (main_.Online()) {
    ClassOBEX* link = main_.link();
    if (r.TS != c.TS) link->PutRegister4("TS", r.TS);
    link->PutRegister2("MC", r.MC);
    PutGetRegisterQS(r.QS);
    bool serial = false;
    link->GetSerialActive(serial);
    if (serial) link->SendCommand("C", false, false);
  } else {
    c.TS = r.TS;
    c.MC = r.MC;
    PutGetRegisterQS(r.QS);
  }
  main_.setRisActive(r.RisActive);
  changed();
  return r;
}

void TimebaseControl::PutGetRegisterRS() {
  DeviceCache& c = main_.cache();
  const int rs = (model_.RealtmDraw ? 2 : 0) + (model_.EnableRIS ? 1 : 0);
  if (main_.Online()) {
    main_.link()->PutRegister1("RS", static_cast<uint8_t>(rs));
    return;
  }
  c.RS = static_cast<uint8_t>(rs);
  main_.settings().saveInt(kSection, "RIS", model_.EnableRIS ? 1 : 0);
  model_.fastEntriesEnabled = model_.EnableRIS;
  ScrollTimeDiv_Change(model_.ScrollTimeDiv);
}

void TimebaseControl::PutGetRegisterQS(int32_t samples) {
  DeviceCache& c = main_.cache();
  if (main_.Online()) {
    if (samples != c.QS) main_.link()->PutRegister2("QS", samples);
    return;
  }
  c.QS = samples;
  qsUpdate();
}

void TimebaseControl::PutGetRegisterTC() {
  if (main_.Online()) main_.link()->PutRegister2("TC", main_.cache().TC);
}

// --- echoes ---------------------------------------------------------------------------------------

bool TimebaseControl::followSamplePeriod() {
  const DeviceCache& c = main_.cache();
  {
    RecordScale scale = main_.scale();
    scale.SamplePeriod = static_cast<float>(c.TS / 256.0 * c.MC * 1e-11);
    main_.setScale(scale);
  }
  const float division = static_cast<float>(main_.scale().SamplesPerDiv) * main_.scale().SamplePeriod;
  bool found = false;
  for (int position = 0; position < kTimeDivCount; ++position) {
    const float value = timeDivValue(position);
    if (!(std::fabs(value - division) < 0.1f * value)) continue;
    position = std::max(position, kTimeDivFirst);
    model_.TimeDiv = position;
    model_.timeDivMarked = true;
    // A fast position without RIS stays where the user put it: 500 ns stands in for it.
    bool standIn = zoomStandsIn_ && position == kTimeDivRealTime;
    if (!standIn) model_.ScrollTimeDiv = lastPosition_ = position;
    found = true;
    break;
  }
  onClock();
  updateCentre();
  return found;
}

void TimebaseControl::samplingUpdate() {
  // A new clock alone (TS unchanged) also moves the time per division: keep it too.
  if (followSamplePeriod()) main_.settings().saveInt(kSection, "TimePerDiv", model_.ScrollTimeDiv);
  onScale();
  changed();
}

void TimebaseControl::timeBaseUpdate() {
  main_.settings().saveInt(kSection, "TimePerDiv", model_.ScrollTimeDiv);
  followSamplePeriod();
  onScale();
  limitsOfMode();
  changed();
}

void TimebaseControl::rsUpdate() {
  const DeviceCache& c = main_.cache();
  const bool ris = (c.RS & 1) != 0, parallel = (c.RS & 2) != 0;
  SettingsStore& s = main_.settings();
  s.saveInt(kSection, "RIS", ris ? 1 : 0);
  if (ris == model_.EnableRIS) {
    model_.fastEntriesEnabled = ris;
    if (ruleDueOnRs_) {
      ruleDueOnRs_ = false;
      ScrollTimeDiv_Change(model_.ScrollTimeDiv);
    }
  } else {
    EnableRIS_Click(ris);
  }
  s.saveInt(kSection, "Paral", parallel ? 1 : 0);
  if (model_.RealtmDraw != parallel) {
    model_.RealtmDraw = parallel;
    s.saveInt(kSection, "ROLL", parallel ? 1 : 0);
  }
  if (main_.link()) main_.link()->SetParallelTransfer(model_.RealtmDraw && model_.ParallPlotEn);
  changed();
}

void TimebaseControl::qsUpdate() {
  DeviceCache& c = main_.cache();
  field("DeviceMemPage.OknoSamples", c.QS);
  field("Spectrum.OknoSamples", c.QS);
  // The presamples may use the mode's whole limit again, within the new record.
  if (c.TS != 0) {
    int32_t known = limitEntry(c.TChTable, c.limitRow(), c.limitColumn());
    if (known > 0) c.TCh = known;
  }
  if (c.TCh > c.QS) c.TCh = c.QS;
  presampleLimitStep();
  updateCentre();
  onScale();
  changed();
}

void TimebaseControl::presampleUpdate() {
  const DeviceCache& c = main_.cache();
  if (model_.HScrollCenterMax >= 1) {
    model_.HScrollCenterValue = std::clamp<int32_t>(c.TC, 0, model_.HScrollCenterMax);
    showPresamples();
    storePresamples();
  }
  field("DeviceMemPage.OknoPreSamples", c.TC);
  updateCentre();
  onScale();
  changed();
}

void TimebaseControl::limitsOfMode() {
  DeviceCache& c = main_.cache();
  if (c.TS == 0) return;
  const int row = c.limitRow(), column = c.limitColumn();
  int32_t qsh = limitEntry(c.QShTable, row, column);
  if (qsh > 0) {
    c.QSh = qsh;
    sampleLimitStep();
  } else if (main_.Online()) {
    main_.link()->GetProperty("QSh");
  }
  int32_t tch = limitEntry(c.TChTable, row, column);
  if (tch > 0) {
    c.TCh = tch;
    presampleLimitStep();
  } else if (main_.Online()) {
    main_.link()->GetProperty("TCh");
  }
}

void TimebaseControl::sampleLimitStep() {
  const DeviceCache& c = main_.cache();
  field("DeviceMemPage.OknoMaxSamples", c.QSh);
  changed();
  // Fit the record to the new memory limit.
  if (c.QS > c.QSh && main_.Online())
    PutGetRegisterMCTSRS(presentTimePerDiv_ > 0 ? presentTimePerDiv_ : secondsPerDiv());
}

void TimebaseControl::presampleLimitStep() {
  DeviceCache& c = main_.cache();
  if (c.TCh > c.QS) c.TCh = c.QS;
  if (c.TC > c.TCh) c.TC = c.TCh;
  field("DeviceMemPage.OknoMaxPreSamples", c.TCh);
  field("DeviceMemPage.OknoPreSamples", c.TC);
  const int former = rememberedTCh_;
  rememberedTCh_ = c.TCh;
  if (c.TCh >= 1) {
    model_.HScrollCenterMax = c.TCh;
    model_.HScrollCenterValue = std::clamp<int32_t>(c.TC, 0, c.TCh);
    showPresamples();
    int64_t target = model_.HScrollCenterValue;
    if (former >= 1 && model_.KeepPropPresamp) {
      target = static_cast<int64_t>(model_.HScrollCenterValue) * c.TCh / former;
    } else if (former < 1) {
      // The first limit since start: the stored share of presamples comes back.
      int perMille = main_.settings().getInt(kSection, "PreSamples");
      target = roundToInt32OrFault(std::clamp(perMille, 0, 1000) * static_cast<double>(c.TCh) / 1000,
                                   "presamples");
    }
    target = std::clamp<int64_t>(target, 0, c.TCh);
    if (target != model_.HScrollCenterValue) HScrollCenter_Change(static_cast<int>(target));
  }
  changed();
}

// --- presamples and the centre --------------------------------------------------------------------

void TimebaseControl::showPresamples() {
  const int max = model_.HScrollCenterMax;
  model_.HScrollCenterEnabled = max >= 1 && model_.DelaySeconds == 0 && !delayOn();
  if (max < 1) return;
  long percent = std::lround(100.0 * model_.HScrollCenterValue / max);
  model_.HScrollCenterToolTip = std::to_string(percent) + "% presamples";
}

void TimebaseControl::storePresamples() {
  if (model_.HScrollCenterMax < 1) return;
  const double perMille = model_.HScrollCenterValue * 1000.0 / model_.HScrollCenterMax;
  main_.settings().saveInt(kSection, "PreSamples", roundToInt32OrFault(perMille, "PreSamples"));
}

void TimebaseControl::HScrollCenter_Change(int value) {
  if (model_.HScrollCenterMax < 1) return;
  model_.HScrollCenterValue = std::clamp(value, 0, model_.HScrollCenterMax);
  showPresamples();
  if (main_.Online()) {
    main_.link()->PutRegister2("TC", model_.HScrollCenterValue);
  } else {
    main_.cache().TC = model_.HScrollCenterValue;
    storePresamples();
    updateCentre();
    onScale();
  }
  changed();
}

void TimebaseControl::stepHScrollCenter(int step) {
  if (model_.HScrollCenterEnabled) HScrollCenter_Change(model_.HScrollCenterValue + step);
}

void TimebaseControl::setDelaySeconds(double seconds) {
  model_.DelaySeconds = static_cast<float>(seconds);
  showPresamples();
  updateCentre();
  onScale();
  changed();
}

void TimebaseControl::updateCentre() {
  const DeviceCache& c = main_.cache();
  const float q = static_cast<float>(c.QS >= 1 ? c.QS : model_.HScrollCenterMax);
  if (model_.DelaySeconds == 0)
    model_.CentreTime = (q / 2 - static_cast<float>(c.TC)) * main_.scale().SamplePeriod;
  else
    model_.CentreTime = q / 2 * main_.scale().SamplePeriod + model_.DelaySeconds;
  main_.mutableState().fields["DelayPage.TimeAsqLbl"] = engineeringText(model_.CentreTime, "s");
}

}  // namespace zorvik
