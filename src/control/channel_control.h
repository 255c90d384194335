#pragma once
#include <cstdint>
#include <functional>
#include <string>

#include "control/listeners.h"
#include "control/scale_lists.h"

namespace zorvik {

class DeviceContext;

// The range of the offset scroll; the arithmetic depends only on its ends.
constexpr int kVScroll1Min = -1000;
constexpr int kVScroll1Max = 1000;
// 200 mV a division until a setting says otherwise.
constexpr int kDefaultVoltDiv = 7;

// What the channel's controls show, and the vertical scale (volts, 32-bit as the instrument keeps it).
struct ChannelModel {
  int scrollCH1 = kDefaultVoltDiv;  // position in the V/div list
  bool voltDivMarked = true;        // the entry's selection mark in VoltDiv1
  float FullScale = 1.6f;           // eight divisions
  float VoltPerDiv = 0.2f;
  float OffsetVolts = 0;
  float OffsetMin = -1.6f, OffsetMax = 1.6f;
  float ZoomVoltPerDiv = 0.2f, ZoomCentre = 0;

  int VScroll1 = 0;
  int VScroll1LargeStep = 1;
  bool HardwShift1 = true;  // also enables VScroll1
  std::string hardwShiftToolTip;

  bool OpenClose1 = true;  // DC
  bool Ground1 = false;
  bool FilterH1 = false;
  bool FilterL1 = false;

  bool Average1 = false, Peak1 = true, HiRes1 = false;
  bool NIpeak1 = false;  // interlaced peak pairs (on the channel page)
};

// The texts the mode is stored as under "AcqMode", by M1 code 0 to 4.
extern const char* const kAcqModeTexts[5];

// The input channel: sensitivity (V1), offset (P1), coupling and filters (O1), acquisition mode (M1),
// their echoes, the offset range and the vertical zoom scale. Online the writers only write and the
// echo moves the model; offline they store and move it at once.
class ChannelControl {
 public:
  explicit ChannelControl(DeviceContext& main);

  const ChannelModel& model() const { return model_; }
  Listeners onChange;  // the controls
  Listeners onScale;   // the vertical scale moved: labels, replot
  // The echo of M1 asks the time base for the memory limits of the new mode.
  std::function<void()> onModeEcho = [] {};

  void loadSettings();

  // The controls.
  void scrollCH1_Change(int position);
  void stepVoltDiv(int step);
  void VScroll1_Scroll(int value);  // dragging: only the display follows
  void VScroll1_Change(int value);  // the value is set
  void stepVScroll(int step);
  void KeyNulOffset1_Click();
  void HardwShift1_Click(bool on);
  void OpenClose1_Click(bool on);
  void Ground1_Click(bool on);
  void FilterH1_Click(bool on);
  void FilterL1_Click(bool on);
  void Average1_Click(bool on);
  void Peak1_Click(bool on);
  void HiRes1_Click(bool on);
  void NIpeak1_Click(bool on);
  // The vertical zoom: factor and view position in its scroll's range.
  void setVertZoom(double zoom, double position, double min, double max);

  // Writers.
  void PutGetRegisterV1();
  void PutGetRegisterP1();
  void PutGetRegisterO1();
  void PutGetRegisterM1();

  // Echoes.
  void sensitivityUpdate();  // V1
  void offsetUpdate();       // P1
  void offsetRangeUpdate();  // P1h, P1l
  void couplingUpdate();     // O1
  void modeUpdate();         // M1

  bool inputIsAc() const { return !model_.OpenClose1; }
  // The register values of the present controls.
  int32_t v1Value() const;
  int16_t p1Value() const;
  uint8_t o1Value() const;
  uint8_t m1Value() const;

 private:
  void offlineSensitivity();
  void offsetRange();
  void fitScroll();
  void zoomScale();
  void displayScale();
  void applyMode(int code);
  float offsetFromScroll(int value) const;
  void changed();

  DeviceContext& main_;
  ChannelModel model_;
  double zoom_ = 1, zoomPosition_ = 0, zoomMin_ = 0, zoomMax_ = 1;
  bool couplingGuard_ = false;
  bool echoedFilterH_ = false;
};

}  // namespace zorvik
