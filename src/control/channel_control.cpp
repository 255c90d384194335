#include "control/channel_control.h"

#include <algorithm>
#include <cstdio>

#include "config/text_number.h"
#include "core/fault.h"
#include "core/whole_numbers.h"
#include "link/device_context.h"

namespace zorvik {

const char* const kAcqModeTexts[5] = {"Average", "HiRes", "PeakInt", "PeakNI", "Sample"};

namespace {

constexpr const char* kSection = "Ch1";
constexpr int kModePeakNI = 3;

std::string singleText(float v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.7g", static_cast<double>(v));
  return buf;
}

// The stored mode: its text, or a code 0 to 4 from a store that kept the number; else peak pairs.
int storedMode(const std::string& text) {
  for (int code = 0; code < 5; ++code)
    if (text == kAcqModeTexts[code]) return code;
  std::optional<double> n = parseLeadingNumber(text);
  if (n && *n >= 0 && *n <= 4 && *n == static_cast<int>(*n)) return static_cast<int>(*n);
  return kModePeakNI;
}

}  // namespace

ChannelControl::ChannelControl(DeviceContext& main) : main_(main) {
  loadSettings();
}

void ChannelControl::changed() {
  main_.changed();
  onChange();
}

void ChannelControl::loadSettings() {
  SettingsStore& s = main_.settings();
  model_.HardwShift1 = s.getBool(kSection, "ShiftEnable");
  model_.OpenClose1 = s.getInt(kSection, "CloseInput") != 0;
  model_.Ground1 = false;  // the ground is stored for the record only
  model_.FilterH1 = s.getInt(kSection, "FilterInputH") != 0;
  model_.FilterL1 = s.getInt(kSection, "FilterInputL") != 0;
  echoedFilterH_ = model_.FilterH1;
  applyMode(storedMode(s.getText(kSection, "AcqMode")));

  DeviceCache& c = main_.cache();
  c.O1 = o1Value();
  c.M1 = m1Value();
  model_.scrollCH1 =
      std::clamp(s.getInt(kSection, "VoltPerDiv", kDefaultVoltDiv), kVoltDivFirst, kVoltDivLast);
  model_.FullScale = voltDivValue(model_.scrollCH1) * 8;
  c.V1 = v1Value();
  offlineSensitivity();
  model_.VScroll1 = std::clamp(s.getInt(kSection, "Offset"), kVScroll1Min, kVScroll1Max);
  model_.OffsetVolts = offsetFromScroll(model_.VScroll1);
  c.P1 = p1Value();
  zoomScale();
  displayScale();
}

// --- register values -------------------------------------------------------------------------------

int32_t ChannelControl::v1Value() const {
  return roundToInt32OrFault(model_.FullScale * 1000.0 / 8, "V1");
}

int16_t ChannelControl::p1Value() const {
  if (model_.FullScale == 0) throw Fault("Division by zero: the full scale is 0 V");
  // An offset kept from a coarser V/div may pass the register's range: the device takes its limit.
  double p1 = std::clamp(static_cast<double>(model_.OffsetVolts) * 256 / model_.FullScale, -32768.0, 32767.0);
  return static_cast<int16_t>(roundToInt32OrFault(p1, "P1"));
}

uint8_t ChannelControl::o1Value() const {
  return static_cast<uint8_t>((model_.Ground1 ? 1 : 0) | (model_.OpenClose1 ? 0 : 2) |
                              (model_.FilterH1 ? 4 : 0) | (model_.FilterL1 ? 8 : 0));
}

uint8_t ChannelControl::m1Value() const {
  if (model_.Average1) return 0;
  if (model_.Peak1) return model_.NIpeak1 ? 2 : 3;
  if (model_.HiRes1) return 1;
  return 4;
}

void ChannelControl::applyMode(int code) {
  model_.Average1 = code == 0;
  model_.HiRes1 = code == 1;
  model_.Peak1 = code == 2 || code == 3;
  if (model_.Peak1) model_.NIpeak1 = code == 2;
}

// --- sensitivity ------------------------------------------------------------------------------------

void ChannelControl::scrollCH1_Change(int position) {
  model_.scrollCH1 = std::clamp(position, kVoltDivFirst, kVoltDivLast);
  model_.FullScale = voltDivValue(model_.scrollCH1) * 8;
  if (main_.Online()) model_.voltDivMarked = false;  // the echo marks what the device took
  PutGetRegisterV1();
  changed();
}

void ChannelControl::stepVoltDiv(int step) {
  int target = std::clamp(model_.scrollCH1 + step, kVoltDivFirst, kVoltDivLast);
  if (target != model_.scrollCH1) scrollCH1_Change(target);
}

void ChannelControl::PutGetRegisterV1() {
  if (main_.Online()) {
    main_.link()->PutRegister2("V1", v1Value());
    return;
  }
  main_.cache().V1 = v1Value();
  offlineSensitivity();
}

void ChannelControl::offlineSensitivity() {
  model_.VoltPerDiv = model_.FullScale / 8;
  // The last position can shift by only half as much.
  const float k = model_.scrollCH1 == kVoltDivLast ? 0.5f : 1.0f;
  model_.OffsetMax = k * model_.FullScale;
  model_.OffsetMin = -k * model_.FullScale;
  model_.voltDivMarked = true;
  main_.setVoltDivPosition(model_.scrollCH1);
  zoomScale();
  displayScale();
  fitScroll();
  model_.hardwShiftToolTip =
      "Hardware offset: from " + singleText(model_.OffsetMin) + "V to " + singleText(model_.OffsetMax) + "V";
  main_.settings().saveInt(kSection, "VoltPerDiv", model_.scrollCH1);
}

void ChannelControl::sensitivityUpdate() {
  DeviceCache& c = main_.cache();
  model_.FullScale = static_cast<float>(c.V1 * 0.001 * 8);
  model_.VoltPerDiv = model_.FullScale / 8;
  model_.OffsetVolts = static_cast<float>(c.P1 * static_cast<double>(model_.FullScale) / 256);
  int found = -1;
  for (int i = 0; i < kVoltDivCount; ++i)
    if (voltDivValue(i) == model_.FullScale / 8) found = i;
  const int position = found < 0 ? 0 : found;
  if (found >= 0) {
    main_.settings().saveInt(kSection, "VoltPerDiv", found);
    model_.voltDivMarked = found >= kVoltDivFirst;
    if (model_.voltDivMarked) model_.scrollCH1 = found;
  } else {
    // A value that is no entry (a fine setting) leaves the list without a mark; the number rules the scale.
    model_.voltDivMarked = false;
  }
  main_.setVoltDivPosition(position);
  zoomScale();
  // The offset limits of this position: known from this session, or asked for.
  const size_t p = static_cast<size_t>(position);
  if (c.P1hValid[p]) {
    c.P1h = c.P1hTable[p];
    offsetRange();
  } else if (main_.Online()) {
    main_.link()->GetProperty("P1h");
  }
  if (c.P1lValid[p]) {
    c.P1l = c.P1lTable[p];
    offsetRange();
  } else if (main_.Online()) {
    main_.link()->GetProperty("P1l");
  }
  if (c.P1 >= c.P1l && c.P1 <= c.P1h)
    displayScale();
  else if (main_.Online())
    main_.link()->GetRegister("P1");  // its echo refreshes the scale
  changed();
}

// --- offset -----------------------------------------------------------------------------------------

float ChannelControl::offsetFromScroll(int value) const {
  return model_.OffsetMin + (model_.OffsetMax - model_.OffsetMin) * static_cast<float>(value - kVScroll1Min) /
                                static_cast<float>(kVScroll1Max - kVScroll1Min);
}

void ChannelControl::offsetRange() {
  const DeviceCache& c = main_.cache();
  model_.OffsetMax = model_.FullScale * c.P1h / 256;
  model_.OffsetMin = model_.FullScale * c.P1l / 256;
  fitScroll();
  model_.hardwShiftToolTip =
      "Hardware offset: from " + singleText(model_.OffsetMin) + "V to " + singleText(model_.OffsetMax) + "V";
}

void ChannelControl::offsetRangeUpdate() {
  offsetRange();
  changed();
}

void ChannelControl::fitScroll() {
  const float lo = model_.OffsetMin, hi = model_.OffsetMax, v = model_.OffsetVolts;
  if (!(hi > 0) || !(lo < 0)) return;
  constexpr int range = kVScroll1Max - kVScroll1Min;
  if (v >= hi)
    model_.VScroll1 = kVScroll1Max;
  else if (v <= lo)
    model_.VScroll1 = kVScroll1Min;
  else
    model_.VScroll1 =
        kVScroll1Min + roundToInt32OrFault(static_cast<double>(range) * (v - lo) / (hi - lo), "VScroll1");
  double step = std::nearbyint(static_cast<double>(model_.FullScale) * (range - 2) / (hi - lo));
  model_.VScroll1LargeStep = step < 1 ? 1 : step >= range ? range : static_cast<int>(step);
}

void ChannelControl::VScroll1_Scroll(int value) {
  model_.VScroll1 = std::clamp(value, kVScroll1Min, kVScroll1Max);
  model_.OffsetVolts = offsetFromScroll(model_.VScroll1);
  zoomScale();
  displayScale();
  changed();
}

void ChannelControl::VScroll1_Change(int value) {
  model_.VScroll1 = std::clamp(value, kVScroll1Min, kVScroll1Max);
  model_.OffsetVolts = offsetFromScroll(model_.VScroll1);
  PutGetRegisterP1();
  changed();
}

void ChannelControl::stepVScroll(int step) {
  if (model_.HardwShift1) VScroll1_Change(model_.VScroll1 + step);
}

void ChannelControl::KeyNulOffset1_Click() {
  VScroll1_Change(0);
}

void ChannelControl::HardwShift1_Click(bool on) {
  model_.HardwShift1 = on;
  main_.settings().saveBool(kSection, "ShiftEnable", on);
  changed();
}

void ChannelControl::PutGetRegisterP1() {
  if (main_.Online()) {
    main_.link()->PutRegister2("P1", p1Value());
    return;
  }
  main_.cache().P1 = p1Value();
  main_.settings().saveInt(kSection, "Offset", model_.VScroll1);
  zoomScale();
  displayScale();
}

void ChannelControl::offsetUpdate() {
  model_.OffsetVolts = static_cast<float>(static_cast<double>(model_.FullScale) * main_.cache().P1 / 256);
  zoomScale();
  displayScale();
  fitScroll();
  main_.settings().saveInt(kSection, "Offset", model_.VScroll1);
  changed();
}

// --- scales -----------------------------------------------------------------------------------------

void ChannelControl::setVertZoom(double zoom, double position, double min, double max) {
  if (!(zoom > 0)) throw Fault("Vertical zoom " + std::to_string(zoom) + " is not a factor");
  zoom_ = zoom;
  zoomPosition_ = position;
  zoomMin_ = min;
  zoomMax_ = max;
  zoomScale();
  onScale();
  changed();
}

void ChannelControl::zoomScale() {
  const float fs = model_.FullScale, z = static_cast<float>(zoom_);
  // An empty scroll range has one view position: the bottom.
  const float share =
      zoomMax_ == zoomMin_ ? 0.0f : static_cast<float>((zoomPosition_ - zoomMin_) / (zoomMax_ - zoomMin_));
  model_.ZoomVoltPerDiv = fs / 8 / z;
  model_.ZoomCentre = model_.OffsetVolts - fs / 2 + fs * (z - 1) / z * share + fs / z / 2;
}

void ChannelControl::displayScale() {
  RecordScale scale = main_.scale();
  scale.FullScaleVolts = model_.FullScale;
  scale.ZeroVolts = model_.OffsetVolts;
  main_.setScale(scale);
  main_.setReplotNeeded(true);
  onScale();
}

// --- coupling and mode ------------------------------------------------------------------------------

void ChannelControl::OpenClose1_Click(bool on) {
  if (couplingGuard_) return;
  model_.OpenClose1 = on;
  PutGetRegisterO1();
  changed();
}

void ChannelControl::Ground1_Click(bool on) {
  if (couplingGuard_) return;
  model_.Ground1 = on;
  PutGetRegisterO1();
  changed();
}

void ChannelControl::FilterH1_Click(bool on) {
  if (couplingGuard_) return;
  model_.FilterH1 = on;
  PutGetRegisterO1();
  changed();
}

void ChannelControl::FilterL1_Click(bool on) {
  if (couplingGuard_) return;
  model_.FilterL1 = on;
  PutGetRegisterO1();
  changed();
}

void ChannelControl::PutGetRegisterO1() {
  if (main_.Online()) {
    main_.link()->PutRegister1("O1", o1Value());
    return;
  }
  main_.cache().O1 = o1Value();
  couplingUpdate();
}

void ChannelControl::couplingUpdate() {
  const uint8_t o1 = main_.cache().O1;
  SettingsStore& s = main_.settings();
  couplingGuard_ = true;
  model_.Ground1 = (o1 & 1) != 0;
  model_.OpenClose1 = (o1 & 2) == 0;
  model_.FilterH1 = (o1 & 4) != 0;
  model_.FilterL1 = (o1 & 8) != 0;
  s.saveInt(kSection, "CloseInput", model_.OpenClose1 ? 1 : 0);
  s.saveInt(kSection, "GroundInput", model_.Ground1 ? 1 : 0);
  s.saveInt(kSection, "FilterInputH", model_.FilterH1 ? 1 : 0);
  s.saveInt(kSection, "FilterInputL", model_.FilterL1 ? 1 : 0);
  couplingGuard_ = false;
  // The band limit moves the zero: a running acquisition calibrates again.
  if (model_.FilterH1 != echoedFilterH_ && main_.Online()) {
    bool serial = false;
    main_.link()->GetSerialActive(serial);
    if (serial) main_.link()->SendCommand("C", false, false);
  }
  echoedFilterH_ = model_.FilterH1;
  changed();
}

void ChannelControl::Average1_Click(bool on) {
  model_.Average1 = on;
  if (on) model_.Peak1 = model_.HiRes1 = false;
  PutGetRegisterM1();
  changed();
}

void ChannelControl::Peak1_Click(bool on) {
  model_.Peak1 = on;
  if (on) model_.Average1 = model_.HiRes1 = false;
  PutGetRegisterM1();
  changed();
}

void ChannelControl::HiRes1_Click(bool on) {
  model_.HiRes1 = on;
  if (on) model_.Average1 = model_.Peak1 = false;
  PutGetRegisterM1();
  changed();
}

void ChannelControl::NIpeak1_Click(bool on) {
  model_.NIpeak1 = on;
  PutGetRegisterM1();
  changed();
}

void ChannelControl::PutGetRegisterM1() {
  if (main_.Online()) {
    main_.link()->PutRegister1("M1", m1Value());
    return;
  }
  main_.cache().M1 = m1Value();
  modeUpdate();
}

void ChannelControl::modeUpdate() {
  const int code = main_.cache().M1 & 7;
  // Codes the channel does not know leave the controls and the stored text alone.
  if (code <= 4) {
    applyMode(code);
    main_.settings().SaveSettingValue(kSection, "AcqMode", kAcqModeTexts[code]);
  }
  onModeEcho();
  changed();
}

}  // namespace zorvik
