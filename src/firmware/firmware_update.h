#pragma once
#include <QTimer>
#include <string>
#include <vector>

#include "firmware/zfw_image.h"

namespace zorvik {

class DeviceContext;
class FileDialogs;

// What the update shows: its window with the image's and the instrument's fields, the start key, the
// "in progress" text and one indicator a sector.
class FirmwareView {
 public:
  virtual ~FirmwareView() = default;
  virtual void showWindow() = 0;
  virtual void closeWindow() = 0;
  // The program's other windows are disabled while an update runs.
  virtual void enableOtherWindows(bool enabled) = 0;
  virtual void showImage(const ZfwImage& image) = 0;
  virtual void showDevice(const DeviceIdentityFields& device) = 0;
  virtual void enableStart(bool enabled) = 0;
  virtual void showInProgress() = 0;
  virtual void showSectors(int count) = 0;
  // A sector's answer: green when the instrument took it, red when it refused it.
  virtual void setSector(int index, bool good) = 0;
};

// FWupdate: loads a firmware image, checks it against the instrument's identity and writes it sector by
// sector; each answer must come within five seconds of the one before.
class FirmwareUpdate {
 public:
  static constexpr int kSectorTimeoutMs = 5000;

  FirmwareUpdate(DeviceContext& main, FileDialogs& dialogs, FirmwareView& view);

  bool Updating = false;
  void FirmWareUpdate();
  void FirmWareUpdateStart(const std::string& identity);
  void KeyStartFU_Click();
  void FirmwareSectorUpdateRezult(const std::string& answer);
  // TimerSectorWrite: no answer within the time.
  void sectorTimeout();
  // The window closed by the user: the update ends, and the session with it.
  void cancel() { unload(); }
  // The header dispatch's "F" and "W".
  void header(const std::string& name, const std::string& value);
  const QTimer& timer() const { return timer_; }

 private:
  void unload();

  DeviceContext& main_;
  FileDialogs& dialogs_;
  FirmwareView& view_;
  QTimer timer_;
  bool loaded_ = false;
  ZfwImage image_;
  std::vector<int> sectors_;  // 0 waiting, 1 taken, 2 refused
};

}  // namespace zorvik
