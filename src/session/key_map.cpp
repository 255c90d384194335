#include "session/key_map.h"

#include <cctype>
#include <cstring>

namespace zorvik {

namespace {
constexpr const char* kMeterKeys = "DHLVAUNFPWCTBR5/\\'.";
// The two recorder keys of the picture level.
constexpr char kRecorderKeys[] = {'A', 'R'};
}  // namespace

bool KeyMap::isKeyName(const std::string& key) {
  if (key.size() == 1) return key[0] > ' ' && key[0] < 127;
  for (const char* n :
       {"Esc", "Left", "Right", "Up", "Down", "Home", "End", "PageUp", "PageDown", "Backspace"})
    if (key == n) return true;
  return false;
}

bool KeyMap::press(const std::string& key, int64_t nowMs, bool shift, bool alt) {
  if (key.empty()) return false;
  const bool single = key.size() == 1;
  const char c = single ? static_cast<char>(std::toupper(static_cast<unsigned char>(key[0]))) : 0;

  if (prefix_ != 0) {
    char p = prefix_;
    bool inTime = nowMs - prefixAt_ <= kPrefixWindowMs;
    prefix_ = 0;
    if (inTime && single) return secondLevel(p, c);
    // Past the window the prefix is forgotten and the key counts on its own.
  }

  if (key == "Esc") return actions_.closeProgram(), true;
  if (key == "Left") return actions_.stepHScrollCenter(-1), true;
  if (key == "Right") return actions_.stepHScrollCenter(1), true;
  if (key == "Down") return actions_.stepVScroll(-1), true;
  if (key == "Up") return actions_.stepVScroll(1), true;
  if (key == "Home") return actions_.stepTimeDiv(1), true;
  if (key == "End") return actions_.stepTimeDiv(-1), true;
  if (key == "PageDown") return actions_.stepVoltDiv(-1), true;
  if (key == "PageUp") return actions_.stepVoltDiv(1), true;
  if (key == "Backspace") return actions_.keyStart(), true;
  if (!single) return false;

  switch (c) {
    case 'M':
    case 'F':
    case 'B':
      prefix_ = c;
      prefixAt_ = nowMs;
      return true;
    case 'X':
      actions_.toggleSyncroLine();
      return true;
    case '0':
      actions_.toggleNullLine();
      return true;
    case 'I':
      actions_.toggleInterpolation();
      return true;
    case 'V':
      actions_.linePlot();
      return true;
    case 'P':
      actions_.psetPlot();
      return true;
    case 'W':
      actions_.toggleWide();
      return true;
    case 'Z':
      if (shift && alt)
        actions_.showDebugCommand();
      else
        actions_.toggleZoom();
      return true;
    case 'Q':
      actions_.layoutDisplay();
      return true;
    case 'A':
      actions_.toggleAverage();
      return true;
    case 'H':
      actions_.toggleHiRes();
      return true;
    case 'D':
      actions_.toggleOpenClose();
      return true;
    case 'E':
      actions_.toggleMemoKey();
      return true;
    case 'G':
      actions_.toggleGround();
      return true;
    case 'R':
      actions_.toggleAutoWait();
      return true;
    case 'C':
      actions_.calibrate();
      return true;
    case ',':
      actions_.stepTrigLevel(-1);
      return true;
    case '.':
      actions_.stepTrigLevel(1);
      return true;
    case '\\':
      actions_.toggleWorkMode();
      return true;
    case '/':
      actions_.repaintDisplay();
      return true;
    case 'T':
      if (!devMode) return false;
      actions_.plotSpeedTest();
      return true;
    default:
      return false;
  }
}

bool KeyMap::secondLevel(char prefix, char key) {
  switch (prefix) {
    case 'M':
      if (key == 'S') return actions_.openMeterFFT(), true;
      if (key == 'Q') return actions_.openMeterStat(), true;
      if (key != 0 && std::strchr(kMeterKeys, key)) return actions_.openMeter(key), true;
      return false;
    case 'B':
      if (key == 'B' || key == 'G' || key == 'J' || key == 'C') return actions_.savePicture(key), true;
      if (key == 'W') return actions_.openPictureWindow(), true;
      if (key == kRecorderKeys[0] || key == kRecorderKeys[1]) return actions_.startRecorder(key), true;
      return false;
    case 'F':
      if (key == 'L') return actions_.toggleFilterL(), true;
      if (key == 'H') return actions_.toggleFilterH(), true;
      return false;
  }
  return false;
}

}  // namespace zorvik
