#include "firmware/fw_update_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QVBoxLayout>

#include "core/latin1_text.h"
#include "ui/window_place_qt.h"

namespace zorvik {

namespace {
constexpr int kPerRow = 15;
}  // namespace

FWupdate::FWupdate(QWidget* parent) : QWidget(parent, Qt::Window) {
  setObjectName("FWupdate");
  setWindowTitle("Firmware update");
  // While an update runs no other window may take input. Modality blocks them all; the main window can't
  // simply be disabled, for Qt disables a window's child windows with it, and this window is one of them.
  setWindowModality(Qt::ApplicationModal);
  auto* column = new QVBoxLayout(this);
  auto* fields = new QFormLayout;
  auto label = [this](const char* name) {
    auto* l = new QLabel("-", this);
    l->setObjectName(name);
    return l;
  };
  FWtarget = label("FWtarget");
  FWversion = label("FWversion");
  FWdate = label("FWdate");
  Model = label("Model");
  HWrev = label("HWrev");
  SerNum = label("SerNum");
  LDver = label("LDver");
  fields->addRow("Firmware for:", FWtarget);
  fields->addRow("Firmware version:", FWversion);
  fields->addRow("Firmware date:", FWdate);
  fields->addRow("Instrument:", Model);
  fields->addRow("Hardware revision:", HWrev);
  fields->addRow("Serial number:", SerNum);
  fields->addRow("Loader version:", LDver);
  column->addLayout(fields);
  sectorBox_ = new QWidget(this);
  new QGridLayout(sectorBox_);
  column->addWidget(sectorBox_);
  InfoMessage = new QLabel("FW update in progress. Do not disconnect! ", this);
  InfoMessage->setObjectName("InfoMessage");
  InfoMessage->hide();
  column->addWidget(InfoMessage);
  KeyStartFU = new QPushButton("Start firmware update", this);
  KeyStartFU->setObjectName("KeyStartFU");
  KeyStartFU->setEnabled(false);
  connect(KeyStartFU, &QPushButton::clicked, this, [this] {
    if (update_) update_->KeyStartFU_Click();
  });
  column->addWidget(KeyStartFU);
}

void FWupdate::showWindow() {
  if (!isVisible()) placeOpenedWindow(this);
  show();
  raise();
}

void FWupdate::closeWindow() {
  closing_ = true;
  close();
  closing_ = false;
  InfoMessage->hide();
  KeyStartFU->setEnabled(false);
}

void FWupdate::enableOtherWindows(bool enabled) {
  if (enabled) {
    for (const QPointer<QWidget>& w : disabled_)
      if (w) w->setEnabled(true);
    disabled_.clear();
    return;
  }
  // Beyond the modality, the other windows are greyed so the user sees why they don't answer: all but this
  // window's ancestors (see the constructor) and its own children. Only those disabled here come back.
  auto related = [this](QWidget* w) {
    for (QWidget* p = parentWidget(); p; p = p->parentWidget())
      if (p == w) return true;
    for (QWidget* p = w; p; p = p->parentWidget())
      if (p == this) return true;
    return false;
  };
  for (QWidget* w : QApplication::topLevelWidgets()) {
    if (!w->isEnabled() || related(w)) continue;
    w->setEnabled(false);
    disabled_.emplace_back(w);
  }
}

void FWupdate::showImage(const ZfwImage& image) {
  FWtarget->setText(latin1Text(image.target));
  FWversion->setText(latin1Text(image.version));
  FWdate->setText(latin1Text(image.date));
}

void FWupdate::showDevice(const DeviceIdentityFields& device) {
  Model->setText(latin1Text(device.model));
  HWrev->setText(latin1Text(device.hwRev));
  SerNum->setText(latin1Text(device.serial));
  LDver->setText(latin1Text(device.loader));
}

void FWupdate::enableStart(bool enabled) {
  KeyStartFU->setEnabled(enabled);
}

void FWupdate::showInProgress() {
  InfoMessage->show();
}

void FWupdate::showSectors(int count) {
  auto* grid = static_cast<QGridLayout*>(sectorBox_->layout());
  for (QLabel* l : SectorShape) delete l;
  SectorShape.clear();
  // Rows of fifteen in index order.
  for (int i = 0; i < count; ++i) {
    auto* shape = new QLabel(sectorBox_);
    shape->setObjectName(QString("SectorShape%1").arg(i));
    shape->setFixedSize(14, 14);
    shape->setFrameShape(QFrame::Box);
    grid->addWidget(shape, i / kPerRow, i % kPerRow);
    shape->show();
    SectorShape.push_back(shape);
  }
}

void FWupdate::setSector(int index, bool good) {
  if (index < 0 || index >= static_cast<int>(SectorShape.size())) return;
  SectorShape[static_cast<size_t>(index)]->setStyleSheet(good ? "background: #00ff00"
                                                              : "background: #ff0000");
}

void FWupdate::closeEvent(QCloseEvent* event) {
  // Closed by the user while an update is loaded: the update ends and the session with it.
  if (!closing_ && update_ && update_->Updating) update_->cancel();
  event->accept();
}

}  // namespace zorvik
