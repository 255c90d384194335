#pragma once
#include <QWidget>
#include <functional>
#include <string>

namespace zorvik {

class SettingsStore;

// A window's place and size under "Left", "Top", "Width" and "Height" of its section; a store that fails
// goes to `fault` and the rest are still tried.
void storeWindowPlace(SettingsStore& settings, const char* section, const QWidget& window,
                      const std::function<void(const std::string&)>& fault);

}  // namespace zorvik
