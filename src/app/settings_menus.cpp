// The menus "Registry" (RegistryMenu) and "All setting" (Setting) of the main window.
#include <QCoreApplication>
#include <QMenuBar>
#include <QProcess>

#include "app/mainwin.h"
#include "config/settings_menu.h"
#include "export/file_dialogs.h"

namespace zorvik {

namespace {
// The double-zero list of the settings file's one type.
std::string settingFileFilter() {
  std::string list = kSettingFileDescription;
  list += '\0';
  list += kSettingFilePattern;
  list += std::string(2, '\0');
  return list;
}
}  // namespace

void mainwin::setRegistry(RegistryStore* store, int cpuMHz) {
  store_ = store;
  cpuMHz_ = cpuMHz;
  if (registryMenu_) registryMenu_->setEnabled(store_ != nullptr);
}

void mainwin::buildRegistryMenu() {
  registryMenu_ = menuBar()->addMenu("&Registry");
  registryMenu_->setObjectName("RegistryMenu");
  registryMenu_->addAction(kShowAllInfoCaption,
                           [this] { guarded([this] { RegistryMenuShowAllInfo(*store_, settingsName()); }); });
  registryMenu_->addAction(kAskAllQuestionsCaption, [this] {
    guarded([this] { RegistryMenuAskAllQuestions(*store_, settingsName()); });
  });
  QMenu* setting = registryMenu_->addMenu(kAllSettingCaption);
  setting->setObjectName("Setting");
  setting->addAction(kSaveToFileCaption, [this] { settingClick(0); });
  setting->addAction(kLoadFromFileCaption, [this] { settingClick(1); });
  setting->addAction(kResetToDefaultCaption, [this] { settingClick(2); });
  registryMenu_->addSeparator();
  QAction* login = registryMenu_->addAction(kLoadWithWindowsCaption);
  login->setCheckable(true);
  connect(registryMenu_, &QMenu::aboutToShow, this,
          [login] { login->setChecked(RegistryMenuLoadWithWindowsChecked()); });
  connect(login, &QAction::triggered, this, [this, login] {
    guarded([&] {
      QString cmd = QCoreApplication::applicationFilePath();
      login->setChecked(RegistryMenuToggleLoadWithWindows(!login->isChecked(), cmd.toStdString()));
    });
  });
}

void mainwin::settingClick(int index) {
  guarded([&] {
    std::string file;
    bool online = main_->Online();
    // Through the common dialog: each kind keeps its last folder, and names stay the file system's bytes.
    if (index == 0) {
      file = SaveFileDialog(fileDialogs_, settings_, settingFileFilter(), kSettingFileExtension,
                            kSaveSettingCategory);
    } else if (index == 1 && !online) {
      file = OpenFileDialog(fileDialogs_, settings_, settingFileFilter(), kRestoreSettingCategory);
      if (file.empty()) return;  // a cancelled dialog ends the command without effect
    }
    MenuOutcome out = Setting_Click(index, *store_, settingsName(), file, online);
    if (out.action == MenuAction::Refused) {
      sink_.show(BoxKind::InfoBox, main_->identity().InstanceTitle, out.message, "");
    } else if (out.action == MenuAction::Restart) {
      // The new process stays the first instance although this one is still going down.
      QProcess::startDetached(QCoreApplication::applicationFilePath(), {"first"});
      close();
    }
  });
}

const std::string& mainwin::settingsName() const {
  return main_->identity().SettingsName;
}

}  // namespace zorvik
