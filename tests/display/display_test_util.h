#pragma once
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "config/settings.h"
#include "display/display_host.h"
#include "display/scope_display.h"

namespace zorvik::test {

// The main window's state as the display sees it, with plain fields.
class FakeDisplayHost : public DisplayHost {
 public:
  int32_t PacketCount() const override { return packetCount; }
  void setPacketCount(int32_t c) override { packetCount = c; }
  bool ReplotNeeded() const override { return replot; }
  void setReplotNeeded(bool on) override { replot = on; }
  int SamplesPerDiv() const override { return samplesPerDiv; }
  float SamplePeriod() const override { return samplePeriod; }
  int32_t TS() const override { return ts; }
  void restartAveraging() override { ++restarts; }

  int32_t packetCount = 0;
  bool replot = false;
  int samplesPerDiv = 16;
  float samplePeriod = 1e-6f;
  int32_t ts = 0;
  int restarts = 0;
};

// A display on a scratch store with the settings a test wants: no interpolation surprises, fast-machine
// defaults, the grid hidden so that only the trace leaves pixels.
struct DisplayRig {
  MemorySettings store;
  FakeDisplayHost host;
  std::unique_ptr<ScopeDisplay> display;

  explicit DisplayRig(std::function<void(DisplaySettings&)> tweak = {}) {
    display = std::make_unique<ScopeDisplay>(host, store, 1000);
    DisplaySettings& s = display->settings();
    s.gridVisible = false;
    s.varBright = false;
    if (tweak) tweak(s);
    display->SetupDisplay();
  }
  ScopeDisplay& d() { return *display; }
  // One packet as the "D" event brings it: counted first.
  void samples(const std::string& segment, bool allowDecimation = true, bool twoBytes = false) {
    ++host.packetCount;
    display->PlotSamples(segment, 1, allowDecimation, twoBytes);
  }
  uint32_t pixel(int x, int y) const { return display->canvas().pixel(x, y) & 0xFFFFFF; }
  // Pixel of a logical column and row.
  uint32_t at(int x, int y) const {
    const DisplayGeometry& g = display->canvas().geometry();
    return pixel(g.pixelX(x), g.pixelY(y));
  }
  // Number of pixels of the picture that differ from the background.
  int lit() const {
    int n = 0;
    const DisplayCanvas& c = display->canvas();
    for (int y = 0; y < c.height(); ++y)
      for (int x = 0; x < c.width(); ++x) n += (c.pixel(x, y) & 0xFFFFFF) != 0;
    return n;
  }
  // The lit pixels' columns as logical columns: first and last (-1 when nothing is lit).
  std::pair<int, int> litColumns() const {
    const DisplayCanvas& c = display->canvas();
    int first = -1, last = -1;
    for (int x = 0; x < c.width(); ++x)
      for (int y = 0; y < c.height(); ++y)
        if ((c.pixel(x, y) & 0xFFFFFF) != 0) {
          if (first < 0) first = x;
          last = x;
          break;
        }
    return {first < 0 ? -1 : first - kPictureMargin, last < 0 ? -1 : last - kPictureMargin};
  }
};

// n one-byte samples of a function of the sample number.
inline std::string byteSamples(int n, const std::function<int(int)>& f) {
  std::string s(static_cast<size_t>(n), '\0');
  for (int i = 0; i < n; ++i) s[static_cast<size_t>(i)] = static_cast<char>(f(i) & 0xFF);
  return s;
}

inline std::string sineSamples(int n, double period, double amplitude = 80, double mid = 128) {
  return byteSamples(n, [=](int i) {
    return static_cast<int>(std::lround(mid + amplitude * std::sin(2 * M_PI * i / period)));
  });
}

}  // namespace zorvik::test
