#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

namespace zorvik {

class SettingsStore;

// The plot's own settings in a window's section ("Spectrum" or "Stat"), as the main display has them:
// the styles and their colours, the interpolation, and the memory (persistence) with its grading.
enum class StyleKey {
  Line,                 // Line1: a line through the columns
  Pixel,                // Pixel1: a point at each column
  Fill,                 // Fill1: filled under the plot (bars for the histogram)
  LineColor,            // Line1Color: colour index 0 to 7 (bit 0 red, 1 green, 2 blue)
  PixelColor,           // Pixel1Color
  FillColor,            // Fill1Color
  LineWidth,            // Line1Width
  Speed,                // Speed1: kept for the main display's menu; the plot is drawn whole
  Interpolation,        // Interpolation1: None, Sin(x)/x, Lanczos, Lagrange
  InterpolationPoints,  // InterpolationPoints1: 2^n bins around each column
  InterpPixel,          // InterpPixel1: points at the interpolated columns as well
  Memory,               // Memory: MemoKey1, the persistence of the picture
  MemoMode,             // MemoMode: 0 no grading, 1 brightness, 2 colour
  MemoryDepth,          // Memory Depth: Infinite, 128, 32, 8
  AcqPerPlot,           // AcqPerPlot: each acquisition, /2, /5, /10
  EmphasizeInvert,      // Emphasize invert
  LeaveSingle,          // Leave Single: a single hit survives the decay
  ByBitmap,             // ByBitmap1
  EmphasizeColor,       // Emphasize Color: 0% to 100% in fifths
  EmphasizeIntens,      // Emphasize Intens
  kCount
};
constexpr int kStyleKeys = static_cast<int>(StyleKey::kCount);

struct StyleEntry {
  const char* name;  // the setting's name in the section
  int min, max;
  bool isBool;
};
const StyleEntry& styleEntry(StyleKey key);

// The values, each within its entry's range.
class PlotStyle {
 public:
  int operator[](StyleKey key) const { return values_[static_cast<size_t>(key)]; }
  bool on(StyleKey key) const { return (*this)[key] != 0; }
  // Brought into the entry's range: a damaged store can't push a colour or a width out of it.
  void set(StyleKey key, int value);

  // What the values stand for.
  int persistDepth() const;  // 1 (infinite), 128, 32 or 8: also the weight of a hit
  int acqPerPlot() const;    // 1, 2, 5 or 10
  bool grading() const {
    return on(StyleKey::Memory) && ((*this)[StyleKey::MemoMode] == 1 || colourGrading());
  }
  bool colourGrading() const { return (*this)[StyleKey::MemoMode] == 2; }
  int emphasis() const {
    return (*this)[colourGrading() ? StyleKey::EmphasizeColor : StyleKey::EmphasizeIntens];
  }

  // Read from a section; each value from the store's catalogue default when it was never written.
  static PlotStyle load(SettingsStore& store, const char* section);

 private:
  std::array<int, kStyleKeys> values_{};
};

// The 0xRRGGBB of a colour index: its bits 0, 1, 2 turn red, green and blue on at full strength.
uint32_t styleColour(int index);

}  // namespace zorvik
