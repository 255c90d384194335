#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "display/display_geometry.h"

namespace zorvik {

class SettingsStore;

// Interpol1 items.
enum class Interpolation { None = 0, Line = 1, SinX = 2, Lanczos = 3, Lagrange = 4 };

// Every setting of the display and the plotters, under the names of the catalogue ("Startup Position",
// "View", "Plot1"). Menus and the CLI change a field and save it by its name.
struct DisplaySettings {
  // Startup Position
  int zoom = 1;  // ZoomIndex
  bool wide = false;
  // View
  int backColor = 0;  // DispBackColor, 0xBBGGRR
  bool autoRedraw = true;
  int showTime = 5;  // DispShowTime index
  bool gridFore = false;
  bool gridVisible = true;
  bool noTrigMsg = true;
  bool nullLine = true;    // NullLine
  bool syncroLine = true;  // SyncroLine
  bool vertLabels = true;
  int vertLabelSize = 5;
  bool horLabels = true;
  int horLabelSize = 5;
  // Plot1
  bool linePlot = true;  // linePlot1
  int lineColor = 2;     // ColorLine1 item: bit 0 red, bit 1 green, bit 2 blue
  bool varBright = true;
  bool psetPlot = false;        // PsetPlot1
  int pixelColor = 6;           // ColorPset1
  int peakColor = 4;            // ColorPeak1
  int interpolation = 3;        // Interpol1
  int interpolationPoints = 5;  // InterPoint1: taps = 2 ^ this
  bool peakDecimation = true;
  int peakInterpolation = 0;     // Pinterpol1: 0 CopyMin, 1 LineMax
  int memory = 0;                // MemoKey1
  int memoMode = 2;              // 0 no grading, 1 Brightness1, 2 Rainbow1
  int memoryDepth = 2;           // MemoDepth1 item
  int acqPerPlot = 0;            // AcqPerPlot1 item
  bool emphasizeInvert = false;  // InvertColorIntenc1
  bool leaveSingle = true;
  bool byBitmap = false;  // BitmapPlot1
  int emphasizeColor = 4;
  int emphasizeIntens = 4;
  std::array<int, kZoomCount> lineWidth{1, 1, 2, 3};
  std::array<int, kZoomCount> peakWidth{1, 1, 2, 3};
  std::array<int, kZoomCount> speed{3, 3, 3, 3};  // PlotSpeed1 item per zoom
  // Not kept between runs.
  bool risRainbow = false;

  // Reads every value; a stored value out of its range takes the nearest one that makes sense.
  void load(SettingsStore& store, int cpuMHz);
  // Saves the value of the catalogue name given ("Zoom", "Line", "Memory Depth", ...); the per-zoom
  // names are given without their zoom ("LineWidth") and go under the present zoom.
  void save(SettingsStore& store, std::string_view name) const;
  // Sets a value from its text by section and name, as `--set` gives it; false for a name not kept here.
  bool assign(std::string_view section, std::string_view name, std::string_view value);

  DisplayGeometry geometry() const { return DisplayGeometry::make(zoom, wide); }
  int plotWidth() const { return wide ? kWideWidth : kNormalWidth; }
  Interpolation interp() const { return static_cast<Interpolation>(interpolation); }
  int taps() const { return 1 << interpolationPoints; }
  // XStep of PlotSpeed1: "Fast, low quality" 4, "Compromise" 2, else 1.
  int xStep() const;
  int drawLineWidth() const;
  int drawPeakWidth() const;
  // PersistDepth of MemoDepth1 and AcqPerPlot of AcqPerPlot1.
  int persistDepth() const;
  int acqPerPlotCount() const;
  bool gradingChecked() const { return memoMode == 1 || memoMode == 2; }
  bool Grading() const { return gradingChecked() && memory == 1; }
  bool leaveSingleEnabled() const { return persistDepth() != 1; }
  int emphasis() const { return memoMode == 1 ? emphasizeIntens : emphasizeColor; }
};

// The items of the plot-speed menu and the colour menus, by index.
constexpr const char* kPlotSpeedItems[4] = {"", "Fast, low quality", "Compromise", "High quality"};
constexpr int kPersistDepths[4] = {1, 128, 32, 8};
constexpr int kAcqPerPlot[4] = {1, 2, 5, 10};

// 255 x the 0-or-1 bits of a colour item at a brightness, as a 32-bit pixel.
uint32_t itemColor(int item, int level);

}  // namespace zorvik
