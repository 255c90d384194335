#include "firmware/firmware_update.h"

#include "core/fault.h"
#include "core/file_read.h"
#include "export/dialog_filter.h"
#include "export/file_dialogs.h"
#include "link/class_obex.h"
#include "link/device_context.h"

namespace zorvik {

namespace {
constexpr std::string_view kZfwFilter = filterList("Zorvik firmware (*.zfw)\0*.zfw\0\0");
}  // namespace

FirmwareUpdate::FirmwareUpdate(DeviceContext& main, FileDialogs& dialogs, FirmwareView& view)
    : main_(main), dialogs_(dialogs), view_(view) {
  timer_.setInterval(kSectorTimeoutMs);
  timer_.setSingleShot(true);
  QObject::connect(&timer_, &QTimer::timeout, [this] { sectorTimeout(); });
}

void FirmwareUpdate::header(const std::string& name, const std::string& value) {
  if (!loaded_) return;
  if (name == "F") FirmWareUpdateStart(value);
  if (name == "W") FirmwareSectorUpdateRezult(value);
}

void FirmwareUpdate::FirmWareUpdate() {
  loaded_ = true;
  Updating = true;
  view_.enableOtherWindows(false);
  const std::string& title = main_.identity().InstanceTitle;
  ClassOBEX* link = main_.link();
  if (link) link->PrepareFirmwareLoad();
  if (!link || !main_.Online()) {
    main_.messages().show(BoxKind::Information, title, "Firmware update error:\r\nno responce from Zorvik");
    unload();
    return;
  }
  const std::string path = OpenFileDialog(dialogs_, main_.settings(), kZfwFilter, "Firmware");
  if (path.empty()) {
    unload();
    return;
  }
  std::string bytes;
  try {
    bytes = readFileBounded(path, kZfwMaxBytes, "firmware image");
  } catch (const Fault& e) {
    main_.messages().show(BoxKind::Critical, title, e.what());
    unload();
    return;
  }
  std::optional<ZfwImage> image = parseZfw(bytes);
  // More sectors than a byte can number can't be sent.
  if (!image || image->SectorCount > 256) {
    main_.messages().show(BoxKind::Critical, title, "Firmware file error!");
    unload();  // as every other refusal: the loader's session ends, a later BOOT offers the update again
    return;
  }
  image_ = std::move(*image);
  view_.showImage(image_);
  view_.showWindow();
  link->SendCommand("F", true, false);
  sectors_.assign(static_cast<size_t>(image_.SectorCount), 0);
  view_.showSectors(image_.SectorCount);
}

void FirmwareUpdate::FirmWareUpdateStart(const std::string& identity) {
  view_.showWindow();
  main_.link()->SetFirmwareTimeout(1000);
  const DeviceIdentityFields device = parseDeviceIdentity(identity);
  view_.showDevice(device);
  if (!firmwareCompatible(image_, device)) {
    main_.messages().show(BoxKind::Critical, main_.identity().InstanceTitle, "Firmware uncompatible!");
    unload();
    return;
  }
  view_.enableStart(true);
}

void FirmwareUpdate::KeyStartFU_Click() {
  view_.enableStart(false);
  view_.showInProgress();
  // All sectors in one go, each behind its number; the instrument answers each in its own time.
  for (int32_t i = 0; i < image_.SectorCount; ++i) {
    std::string sector(1, static_cast<char>(i));
    sector += image_.body.substr(static_cast<size_t>(i) * static_cast<size_t>(image_.SectorSize),
                                 static_cast<size_t>(image_.SectorSize));
    main_.link()->SendFirmwareSector("W", sector, true, true);
  }
  timer_.start();
}

void FirmwareUpdate::FirmwareSectorUpdateRezult(const std::string& answer) {
  timer_.stop();
  const std::string& title = main_.identity().InstanceTitle;
  const int sector = answer.size() >= 2 ? static_cast<unsigned char>(answer[1]) : -1;
  if (sector >= 0 && sector < static_cast<int>(sectors_.size())) {
    if (answer[0] == 'E') {
      sectors_[static_cast<size_t>(sector)] = 2;
      view_.setSector(sector, false);
      main_.messages().show(BoxKind::Information, title, "Error sector updating");
    } else if (answer[0] == 'O') {
      sectors_[static_cast<size_t>(sector)] = 1;
      view_.setSector(sector, true);
    }
  } else {
    main_.messages().show(BoxKind::Information, title, "Undefined sector = " + std::to_string(sector));
  }
  for (int s : sectors_) {
    if (s != 1) {
      timer_.start();  // more answers are awaited
      return;
    }
  }
  main_.Wait(2000);
  main_.messages().show(BoxKind::Information, title, "Firmware update\r\ncompleted successfully!");
  unload();
}

void FirmwareUpdate::sectorTimeout() {
  timer_.stop();
  main_.messages().show(BoxKind::Critical, "Zorvik firmware update",
                        "Firmware update failed.\r\nReconnect zorvik and repite");
  unload();
}

void FirmwareUpdate::unload() {
  timer_.stop();
  if (main_.link()) main_.link()->CloseSession();
  view_.enableOtherWindows(true);
  view_.closeWindow();
  loaded_ = false;
  Updating = false;
  sectors_.clear();
}

}  // namespace zorvik
