#include "app/picture_menu.h"

#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>
#include <memory>

#include "config/settings.h"
#include "display/scope_display.h"
#include "export/display_pictures.h"
#include "session/main_controller.h"

namespace zorvik {

void addPictureMenu(QMenu* file, MainController& main, FileDialogs& dialogs, SettingsStore& settings,
                    ScopeDisplay& display, std::function<void(const std::string&)> fault) {
  QMenu* menu = file->addMenu("Save display");
  menu->setObjectName("SaveToBMPGIFJPG");
  auto pictures = std::make_shared<DisplayPictures>(main, dialogs);
  auto run = [&main, &display, pictures, fault](PictureTarget target, bool labels, bool autoName, bool transparent) {
    try {
      pictures->setGifTransparency(transparent, static_cast<uint32_t>(display.settings().backColor) & 0xFFFFFF);
      pictures->SaveToBMPGIFJPG(
          target, [&display, labels] { return displayPicture(display, display.labels(), labels); },
          [](const QImage& image) { QGuiApplication::clipboard()->setImage(image); }, autoName,
          static_cast<uint32_t>(main.tickMs()));
    } catch (const std::exception& e) {
      fault(e.what());
    }
  };
  struct Item {
    const char* caption;
    PictureTarget target;
  };
  const Item items[] = {{"to BMP file", PictureTarget::Bmp},         {"to GIF file", PictureTarget::Gif},
                        {"to JPG file", PictureTarget::Jpeg},        {"to clipboard", PictureTarget::Clipboard},
                        {"as wallpaper file", PictureTarget::Wallpaper}};
  // The options are read from their items when a command runs.
  for (const Item& it : items) {
    QAction* a = menu->addAction(it.caption);
    a->setObjectName(QString("SaveToBMPGIFJPG_%1").arg(static_cast<int>(it.target)));
    const PictureTarget target = it.target;
    QObject::connect(a, &QAction::triggered, menu, [menu, run, target] {
      auto checked = [menu](const char* name) {
        QAction* o = menu->findChild<QAction*>(name);
        return o && o->isChecked();
      };
      run(target, checked("SaveWithLabels"), checked("AutoPictureFileName"), checked("transparentGIF"));
    });
  }
  menu->addSeparator();
  auto option = [&settings, menu, fault](const char* caption, const char* object, const char* key) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(object);
    a->setCheckable(true);
    a->setChecked(settings.getBool("Save", key));
    QObject::connect(a, &QAction::toggled, menu, [&settings, key, fault](bool on) {
      try {
        settings.saveBool("Save", key, on);
      } catch (const std::exception& e) {
        fault(e.what());
      }
    });
    return a;
  };
  option("with labels", "SaveWithLabels", "WithLabels");
  option("auto file name", "AutoPictureFileName", "AutoFileName");
  option("transparent GIF", "transparentGIF", "transparentGIF");
}

}  // namespace zorvik
