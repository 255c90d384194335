#include "config/catalogue.h"

#include <array>
#include <cstdlib>
#include <optional>

#include "core/fault.h"

namespace zorvik {

namespace {

using T = SettingType;
using R = DefaultRule;

constexpr std::string_view kTrue = "True";
constexpr std::string_view kFalse = "False";
// System colours as the signed 32-bit numbers they were stored as: 0x80000012 and 0x8000000F.
constexpr std::string_view kButtonText = "-2147483630";
constexpr std::string_view kButtonFace = "-2147483633";

constexpr CatalogueEntry kCatalogue[] = {
    // Startup Position
    {"Startup Position", "ZorvikWin Left", T::Single, R::Reader},
    {"Startup Position", "ZorvikWin Top", T::Single, R::Reader},
    {"Startup Position", "Zoom", T::Int, R::Fixed, "1"},
    {"Startup Position", "Wide", T::Bool, R::Fixed, kFalse},
    {"Startup Position", "DevWin Left", T::Single, R::Reader},
    {"Startup Position", "DevWin Top", T::Single, R::Reader},
    {"Startup Position", "DevSmpWin Left", T::Single, R::Reader},
    {"Startup Position", "DevSmpWin Top", T::Single, R::Reader},
    {"Startup Position", "DevClkWin Left", T::Single, R::Reader},
    {"Startup Position", "DevClkWin Top", T::Single, R::Reader},
    {"Startup Position", "DevCh1Win Left", T::Single, R::Reader},
    {"Startup Position", "DevCh1Win Top", T::Single, R::Reader},
    {"Startup Position", "DevMemWin Left", T::Single, R::Reader},
    {"Startup Position", "DevMemWin Top", T::Single, R::Reader},
    {"Startup Position", "DevTrigWin Left", T::Single, R::Reader},
    {"Startup Position", "DevTrigWin Top", T::Single, R::Reader},
    {"Startup Position", "DevCalibr Left", T::Single, R::Reader},
    {"Startup Position", "DevCalibr Top", T::Single, R::Reader},
    {"Startup Position", "DelayWin Left", T::Single, R::Reader},
    {"Startup Position", "DelayWin Top", T::Single, R::Reader},
    {"Startup Position", "FPSmeter Left", T::Single, R::Reader},
    {"Startup Position", "FPSmeter Top", T::Single, R::Reader},
    // View
    {"View", "Color", T::Long, R::Fixed, "0"},
    {"View", "AutoRedraw", T::Bool, R::Fixed, kTrue},
    {"View", "ShowTime", T::Int, R::CpuAbove, "5", "7", 300},
    {"View", "GridFore", T::Bool, R::CpuAbove, kTrue, kFalse, 600},
    {"View", "GridVisible", T::Bool, R::Fixed, kTrue},
    {"View", "NoTrigMsg", T::Bool, R::Fixed, kTrue},
    {"View", "NulLevelLine", T::Bool, R::Fixed, kTrue},
    {"View", "TrigLevelLine", T::Bool, R::Fixed, kTrue},
    {"View", "Vert.labels", T::Bool, R::Fixed, kTrue},
    {"View", "Vert.lab.font size ", T::Int, R::Fixed, "5"},
    {"View", "Hor.labels", T::Bool, R::Fixed, kTrue},
    {"View", "Hor.lab.font size ", T::Int, R::Fixed, "5"},
    // Pictures of the main window, the spectrum and the histogram
    {"Save|SaveSpectrum|SaveStat", "WithLabels", T::Bool, R::Fixed, kTrue},
    {"Save|SaveSpectrum|SaveStat", "transparentGIF", T::Bool, R::Fixed, kFalse},
    {"Save|SaveSpectrum|SaveStat", "AnimatedGIFring", T::Bool, R::Fixed, kFalse},
    {"Save", "AutoFileName", T::Bool, R::Fixed, kFalse},
    // Ch1
    {"Ch1", "VertZoom", T::Int, R::Fixed, "1"},
    {"Ch1", "VertZoom<Z>Poz", T::Double, R::Reader},
    {"Ch1", "VoltPerDiv", T::Int, R::Reader},
    {"Ch1", "ShiftEnable", T::Bool, R::Fixed, kTrue},
    {"Ch1", "Offset", T::Int, R::Fixed, "0"},
    {"Ch1", "CloseInput", T::Long, R::Fixed, "1"},
    {"Ch1", "GroundInput", T::Long, R::WrittenOnly},
    {"Ch1", "FilterInputH", T::Long, R::Fixed, "0"},
    {"Ch1", "FilterInputL", T::Long, R::Fixed, "0"},
    {"Ch1", "AcqMode", T::Text, R::Fixed, "PeakNI"},  // the mode's name, as the channel stores it
    {"Ch1", "AutoTrigLevel", T::Long, R::Fixed, "1"},
    {"Ch1", "TrigFallHist", T::Int, R::Fixed, "0"},
    {"Ch1", "TrigRiseHist", T::Int, R::Fixed, "0"},
    {"Ch1", "TrigSpeed", T::Int, R::Fixed, "0"},
    {"Ch1", "TrigPoz", T::Int, R::Fixed, "127"},
    {"Ch1", "TrigRiseFall", T::Text, R::Fixed, "/"},  // the slope's caption: "/", "\\", "X" or a blank
    {"Ch1", "TrigCompens<Any>", T::Double, R::Fixed, "0"},
    // Hor
    {"Hor", "HorZoom", T::Int, R::Fixed, "1"},
    {"Hor", "HorZoom<Z>Poz", T::Double, R::Reader},
    // Sampling
    {"Sampling", "TimePerDiv", T::Int, R::Reader},  // the lowest position of the time/div list
    {"Sampling", "RIS", T::Long, R::Fixed, "0"},
    {"Sampling", "Paral", T::Long, R::WrittenOnly},
    {"Sampling", "MemoDepth", T::Int, R::Fixed, "1"},
    {"Sampling", "KeepPropPresmp", T::Long, R::Fixed, "1"},
    {"Sampling", "ROLL", T::Long, R::Fixed, "1"},
    {"Sampling", "RollReDraw", T::Int, R::Fixed, "2"},
    {"Sampling", "RollEn", T::Bool, R::Fixed, kTrue},
    {"Sampling", "PreSamples", T::Int, R::Fixed, "0"},
    {"Sampling", "AveragesPeaks", T::Int, R::Fixed, "0"},
    {"Sampling", "RisAveragesPeaks", T::Int, R::Fixed, "16"},
    // Mode
    {"Mode", "AutoStart", T::Long, R::Fixed, "1"},
    {"Mode", "NoWaiting", T::Long, R::Fixed, "1"},
    {"Mode", "TrigDelay", T::Int, R::Fixed, "0"},
    {"Mode", "TimeoutAuto", T::Int, R::Fixed, "50"},
    {"Mode", "TimeoutWait", T::Int, R::Fixed, "500"},
    // MCUclock
    {"MCUclock", "Minimum", T::Int, R::Fixed, "0"},
    {"MCUclock", "Manual min", T::Int, R::Fixed, "0"},
    {"MCUclock", "Maximum", T::Int, R::Fixed, "0"},
    {"MCUclock", "Manual max", T::Int, R::Fixed, "0"},
    // Plot1
    {"Plot1", "Line", T::Bool, R::Fixed, kTrue},
    {"Plot1", "LineColor", T::Int, R::Fixed, "2"},
    {"Plot1", "VarBrght", T::Bool, R::Fixed, kTrue},
    {"Plot1", "Pixel", T::Bool, R::Fixed, kFalse},
    {"Plot1", "PixelColor", T::Int, R::Fixed, "6"},
    {"Plot1", "PeakColor", T::Int, R::Fixed, "4"},
    {"Plot1", "Interpolation", T::Int, R::CpuAtLeast, "3", "0", 300},
    {"Plot1", "InterpolationPoints", T::Int, R::Fixed, "5"},
    {"Plot1", "PeakDecimation", T::Bool, R::Fixed, kTrue},
    {"Plot1", "PeakInterpolation", T::Int, R::Fixed, "0"},
    {"Plot1", "Memory", T::Long, R::Fixed, "0"},
    {"Plot1", "MemoMode", T::Int, R::SegmentCount},
    {"Plot1", "Memory Depth", T::Int, R::Fixed, "2"},
    {"Plot1", "AcqPerPlot", T::Int, R::CpuAtLeast, "0", "2", 300},
    {"Plot1", "Emphasize invert", T::Bool, R::Fixed, kFalse},
    {"Plot1", "Leave Single", T::Bool, R::Fixed, kTrue},
    {"Plot1", "By bitmap", T::Bool, R::Fixed, kFalse},
    {"Plot1", "Emphasize Color", T::Int, R::Fixed, "4"},
    {"Plot1", "Emphasize Intens", T::Int, R::Fixed, "4"},
    {"Plot1", "<Z>LineWidth", T::Int, R::ZoomWidth},
    {"Plot1", "<Z>PeakWidth", T::Int, R::ZoomWidth},
    {"Plot1", "<Z>Speed", T::Int, R::CpuAtLeast, "3", "2", 300},
    // Spectrum and Stat
    {"Spectrum|Stat", "Left", T::Single, R::Reader},
    {"Spectrum|Stat", "Top", T::Single, R::Reader},
    {"Spectrum|Stat", "Height", T::Single, R::Reader},
    {"Spectrum|Stat", "Width", T::Single, R::Reader},
    {"Spectrum|Stat", "Visible", T::Bool, R::Fixed, kFalse},
    {"Spectrum|Stat", "Vert1Zoom", T::Int, R::Fixed, "1"},
    {"Spectrum|Stat", "HorZoom", T::Int, R::Fixed, "1"},
    {"Spectrum|Stat", "Vert1Zoom<Z>Poz", T::Double, R::Reader},
    {"Spectrum|Stat", "HorZoom<Z>Poz", T::Double, R::Reader},
    {"Spectrum|Stat", "Fill1Color", T::Int, R::Fixed, "6"},
    {"Spectrum|Stat", "Pixel1Color", T::Int, R::Fixed, "7"},
    {"Spectrum|Stat", "Line1Color", T::Int, R::Fixed, "3"},
    {"Spectrum|Stat", "Line1Width", T::Int, R::Fixed, "1"},
    {"Spectrum", "Line1", T::Bool, R::Fixed, kTrue},
    {"Stat", "Line1", T::Bool, R::Fixed, kFalse},
    {"Spectrum|Stat", "Pixel1", T::Bool, R::Fixed, kTrue},
    {"Spectrum|Stat", "Fill1", T::Bool, R::Fixed, kTrue},
    {"Spectrum|Stat", "Speed1", T::Int, R::CpuAtLeast, "3", "2", 300},
    {"Spectrum|Stat", "Interpolation1", T::Int, R::CpuAtLeast, "1", "0", 300},
    // 3 when the window loads; the menu that reads it on its own uses 5.
    {"Spectrum|Stat", "InterpolationPoints1", T::Int, R::Fixed, "3"},
    {"Spectrum|Stat", "InterpPixel1", T::Bool, R::Fixed, kFalse},
    {"Spectrum|Stat", "Normalize", T::Long, R::Fixed, "0"},
    {"Spectrum|Stat", "VertScale", T::Int, R::Fixed, "0"},
    {"Spectrum|Stat", "Memory", T::Long, R::Fixed, "0"},
    {"Spectrum|Stat", "MemoMode", T::Int, R::Fixed, "2"},
    {"Spectrum|Stat", "Memory Depth", T::Int, R::Fixed, "2"},
    {"Spectrum|Stat", "AcqPerPlot", T::Int, R::Fixed, "0"},
    {"Spectrum|Stat", "Emphasize invert", T::Bool, R::Fixed, kFalse},
    {"Spectrum|Stat", "Leave Single", T::Bool, R::Fixed, kFalse},
    {"Spectrum|Stat", "ByBitmap1", T::Bool, R::Fixed, kTrue},
    {"Spectrum|Stat", "Emphasize Color", T::Int, R::Fixed, "4"},
    {"Spectrum|Stat", "Emphasize Intens", T::Int, R::Fixed, "4"},
    {"Spectrum", "DC", T::Long, R::Fixed, "0"},
    {"Spectrum", "Double", T::Long, R::Fixed, "0"},
    {"Spectrum", "DBdiap", T::Int, R::Fixed, "4"},
    {"Spectrum", "Window function", T::Int, R::Fixed, "0"},
    // Meters
    {"Meters", "On", T::Text, R::Fixed, ""},
    {"Meters", "TimingsLevel", T::Int, R::Fixed, "2"},
    {"Meters", "RiseFallLevels2080", T::Bool, R::Fixed, kFalse},
    {"Meters", "TimingPolarity", T::Bool, R::Fixed, kFalse},
    {"Meters", "InterpolationMaxFind", T::Long, R::Fixed, "1"},  // the main meter's sin(x)/x check box
    {"Meters Positions", "MainComp Left", T::Single, R::Reader},
    {"Meters Positions", "MainComp Top", T::Single, R::Reader},
    {"Meters Positions", "THD Left", T::Single, R::Reader},
    {"Meters Positions", "THD Top", T::Single, R::Reader},
    {"Meters Positions", "<Name> Left", T::Single, R::Reader},
    {"Meters Positions", "<Name> Top", T::Single, R::Reader},
    {"Meters Positions", "<Name> zoom", T::Int, R::Fixed, "1"},
    {"Meters Colors", "<Name> Fore", T::Long, R::Fixed, kButtonText},
    {"Meters Colors", "<Name> min Fore", T::Long, R::Fixed, kButtonText},
    {"Meters Colors", "<Name> max Fore", T::Long, R::Fixed, kButtonText},
    {"Meters Colors", "<Name> avg Fore", T::Long, R::Fixed, kButtonText},
    {"Meters Colors", "<Name> Back", T::Long, R::Fixed, kButtonFace},
    {"Meters setting", "<Name> AvgTime", T::Int, R::Fixed, "3"},
    // AutoCalibrating
    {"AutoCalibrating", "KeyStart", T::Long, R::Fixed, "1"},
    {"AutoCalibrating", "KeyStartRIS", T::Long, R::Fixed, "0"},
    {"AutoCalibrating", "KeyStartAC", T::Long, R::Fixed, "1"},
    {"AutoCalibrating", "StartDelay", T::Int, R::Fixed, "1"},
    {"AutoCalibrating", "Periodic", T::Long, R::Fixed, "1"},
    {"AutoCalibrating", "PeriodicRIS", T::Long, R::Fixed, "0"},
    {"AutoCalibrating", "PeriodicAC", T::Long, R::Fixed, "0"},
    {"AutoCalibrating", "Interval", T::Int, R::Fixed, "5"},
    // One hot key per window, under the window's name ("Oscilloscope", "Statscope", ...)
    {"Windows Hot Keys", "<Any>", T::Int, R::Fixed, "0"},
    // The folder last used per file category; no default
    {"Folders", "CSV data", T::Text, R::Fixed, ""},
    {"Folders", "Binary data", T::Text, R::Fixed, ""},
    {"Folders", "Images", T::Text, R::Fixed, ""},
    {"Folders", "Animations", T::Text, R::Fixed, ""},
    {"Folders", "Firmware", T::Text, R::Fixed, ""},
    {"Folders", "Save All Setting to file", T::Text, R::Fixed, ""},
    {"Folders", "Restore Setting from file", T::Text, R::Fixed, ""},
    // Silenced boxes: the known keys, and any other key a caller chooses
    {"HideInfoWin", "CsvFileWrited", T::Bool, R::Fixed, kFalse},
    {"HideInfoWin", "BinFileWrited", T::Bool, R::Fixed, kFalse},
    {"HideInfoWin", "DisplayBMPwrited", T::Bool, R::Fixed, kFalse},
    {"HideInfoWin", "DisplayGIFwrited", T::Bool, R::Fixed, kFalse},
    {"HideInfoWin", "DisplayJPGwrited", T::Bool, R::Fixed, kFalse},
    {"HideInfoWin", "Display2clipboard", T::Bool, R::Fixed, kFalse},
    {"HideInfoWin", "<Any>", T::Bool, R::Fixed, kFalse},
    {"HideQuestWin", "ViewAnimGIF", T::Int, R::Fixed, "0"},
    {"HideQuestWin", "<Any>", T::Int, R::Fixed, "0"},
};

constexpr std::array<std::string_view, 19> kMeterNames{"DCV", "PHV", "PLV", "PPV", "ACV", "ADV", "VDB",
                                                       "FRH", "PES", "PWS", "DCR", "TRV", "BRV", "RRV",
                                                       "ACR", "RTS", "FTS", "POV", "NOV"};

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameText(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (lower(a[i]) != lower(b[i])) return false;
  return true;
}

bool inSections(const CatalogueEntry& e, std::string_view section) {
  for (std::string_view s : catalogueSections(e))
    if (sameText(s, section)) return true;
  return false;
}

// The zoom in the text of <Z>: a blank or minus sign, then digits.
std::optional<long long> zoomOf(std::string_view text) {
  if (text.size() < 2 || text.size() > 10 || (text[0] != ' ' && text[0] != '-')) return std::nullopt;
  long long z = 0;
  for (char c : text.substr(1)) {
    if (c < '0' || c > '9') return std::nullopt;
    z = z * 10 + (c - '0');
  }
  return text[0] == '-' ? -z : z;
}

enum class Kind { Literal, Placeholder, Any };

Kind kindOf(const CatalogueEntry& e) {
  if (e.name.find("<Any>") != std::string_view::npos) return Kind::Any;
  if (e.name.find('<') != std::string_view::npos) return Kind::Placeholder;
  return Kind::Literal;
}

// Matches a stored name against a row's name; the zoom of a <Z> comes back through `zoom`.
bool matches(std::string_view pattern, std::string_view name, long long& zoom) {
  std::size_t open = pattern.find('<');
  if (open == std::string_view::npos) return sameText(pattern, name);
  std::size_t close = pattern.find('>', open);
  std::string_view prefix = pattern.substr(0, open);
  std::string_view holder = pattern.substr(open, close - open + 1);
  std::string_view suffix = pattern.substr(close + 1);
  if (name.size() < prefix.size() + suffix.size()) return false;
  if (!sameText(name.substr(0, prefix.size()), prefix)) return false;
  if (!sameText(name.substr(name.size() - suffix.size()), suffix)) return false;
  std::string_view middle = name.substr(prefix.size(), name.size() - prefix.size() - suffix.size());
  if (holder == "<Any>") return true;
  if (holder == "<Name>") {
    for (std::string_view m : kMeterNames)
      if (sameText(m, middle)) return true;
    return false;
  }
  std::optional<long long> z = zoomOf(middle);
  if (!z) return false;
  zoom = *z;
  return true;
}

const CatalogueEntry* find(std::string_view section, std::string_view name, long long& zoom) {
  for (Kind pass : {Kind::Literal, Kind::Placeholder, Kind::Any})
    for (const CatalogueEntry& e : kCatalogue)
      if (kindOf(e) == pass && inSections(e, section) && matches(e.name, name, zoom)) return &e;
  return nullptr;
}

}  // namespace

std::span<const CatalogueEntry> catalogueEntries() {
  return kCatalogue;
}

std::vector<std::string_view> catalogueSections(const CatalogueEntry& entry) {
  std::vector<std::string_view> out;
  std::string_view s = entry.sections;
  for (;;) {
    std::size_t bar = s.find('|');
    out.push_back(s.substr(0, bar));
    if (bar == std::string_view::npos) return out;
    s.remove_prefix(bar + 1);
  }
}

std::span<const std::string_view> meterNames() {
  return kMeterNames;
}

std::string zoomValueName(std::string_view prefix, long long zoom, std::string_view suffix) {
  std::string digits = std::to_string(zoom);
  if (zoom >= 0) digits.insert(digits.begin(), ' ');
  return std::string(prefix) + digits + std::string(suffix);
}

const CatalogueEntry* findCatalogueEntry(std::string_view section, std::string_view name) {
  long long zoom = 0;
  return find(section, name, zoom);
}

std::string catalogueDefault(std::string_view section, std::string_view name, int cpuMHz, int segmentCount) {
  long long zoom = 0;
  const CatalogueEntry* e = find(section, name, zoom);
  if (e == nullptr)
    throw Fault("No setting \"" + std::string(name) + "\" in section \"" + std::string(section) +
                "\" is known");
  switch (e->rule) {
    case R::Fixed:
      return std::string(e->value);
    case R::CpuAbove:
      return std::string(cpuMHz > e->threshold ? e->value : e->slow);
    case R::CpuAtLeast:
      return std::string(cpuMHz >= e->threshold ? e->value : e->slow);
    case R::ZoomWidth:
      return zoom < 1 || cpuMHz < 300 ? "1" : std::to_string(zoom);
    case R::SegmentCount:
      return segmentCount < 2 ? "2" : "1";
    case R::Reader:
    case R::WrittenOnly:
      return {};
  }
  return {};
}

}  // namespace zorvik
