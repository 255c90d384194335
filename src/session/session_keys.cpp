#include "session/session_keys.h"

#include "display/scope_display.h"
#include "session/basic_control.h"
#include "session/scope_session.h"

namespace zorvik {

SessionKeys::SessionKeys(ScopeSession& session)
    : RunKeyActions(session.main(), session.run(), session.trigger()), s_(session) {}

void SessionKeys::toggleSyncroLine() {
  auto& d = s_.display().settings();
  d.syncroLine = !d.syncroLine;
  s_.displaySettingChanged("TrigLevelLine", false);
}

void SessionKeys::toggleNullLine() {
  auto& d = s_.display().settings();
  d.nullLine = !d.nullLine;
  s_.displaySettingChanged("NulLevelLine", false);
}

void SessionKeys::toggleInterpolation() {
  auto& d = s_.display().settings();
  if (d.interpolation != 0) {
    lastInterpolation_ = d.interpolation;
    d.interpolation = 0;
  } else {
    d.interpolation = lastInterpolation_;
  }
  s_.displaySettingChanged("Interpolation", false);
}

void SessionKeys::linePlot() {
  auto& d = s_.display().settings();
  d.linePlot = !d.linePlot;
  s_.displaySettingChanged("Line", false);
}

void SessionKeys::psetPlot() {
  auto& d = s_.display().settings();
  d.psetPlot = !d.psetPlot;
  s_.displaySettingChanged("Pixel", false);
}

void SessionKeys::toggleWide() {
  auto& d = s_.display().settings();
  d.wide = !d.wide;
  s_.displaySettingChanged("Wide", true);
}

void SessionKeys::layoutDisplay() {
  s_.display().SetupDisplay();
  s_.onLayoutView();
  main_.replayLastPacket();
}

void SessionKeys::toggleMemoKey() {
  auto& d = s_.display().settings();
  d.memory = d.memory == 0 ? 1 : 0;
  s_.displaySettingChanged("Memory", false);
}

void SessionKeys::stepHScrollCenter(int step) {
  if (s_.timebase().model().HScrollCenterEnabled) s_.timebase().stepHScrollCenter(step);
}

void SessionKeys::stepVScroll(int step) {
  if (s_.channel().model().HardwShift1) s_.channel().stepVScroll(step);
}

void SessionKeys::stepTimeDiv(int step) {
  s_.timebase().stepTimeDiv(step);
}
void SessionKeys::stepVoltDiv(int step) {
  s_.channel().stepVoltDiv(step);
}

void SessionKeys::toggleAverage() {
  auto& ch = s_.channel();
  ch.Average1_Click(!ch.model().Average1);
}

void SessionKeys::toggleHiRes() {
  auto& ch = s_.channel();
  ch.HiRes1_Click(!ch.model().HiRes1);
}

void SessionKeys::toggleOpenClose() {
  auto& ch = s_.channel();
  ch.OpenClose1_Click(!ch.model().OpenClose1);
}

void SessionKeys::toggleGround() {
  auto& ch = s_.channel();
  ch.Ground1_Click(!ch.model().Ground1);
}

void SessionKeys::toggleFilterL() {
  auto& ch = s_.channel();
  ch.FilterL1_Click(!ch.model().FilterL1);
}

void SessionKeys::toggleFilterH() {
  auto& ch = s_.channel();
  ch.FilterH1_Click(!ch.model().FilterH1);
}

}  // namespace zorvik
