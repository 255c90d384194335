#include "app/window_keys.h"

#include <QAction>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cstring>
#include <vector>

#include "app/mainwin.h"
#include "display/scope_display.h"
#include "measure/meter_readings.h"

namespace zorvik {

namespace {
constexpr int kZoomScreenWidth = 1280;  // the larger display needs at least this screen
}

void WindowKeys::closeProgram() {
  w_.close();
}

void WindowKeys::toggleZoom() {
  QScreen* screen = w_.screen() ? w_.screen() : QGuiApplication::primaryScreen();
  if (!screen || screen->size().width() < kZoomScreenWidth) return;
  auto& s = w_.display().settings();
  // Between the usual size and the next larger one.
  s.zoom = s.zoom == 2 ? 1 : 2;
  w_.displaySettingChanged("Zoom", true);
}

void WindowKeys::trigger(const QString& item, bool open) {
  QAction* a = w_.findChild<QAction*>(item);
  if (!a || !a->isEnabled() || (open && a->isCheckable() && a->isChecked())) return;
  a->trigger();
}

void WindowKeys::openMeter(char key) {
  // The keys name the meters in the order of their menu: D, H, L, V, A, U, N, F, P, W, C, T, B, R, 5, /,
  // \, ', . for DC voltage to negative overshoot.
  static constexpr char kKeys[] = "DHLVAUNFPWCTBR5/\\'.";
  std::vector<int> indexes;
  for (const MeterInfo& m : meterTable()) indexes.push_back(static_cast<int>(m.meter));
  std::sort(indexes.begin(), indexes.end());
  const char* at = std::strchr(kKeys, key);
  if (!at || key == 0) return;
  const size_t position = static_cast<size_t>(at - kKeys);
  if (position < indexes.size()) trigger(QString("Meters_%1").arg(indexes[position]), true);
}

void WindowKeys::openMeterFFT() {
  trigger("MeterFFT", true);
}
void WindowKeys::openMeterStat() {
  trigger("MeterStat", true);
}

void WindowKeys::savePicture(char kind) {
  const int target = kind == 'B' ? 0 : kind == 'G' ? 1 : kind == 'J' ? 2 : kind == 'C' ? 3 : -1;
  if (target >= 0) trigger(QString("SaveToBMPGIFJPG_%1").arg(target));
}

void WindowKeys::openPictureWindow() {
  trigger("OpenBitmapInNewWin");
}

// "A" asks for the number of frames, "R" records the first fixed count (5 frames).
void WindowKeys::startRecorder(char key) {
  trigger(key == 'A' ? "StartAnimatedRec_0" : "StartAnimatedRec_1");
}

}  // namespace zorvik
