#pragma once
#include <QString>

#include "session/session_keys.h"

namespace zorvik {

class mainwin;

// The keys that need the window beyond the session's own: close, the zoom that needs a wide screen, the
// meters, the pictures and the recorder (through the window's menu items).
class WindowKeys : public SessionKeys {
 public:
  WindowKeys(mainwin& window, ScopeSession& session) : SessionKeys(session), w_(window) {}

  void closeProgram() override;
  void toggleZoom() override;
  void openMeter(char key) override;
  void openMeterFFT() override;
  void openMeterStat() override;
  void savePicture(char kind) override;
  void openPictureWindow() override;
  void startRecorder(char key) override;

 private:
  // Runs a menu item of the window by its name; `open` leaves an item that is already checked alone.
  void trigger(const QString& item, bool open = false);
  mainwin& w_;
};

}  // namespace zorvik
