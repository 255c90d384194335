#include "display/display_settings.h"

#include <algorithm>
#include <string>

#include "config/catalogue.h"
#include "config/settings.h"
#include "config/text_number.h"

namespace zorvik {

namespace {

struct Entry {
  const char* section;
  const char* name;
  bool DisplaySettings::*flag;
  int DisplaySettings::*number;
  int lo, hi;
};

using S = DisplaySettings;
constexpr const char* kStartup = "Startup Position";
constexpr const char* kView = "View";
constexpr const char* kPlot = "Plot1";
constexpr int kBig = 0x7FFFFFFF;

const Entry kEntries[] = {
    {kStartup, "Zoom", nullptr, &S::zoom, 0, 3},
    {kStartup, "Wide", &S::wide, nullptr, 0, 0},
    {kView, "Color", nullptr, &S::backColor, -kBig - 1, kBig},
    {kView, "AutoRedraw", &S::autoRedraw, nullptr, 0, 0},
    {kView, "ShowTime", nullptr, &S::showTime, 0, 9},
    {kView, "GridFore", &S::gridFore, nullptr, 0, 0},
    {kView, "GridVisible", &S::gridVisible, nullptr, 0, 0},
    {kView, "NoTrigMsg", &S::noTrigMsg, nullptr, 0, 0},
    {kView, "NulLevelLine", &S::nullLine, nullptr, 0, 0},
    {kView, "TrigLevelLine", &S::syncroLine, nullptr, 0, 0},
    {kView, "Vert.labels", &S::vertLabels, nullptr, 0, 0},
    {kView, "Vert.lab.font size ", nullptr, &S::vertLabelSize, 1, 20},
    {kView, "Hor.labels", &S::horLabels, nullptr, 0, 0},
    {kView, "Hor.lab.font size ", nullptr, &S::horLabelSize, 1, 20},
    {kPlot, "Line", &S::linePlot, nullptr, 0, 0},
    {kPlot, "LineColor", nullptr, &S::lineColor, 0, 7},
    {kPlot, "VarBrght", &S::varBright, nullptr, 0, 0},
    {kPlot, "Pixel", &S::psetPlot, nullptr, 0, 0},
    {kPlot, "PixelColor", nullptr, &S::pixelColor, 0, 7},
    {kPlot, "PeakColor", nullptr, &S::peakColor, 0, 7},
    {kPlot, "Interpolation", nullptr, &S::interpolation, 0, 4},
    {kPlot, "InterpolationPoints", nullptr, &S::interpolationPoints, 1, 8},
    {kPlot, "PeakDecimation", &S::peakDecimation, nullptr, 0, 0},
    {kPlot, "PeakInterpolation", nullptr, &S::peakInterpolation, 0, 1},
    {kPlot, "Memory", nullptr, &S::memory, 0, 1},
    {kPlot, "MemoMode", nullptr, &S::memoMode, 0, 2},
    {kPlot, "Memory Depth", nullptr, &S::memoryDepth, 0, 3},
    {kPlot, "AcqPerPlot", nullptr, &S::acqPerPlot, 0, 3},
    {kPlot, "Emphasize invert", &S::emphasizeInvert, nullptr, 0, 0},
    {kPlot, "Leave Single", &S::leaveSingle, nullptr, 0, 0},
    {kPlot, "By bitmap", &S::byBitmap, nullptr, 0, 0},
    {kPlot, "Emphasize Color", nullptr, &S::emphasizeColor, 0, 5},
    {kPlot, "Emphasize Intens", nullptr, &S::emphasizeIntens, 0, 5},
};

struct ZoomEntry {
  const char* suffix;
  std::array<int, kZoomCount> DisplaySettings::*values;
  int lo, hi;
};
const ZoomEntry kZoomEntries[] = {
    {"LineWidth", &S::lineWidth, 1, 16},
    {"PeakWidth", &S::peakWidth, 1, 16},
    {"Speed", &S::speed, 0, 3},
};

int clampTo(double v, int lo, int hi) {
  if (!(v >= lo)) return lo;
  if (v > hi) return hi;
  return static_cast<int>(v);
}

int readInt(SettingsStore& store, const char* section, const std::string& name, int cpuMHz, int lo, int hi) {
  double def = textToNumber(catalogueDefault(section, name, cpuMHz), 0);
  double v =
      textToNumber(store.GetSettingValue(section, name, std::to_string(static_cast<long long>(def))), def);
  // Zoom alone has a rule for the values past its range: they mean the normal size.
  if (std::string_view(name) == "Zoom")
    return normalizeZoomIndex(v >= -1e9 && v <= 1e9 ? static_cast<int>(v) : 1);
  return clampTo(v, lo, hi);
}

}  // namespace

uint32_t itemColor(int item, int level) {
  level = std::clamp(level, 0, 255);
  const uint32_t v = static_cast<uint32_t>(level);
  return 0xFF000000 | ((item & 1) ? v << 16 : 0) | ((item & 2) ? v << 8 : 0) | ((item & 4) ? v : 0);
}

void DisplaySettings::load(SettingsStore& store, int cpuMHz) {
  for (const Entry& e : kEntries) {
    if (e.flag) {
      bool def = textToBool(catalogueDefault(e.section, e.name, cpuMHz), false);
      this->*e.flag = store.getBool(e.section, e.name, def);
    } else {
      this->*e.number = readInt(store, e.section, e.name, cpuMHz, e.lo, e.hi);
    }
  }
  for (const ZoomEntry& z : kZoomEntries)
    for (int i = 0; i < kZoomCount; ++i)
      (this->*z.values)[i] = readInt(store, kPlot, zoomValueName("", i, z.suffix), cpuMHz, z.lo, z.hi);
}

void DisplaySettings::save(SettingsStore& store, std::string_view name) const {
  for (const Entry& e : kEntries) {
    if (name != e.name) continue;
    if (e.flag)
      store.saveBool(e.section, e.name, this->*e.flag);
    else
      store.saveInt(e.section, e.name, this->*e.number);
    return;
  }
  for (const ZoomEntry& z : kZoomEntries)
    if (name == z.suffix) {
      const int i = normalizeZoomIndex(zoom);
      store.saveInt(kPlot, zoomValueName("", i, z.suffix), (this->*z.values)[i]);
    }
}

bool DisplaySettings::assign(std::string_view section, std::string_view name, std::string_view value) {
  for (const Entry& e : kEntries) {
    if (section != e.section || name != e.name) continue;
    if (e.flag)
      this->*e.flag = textToBool(value, this->*e.flag);
    else if (name == "Zoom")
      this->*e.number = normalizeZoomIndex(clampTo(textToNumber(value, 1), -1, kZoomCount));
    else
      this->*e.number = clampTo(textToNumber(value, this->*e.number), e.lo, e.hi);
    return true;
  }
  if (section != kPlot) return false;
  for (const ZoomEntry& z : kZoomEntries)
    for (int i = 0; i < kZoomCount; ++i)
      if (name == zoomValueName("", i, z.suffix)) {
        (this->*z.values)[i] = clampTo(textToNumber(value, (this->*z.values)[i]), z.lo, z.hi);
        return true;
      }
  return false;
}

int DisplaySettings::xStep() const {
  const int item = speed[normalizeZoomIndex(zoom)];
  return item == 1 ? 4 : item == 2 ? 2 : 1;
}

int DisplaySettings::drawLineWidth() const {
  return std::max(1, lineWidth[normalizeZoomIndex(zoom)]);
}

int DisplaySettings::drawPeakWidth() const {
  return std::max(1, peakWidth[normalizeZoomIndex(zoom)]);
}

int DisplaySettings::persistDepth() const {
  return kPersistDepths[std::clamp(memoryDepth, 0, 3)];
}

int DisplaySettings::acqPerPlotCount() const {
  return kAcqPerPlot[std::clamp(acqPerPlot, 0, 3)];
}

}  // namespace zorvik
