#include "app/window_place.h"

#include "config/settings.h"

namespace zorvik {

void storeWindowPlace(SettingsStore& settings, const char* section, const QWidget& window,
                      const std::function<void(const std::string&)>& fault) {
  const std::pair<const char*, int> values[] = {
      {"Left", window.x()}, {"Top", window.y()}, {"Width", window.width()}, {"Height", window.height()}};
  for (const auto& [name, value] : values) {
    try {
      settings.saveInt(section, name, value);
    } catch (const std::exception& e) {
      fault(e.what());
    }
  }
}

}  // namespace zorvik
