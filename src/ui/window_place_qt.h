#pragma once
#include <QPoint>
#include <optional>

class QWidget;

namespace zorvik {

// A window of the program opened: at its stored place when it has one, pulled onto the screen; else beside
// the main window (the root of its parents), cascading past the program's other open windows.
void placeOpenedWindow(QWidget* window, std::optional<QPoint> stored = std::nullopt);

// The window moved back into the work area of its screen.
void moveIntoScreen(QWidget* window);

}  // namespace zorvik
