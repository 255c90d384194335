#pragma once
#include <cstdint>
#include <map>
#include <string>

#include "signal/packet_host.h"

namespace zorvik {

enum class SessionState { NoSession, Opening, Boot, SettingUp, Ready };
const char* sessionStateName(SessionState state);

// Everything of the main window that the core moves: captions, enabled keys, status texts and the
// read-outs of the device pages (by control name, e.g. "Property_VNM", "DeviceClockPage.ClockMCUdef").
struct MainState {
  std::string caption;
  std::string connectCaption = "Connect";  // KeyConnect and LinkControl
  bool connectVisible = true;
  bool startEnabled = false;  // KeyStart and WorkMode
  bool devicePageVisible = false;
  std::string modeText = "Ready";  // ModeTransparant
  uint32_t modeColor = kColorWhite;
  bool noTriggerVisible = false;  // NoTriggerTransparant, "NO TRIGGER!"
  bool risVisible = false;        // RISmodeTransparant
  std::string risCaption = "RIS";
  int fps = 0;         // FPSmeter.FPSlabel
  int curSamples = 0;  // DeviceMemPage.OknoCurSamples
  std::map<std::string, std::string> fields;
};

// What the window does for the core beyond showing MainState.
class MainView {
 public:
  virtual ~MainView() = default;
  virtual void stateChanged() {}
  virtual bool isWindowVisible() const { return true; }
  virtual void clearDisplay() {}
  virtual void drawRisLine(int /*x1*/, int /*x2*/, int /*row*/) {}
  virtual int acquisitionWidth() const { return 320; }
  virtual void packetShown(const std::string& /*packet*/) {}
};

}  // namespace zorvik
