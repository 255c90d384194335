#pragma once
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <memory>

#include "config/settings.h"
#include "export/gif_writer.h"
#include "session/basic_control.h"
#include "session/command_line.h"
#include "session/main_controller.h"
#include "session/run_control.h"
#include "session/run_key_actions.h"
#include "session/scope_session.h"
#include "ui/file_dialog_qt.h"
#include "ui/qt_message_sink.h"

namespace zorvik {

class DevicePage;
class DelayPage;
class CalibrationPage;
class TriggerPanel;
class TriggerMarker;
class DelayControl;
class RegistryStore;
class ScopeDisplay;
class ScopeDisplayWindow;
class ControllerDisplayHost;
class DisplayRollCanvas;
class VerticalPanel;
class HorizontalPanel;
class ClassOBEX;
class ViewZoom;
class MeasurementPass;
class MeterMenu;
class DeviceSettingPage;
class SpectrumStage;
class Spectrum;
class StatStage;
class Stat;
class AnimationRecorder;
class FirmwareUpdate;
class FWupdate;
class PacketFiles;
class ZoomBar;

// The main window: binds the front panel and the read-outs to the core and forwards the user's actions.
class mainwin : public QMainWindow, private MainView {
  Q_OBJECT
 public:
  // The link is created by the caller where the device library would be loaded.
  mainwin(SettingsStore& settings, const InstanceIdentity& identity, std::unique_ptr<ClassOBEX> link,
          const CommandLine& commandLine);
  ~mainwin() override;

  MainController& core() { return *main_; }
  // The last step of start-up: default.zrv of the start directory on the screen.
  void restoreDefaultPacket(const std::string& namedFile = {});
  // The store behind the settings (null when running on defaults) for the Registry menu.
  void setRegistry(RegistryStore* store, int cpuMHz);
  QtMessageSink& messages() { return sink_; }
  ScopeDisplay& display() { return *scope_; }
  BasicControl& control() { return *control_; }
  ScopeSession& session() { return *session_; }
  const ScopeDisplayWindow& displayWindow() const { return *display_; }
  TriggerControl& trigger() { return *trigger_; }

  // A display setting changed by a key: stored, and the picture drawn anew; `setup` lays the display out.
  void displaySettingChanged(const char* name, bool setup);
  // The display's size changed: the window fits itself around it and checks the screen.
  void displayGeometryChanged();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  // MainView.
  void stateChanged() override;
  bool isWindowVisible() const override { return isVisible(); }
  void clearDisplay() override;
  void packetShown(const std::string& packet) override;

  void buildMenus();
  void buildRegistryMenu();
  // Shows a page of the Device menu, made at its first use.
  void showDevicePage(DeviceSettingPage*& page, const std::function<DeviceSettingPage*()>& make);
  void settingClick(int index);
  const std::string& settingsName() const;
  // Runs a user's action; a fault becomes a box and the program goes on.
  template <typename F>
  void guarded(F&& action);
  void buildPanel();
  void placeWindow();
  void refreshRunControls();
  // The session's parts this window binds to, once the session stands.
  void bindSession();
  // The controllers' scale reaches the display: inputs, labels, and the last packet drawn anew.
  void scaleChanged();
  // The selection's menu on the display, and its first item: the zoom that shows the selection.
  void selectionMenu(QPoint at);
  // The Spectral item: the spectrum window opens (the last packet runs through it) or closes.
  void MeterFFT_Click();
  // The Staistic item: the histogram window, likewise.
  void MeterStat_Click();
  void zoomToSelection();
  // A still copy in a memo window: the selection (magnified n times) or the whole display.
  void copySelection(int magnification);
  void showMemo(const QImage& picture);
  // The animation recorder's menu and the save of a finished recording.
  void buildAnimationMenu(QMenu* file);
  void saveAnimation(std::vector<AniGIF::Frame> frames);
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool isFirstDeliveryHere(QObject* watched) const;
  bool takeKey(QKeyEvent* event);

  SettingsStore& settings_;
  RegistryStore* store_ = nullptr;
  int cpuMHz_ = 200;
  QMenu* registryMenu_ = nullptr;
  QtMessageSink sink_;
  QtFileDialogs fileDialogs_{this};
  std::unique_ptr<ScopeSession> session_;
  // The session's parts, bound once it stands.
  MainController* main_ = nullptr;
  BasicControl* control_ = nullptr;
  RunControl* run_ = nullptr;
  TriggerControl* trigger_ = nullptr;
  DelayControl* delay_ = nullptr;
  FirmwareUpdate* firmware_ = nullptr;
  PacketFiles* files_ = nullptr;
  ScopeDisplay* scope_ = nullptr;
  MeasurementPass* measure_ = nullptr;
  SpectrumStage* spectrumStage_ = nullptr;
  StatStage* statStage_ = nullptr;
  AnimationRecorder* recorder_ = nullptr;
  ViewZoom* hZoom_ = nullptr;
  ViewZoom* vZoom_ = nullptr;
  TriggerPanel* triggerPanel_ = nullptr;
  TriggerMarker* triggerMarker_ = nullptr;
  DelayPage* delayPage_ = nullptr;
  CalibrationPage* calibrationPage_ = nullptr;
  DeviceSettingPage* ch1Page_ = nullptr;
  DeviceSettingPage* samplingPage_ = nullptr;
  DeviceSettingPage* memoryPage_ = nullptr;
  DeviceSettingPage* clockPage_ = nullptr;
  DeviceSettingPage* trigPage_ = nullptr;
  std::unique_ptr<KeyActions> keyActions_;

  MeterMenu* meterMenu_ = nullptr;
  Spectrum* spectrum_ = nullptr;
  QAction* MeterFFT = nullptr;
  Stat* stat_ = nullptr;
  QAction* MeterStat = nullptr;
  FWupdate* fwWindow_ = nullptr;
  ScopeDisplayWindow* display_ = nullptr;
  VerticalPanel* verticalPanel_ = nullptr;
  HorizontalPanel* horizontalPanel_ = nullptr;
  ZoomBar* hZoomBar_ = nullptr;
  ZoomBar* vZoomBar_ = nullptr;
  DevicePage* devicePage_ = nullptr;
  QPushButton* KeyConnect = nullptr;
  QPushButton* KeyStart = nullptr;
  QCheckBox* WorkMode = nullptr;
  QCheckBox* AutoWait = nullptr;
  QComboBox* AveragesPeaks = nullptr;
  QComboBox* RisAveragesPeaks = nullptr;
  QGroupBox* FrameMode = nullptr;
  QLabel* frameModeCaption_ = nullptr;  // the caption of FrameMode, wrapped
  QAction* LinkControl = nullptr;
  QLabel* FPSlabel = nullptr;
  QLabel* sessionLabel_ = nullptr;
  QLabel* recorderLabel_ = nullptr;  // the frames an animation still waits for
};

template <typename F>
void mainwin::guarded(F&& action) {
  try {
    action();
  } catch (const std::exception& e) {
    sink_.show(BoxKind::Critical, main_->identity().InstanceTitle, e.what(), "");
  }
}

}  // namespace zorvik
