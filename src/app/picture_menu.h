#pragma once
#include <QMenu>
#include <functional>
#include <string>

namespace zorvik {

class MainController;
class FileDialogs;
class SettingsStore;
class ScopeDisplay;

// "Save display": the display's picture to a BMP, GIF or JPEG file, the clipboard or the wallpaper file,
// the wall mode "Wallpaper show" (the wallpaper file after every packet),
// with the options "with labels", "auto file name" and "transparent GIF": check marks of a
// PictureOptions of section "Save", which stores them when toggled.
void addPictureMenu(QMenu* file, MainController& main, FileDialogs& dialogs, SettingsStore& settings,
                    ScopeDisplay& display, std::function<void(const std::string&)> fault);

}  // namespace zorvik
