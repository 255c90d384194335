#pragma once
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QWidget>
#include <vector>

#include "firmware/firmware_update.h"

namespace zorvik {

// FWupdate: the image's and the instrument's fields, the start key and one indicator a sector.
class FWupdate : public QWidget, public FirmwareView {
  Q_OBJECT
 public:
  explicit FWupdate(QWidget* parent = nullptr);
  void attach(FirmwareUpdate* update) { update_ = update; }

  void showWindow() override;
  void closeWindow() override;
  void enableOtherWindows(bool enabled) override;
  void showImage(const ZfwImage& image) override;
  void showDevice(const DeviceIdentityFields& device) override;
  void enableStart(bool enabled) override;
  void showInProgress() override;
  void showSectors(int count) override;
  void setSector(int index, bool good) override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  FirmwareUpdate* update_ = nullptr;
  QLabel* FWtarget = nullptr;
  QLabel* FWversion = nullptr;
  QLabel* FWdate = nullptr;
  QLabel* Model = nullptr;
  QLabel* HWrev = nullptr;
  QLabel* SerNum = nullptr;
  QLabel* LDver = nullptr;
  QPushButton* KeyStartFU = nullptr;
  QLabel* InfoMessage = nullptr;
  QWidget* sectorBox_ = nullptr;
  std::vector<QLabel*> SectorShape;
  std::vector<QPointer<QWidget>> disabled_;  // the windows this update disabled
  bool closing_ = false;
};

}  // namespace zorvik
