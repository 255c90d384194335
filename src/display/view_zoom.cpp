#include "display/view_zoom.h"

#include <algorithm>
#include <cmath>

#include "config/catalogue.h"
#include "config/settings.h"

namespace zorvik {

namespace {

const std::vector<int> kHorizontalKeys = {2, 4, 5, 10};
const std::vector<int> kVerticalKeys = {2, 5, 10};
constexpr double kRange = ViewZoom::kMax - ViewZoom::kMin;

ZoomPlace mainPlace(ZoomAxis axis) {
  return axis == ZoomAxis::Horizontal ? ZoomPlace{"Hor", "HorZoom", kHorizontalKeys, " times expand"}
                                      : ZoomPlace{"Ch1", "VertZoom", kVerticalKeys, " times vert expand"};
}

// Where the view's middle stands across the full view (0 to 1: left to right, bottom to top).
double viewMiddle(ZoomAxis axis, int factor, int value) {
  const double t = value / kRange, z = factor;
  return axis == ZoomAxis::Horizontal ? 0.5 - t * (z - 1) / z : 0.5 + t * (z - 1) / z;
}

}  // namespace

ViewZoom::ViewZoom(SettingsStore& store, ZoomAxis axis) : ViewZoom(store, axis, mainPlace(axis)) {}

ViewZoom::ViewZoom(SettingsStore& store, ZoomAxis axis, ZoomPlace place)
    : store_(store), axis_(axis), place_(std::move(place)) {}

const std::vector<int>& ViewZoom::keyFactors() const {
  return place_.keys;
}

bool ViewZoom::isKey(int factor) const {
  return std::find(place_.keys.begin(), place_.keys.end(), factor) != place_.keys.end();
}

double ViewZoom::position() const {
  if (factor_ <= 1) return 0;
  const double t = (value_ - kMin) / kRange;
  return axis_ == ZoomAxis::Horizontal ? 1 - t : t;
}
std::string ViewZoom::positionName(int factor) const {
  return zoomValueName(name(), factor, "Poz");
}

int ViewZoom::largeStep() const {
  return factor_ > 1 ? static_cast<int>(kRange) / (factor_ - 1) : static_cast<int>(kRange);
}

std::string ViewZoom::scrollToolTip() const {
  return factor_ > 1 ? "Zoomed view pozition" : "Full view";
}

double ViewZoom::frac() const {
  return axis_ == ZoomAxis::Horizontal ? static_cast<double>(value_) / kMax : value_ / kRange;
}

std::string ViewZoom::keyToolTip(ZoomAxis axis, int factor) {
  return ViewZoom::keyToolTipFor(mainPlace(axis).tipEnd, factor);
}

std::string ViewZoom::keyToolTip(int factor) const {
  return keyToolTipFor(place_.tipEnd, factor);
}

std::string ViewZoom::keyToolTipFor(const char* tipEnd, int factor) {
  const char* times = factor == 2 ? "two" : factor == 10 ? "ten" : "five";  // x4 shares the tip of x5
  return std::string(times) + tipEnd;
}

void ViewZoom::restore() {
  const int stored = store_.getInt(section(), name());
  setZoom(isKey(stored) ? stored : 1);
}

void ViewZoom::keyClicked(int factor, bool on) {
  const int z = on && isKey(factor) ? factor : 1;
  // Off on a key that is not the one on leaves the zoom as it is.
  if (!on && factor != factor_) return;
  store_.saveInt(section(), name(), z);
  setZoom(z);
}

void ViewZoom::setZoom(int factor) {
  factor_ = factor > 1 ? factor : 1;
  if (factor_ > 1) {
    // A factor seen for the first time shows the middle of the record.
    const double stored = store_.getDouble(section(), positionName(factor_), (kMin + kMax) / 2.0);
    value_ =
        std::isfinite(stored) ? static_cast<int>(std::lround(std::clamp<double>(stored, kMin, kMax))) : 0;
  } else {
    value_ = 0;
  }
  onChange();
}

void ViewZoom::setValue(int value) {
  value_ = std::clamp(value, kMin, kMax);
  if (factor_ > 1) store_.SaveSettingValue(section(), positionName(factor_), std::to_string(value_));
  onChange();
}

void ViewZoom::switchOff() {
  if (factor_ > 1) keyClicked(factor_, false);
}

int horizontalZoomForSelection(int present, double r) {
  struct Step {
    int from;
    double atLeast;
    int to;
  };
  static constexpr Step kSteps[] = {{1, 10, 10}, {1, 5, 5}, {1, 4, 4},    {1, 2, 2},    {2, 5, 10},
                                    {2, 2.5, 5}, {2, 2, 4}, {4, 2.5, 10}, {4, 1.25, 5}, {5, 2, 10}};
  for (const Step& s : kSteps)
    if (s.from == present && r >= s.atLeast) return s.to;
  return present;
}

int verticalZoomForSelection(int present, double r) {
  if (present == 1) return r >= 10 ? 10 : r >= 5 ? 5 : r >= 2 ? 2 : 1;
  if (present == 2 && r >= 2.5) return 5;
  return present;
}

int viewValueCentring(ZoomAxis axis, int presentFactor, int presentValue, double pointInView, int newFactor) {
  if (newFactor <= 1) return 0;
  const double zOld = std::max(1, presentFactor), zNew = newFactor;
  const double point = viewMiddle(axis, presentFactor, presentValue) - 0.5 / zOld + pointInView / zOld;
  double t = (point - 0.5) * zNew / (zNew - 1);
  if (axis == ZoomAxis::Horizontal) t = -t;
  if (!std::isfinite(t)) return 0;
  return static_cast<int>(std::lround(std::clamp(t, -0.5, 0.5) * kRange));
}

}  // namespace zorvik
