#include <algorithm>

#include "config/settings.h"
#include "measure/measurement_pass.h"

namespace zorvik {

namespace {
constexpr char kSection[] = "Meters";
}

MeasureOptions loadMeasureOptions(SettingsStore& settings) {
  MeasureOptions o;
  o.byLevel = std::clamp(settings.getInt(kSection, "TimingsLevel"), 0, 3);
  o.negativePolarity = settings.getBool(kSection, "TimingPolarity");
  o.level2080 = settings.getBool(kSection, "RiseFallLevels2080");
  return o;
}

void saveMeasureOptions(SettingsStore& settings, const MeasureOptions& o) {
  settings.saveInt(kSection, "TimingsLevel", o.byLevel);
  settings.saveBool(kSection, "TimingPolarity", o.negativePolarity);
  settings.saveBool(kSection, "RiseFallLevels2080", o.level2080);
}

}  // namespace zorvik
