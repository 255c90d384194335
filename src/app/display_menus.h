#pragma once
#include <functional>

class QMenu;
class QMenuBar;

namespace zorvik {

class ScopeDisplay;
class MainController;

// The plot-option menus of the main window: "Plot", "Memo (DPO) mode:" and "Display". Each item stores its
// setting, clears the persistence and redraws by a replay of LastPacket. `geometryChanged` runs after the
// zoom or Wide changed the display's size (the window fits itself and makes the screen check).
void buildDisplayMenus(QMenuBar* bar, ScopeDisplay& display, MainController& main,
                       std::function<void()> geometryChanged = {});
// The same menus as submenus of a menu.
void buildDisplayMenus(QMenu* parent, ScopeDisplay& display, MainController& main,
                       std::function<void()> geometryChanged = {});

}  // namespace zorvik
