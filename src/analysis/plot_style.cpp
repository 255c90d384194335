#include "analysis/plot_style.h"

#include <algorithm>

#include "config/settings.h"

namespace zorvik {

namespace {
// In the order of StyleKey.
constexpr StyleEntry kEntries[kStyleKeys] = {
    {"Line1", 0, 1, true},
    {"Pixel1", 0, 1, true},
    {"Fill1", 0, 1, true},
    {"Line1Color", 0, 7, false},
    {"Pixel1Color", 0, 7, false},
    {"Fill1Color", 0, 7, false},
    {"Line1Width", 1, 16, false},
    {"Speed1", 0, 3, false},
    {"Interpolation1", 0, 3, false},
    {"InterpolationPoints1", 1, 8, false},
    {"InterpPixel1", 0, 1, true},
    {"Memory", 0, 1, false},
    {"MemoMode", 0, 2, false},
    {"Memory Depth", 0, 3, false},
    {"AcqPerPlot", 0, 3, false},
    {"Emphasize invert", 0, 1, true},
    {"Leave Single", 0, 1, true},
    {"ByBitmap1", 0, 1, true},
    {"Emphasize Color", 0, 5, false},
    {"Emphasize Intens", 0, 5, false},
};
constexpr int kDepths[4] = {1, 128, 32, 8};
constexpr int kAcqPerPlot[4] = {1, 2, 5, 10};
}  // namespace

const StyleEntry& styleEntry(StyleKey key) {
  return kEntries[static_cast<size_t>(key)];
}

void PlotStyle::set(StyleKey key, int value) {
  const StyleEntry& e = styleEntry(key);
  values_[static_cast<size_t>(key)] = e.isBool ? (value != 0 ? 1 : 0) : std::clamp(value, e.min, e.max);
}

int PlotStyle::persistDepth() const {
  return kDepths[static_cast<size_t>((*this)[StyleKey::MemoryDepth])];
}

int PlotStyle::acqPerPlot() const {
  return kAcqPerPlot[static_cast<size_t>((*this)[StyleKey::AcqPerPlot])];
}

PlotStyle PlotStyle::load(SettingsStore& store, const char* section) {
  PlotStyle style;
  for (int i = 0; i < kStyleKeys; ++i) {
    const auto key = static_cast<StyleKey>(i);
    const StyleEntry& e = styleEntry(key);
    style.set(key, e.isBool ? (store.getBool(section, e.name) ? 1 : 0) : store.getInt(section, e.name));
  }
  return style;
}

uint32_t styleColour(int index) {
  return ((index & 1) ? 0xFF0000u : 0) | ((index & 2) ? 0x00FF00u : 0) | ((index & 4) ? 0x0000FFu : 0);
}

}  // namespace zorvik
