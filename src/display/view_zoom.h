#pragma once
#include <functional>
#include <string>
#include <vector>

namespace zorvik {

class SettingsStore;

enum class ZoomAxis { Horizontal, Vertical };

// Where an axis keeps its zoom: the section and name of its factor (each factor's view position is the
// name, the factor and "Poz"), the factors of its keys, and the words its key tips end with.
struct ZoomPlace {
  const char* section;
  const char* name;
  std::vector<int> keys;
  const char* tipEnd;  // " times expand" after "two", "five", "ten"
};

// One axis of the view zoom: its keys (at most one on), the factor the plotter reads and the scroll that
// places the zoomed view. Each factor remembers its own view position in the settings.
//
// The scroll's value runs from kMin to kMax, 0 the middle. Horizontally kMax shows the record's left end,
// vertically the top of the full scale; the window shows the scroll inverted so that the thumb stands
// where the view does.
class ViewZoom {
 public:
  static constexpr int kMin = -1000, kMax = 1000;

  // The main display's axes: "HorZoom" of "Hor" (keys 2, 4, 5, 10) and "VertZoom" of "Ch1" (2, 5, 10).
  ViewZoom(SettingsStore& store, ZoomAxis axis);
  ViewZoom(SettingsStore& store, ZoomAxis axis, ZoomPlace place);

  ZoomAxis axis() const { return axis_; }
  // The factors of the axis' keys: 2, 4, 5, 10 horizontally; 2, 5, 10 vertically.
  const std::vector<int>& keyFactors() const;
  int factor() const { return factor_; }  // 1 with every key off
  bool keyOn(int factor) const { return factor_ > 1 && factor == factor_; }
  int value() const { return value_; }
  bool scrollEnabled() const { return factor_ > 1; }
  int largeStep() const;
  std::string scrollToolTip() const;
  // What the plotter reads: Value / Max horizontally (-1 to 1), Value / (Max - Min) vertically (-0.5 to 0.5).
  double frac() const;
  static std::string keyToolTip(ZoomAxis axis, int factor);
  std::string keyToolTip(int factor) const;
  // Where the view stands across the full range, 0 to 1: left to right horizontally, bottom to top
  // vertically; 0 without zoom.
  double position() const;

  // The stored factor at start-up; a factor the keys don't have is no zoom.
  void restore();
  // A key clicked into `on`: the others go off and the factor is stored; off with none on is 1.
  void keyClicked(int factor, bool on);
  // SetHorZoom / SetVertZoom: the scroll takes the factor's remembered position.
  void setZoom(int factor);
  // The scroll moved: stored at once under the present factor.
  void setValue(int value);
  // The roll stream's start: every key off, as a click would.
  void switchOff();

  // After every change of factor or position: the window replays the packet and refreshes its labels.
  std::function<void()> onChange = [] {};

 private:
  const char* section() const { return place_.section; }
  const char* name() const { return place_.name; }
  std::string positionName(int factor) const;
  static std::string keyToolTipFor(const char* tipEnd, int factor);
  bool isKey(int factor) const;

  SettingsStore& store_;
  ZoomAxis axis_;
  ZoomPlace place_;
  int factor_ = 1;
  int value_ = 0;
};

// Zoom to a selection: the new factor for a display r times the selection's size, from the present one;
// the present factor when its row has no match.
int horizontalZoomForSelection(int present, double r);
int verticalZoomForSelection(int present, double r);

// The scroll value that brings a point of the present view (0 to 1 across it: left to right, bottom to
// top) as near to the middle of the view at the new factor as the scroll allows.
int viewValueCentring(ZoomAxis axis, int presentFactor, int presentValue, double pointInView, int newFactor);

}  // namespace zorvik
