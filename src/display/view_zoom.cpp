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

bool isKeyFactor(ZoomAxis axis, int factor) {
  const std::vector<int>& keys = axis == ZoomAxis::Horizontal ? kHorizontalKeys : kVerticalKeys;
  return std::find(keys.begin(), keys.end(), factor) != keys.end();
}

// Where the view's middle stands across the full view (0 to 1: left to right, bottom to top).
double viewMiddle(ZoomAxis axis, int factor, int value) {
  const double t = value / kRange, z = factor;
  return axis == ZoomAxis::Horizontal ? 0.5 - t * (z - 1) / z : 0.5 + t * (z - 1) / z;
}

}  // namespace

ViewZoom::ViewZoom(SettingsStore& store, ZoomAxis axis) : store_(store), axis_(axis) {}

const std::vector<int>& ViewZoom::keyFactors() const {
  return axis_ == ZoomAxis::Horizontal ? kHorizontalKeys : kVerticalKeys;
}

const char* ViewZoom::section() const {
  return axis_ == ZoomAxis::Horizontal ? "Hor" : "Ch1";
}
const char* ViewZoom::name() const {
  return axis_ == ZoomAxis::Horizontal ? "HorZoom" : "VertZoom";
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
  const char* times = factor == 2 ? "two" : factor == 10 ? "ten" : "five";  // x4 shares the tip of x5
  return std::string(times) + (axis == ZoomAxis::Horizontal ? " times expand" : " times vert expand");
}

void ViewZoom::restore() {
  const int stored = store_.getInt(section(), name());
  setZoom(isKeyFactor(axis_, stored) ? stored : 1);
}

void ViewZoom::keyClicked(int factor, bool on) {
  const int z = on && isKeyFactor(axis_, factor) ? factor : 1;
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
