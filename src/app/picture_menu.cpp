#include "app/picture_menu.h"

#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>
#include <QSignalBlocker>
#include <memory>

#include "config/settings.h"
#include "display/scope_display.h"
#include "export/display_pictures.h"
#include "export/picture_options.h"
#include "export/wallpaper_show.h"
#include "session/main_controller.h"

namespace zorvik {

void addPictureMenu(QMenu* file, MainController& main, FileDialogs& dialogs, SettingsStore& settings,
                    ScopeDisplay& display, std::function<void(const std::string&)> fault) {
  QMenu* menu = file->addMenu("Save display");
  menu->setObjectName("SaveToBMPGIFJPG");
  auto pictures = std::make_shared<DisplayPictures>(main, dialogs);
  auto options = std::make_shared<PictureOptions>(settings);
  auto run = [&main, &display, pictures, fault](PictureTarget target, bool labels, bool autoName,
                                                bool transparent) {
    try {
      pictures->setGifTransparency(transparent,
                                   static_cast<uint32_t>(display.settings().backColor) & 0xFFFFFF);
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
  const Item items[] = {{"to BMP file", PictureTarget::Bmp},
                        {"to GIF file", PictureTarget::Gif},
                        {"to JPG file", PictureTarget::Jpeg},
                        {"to clipboard", PictureTarget::Clipboard},
                        {"as wallpaper file", PictureTarget::Wallpaper}};
  // The options are read from their model when a command runs.
  for (const Item& it : items) {
    QAction* a = menu->addAction(it.caption);
    a->setObjectName(QString("SaveToBMPGIFJPG_%1").arg(static_cast<int>(it.target)));
    const PictureTarget target = it.target;
    QObject::connect(a, &QAction::triggered, menu, [options, run, target] {
      run(target, options->withLabels(), options->autoFileName(), options->transparentGif());
    });
  }
  menu->addSeparator();
  // Each check mark mirrors its option; a toggle goes to the model, and a failed store puts the mark back.
  auto option = [menu, options, fault](const char* caption, const char* object, PictureOptions::Option o) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(object);
    a->setCheckable(true);
    a->setChecked(options->on(o));
    QObject::connect(a, &QAction::toggled, menu, [a, options, o, fault](bool on) {
      try {
        options->set(o, on);
      } catch (const std::exception& e) {
        const QSignalBlocker b(a);
        a->setChecked(options->on(o));
        fault(e.what());
      }
    });
  };
  option("with labels", "SaveWithLabels", PictureOptions::WithLabels);
  option("auto file name", "AutoPictureFileName", PictureOptions::AutoFileName);
  option("transparent GIF", "transparentGIF", PictureOptions::TransparentGif);

  // The wall mode is not kept: each start begins without it. The stage joins the end of the display's
  // chain when first switched on.
  auto wall = std::make_shared<WallpaperShow>();
  wall->capture = [&display, options] {
    return displayPicture(display, display.labels(), options->withLabels());
  };
  QAction* showWall = menu->addAction("Wallpaper show");
  showWall->setObjectName("ShowWall");
  showWall->setCheckable(true);
  wall->onFault = [showWall, fault](const std::string& text) {
    const QSignalBlocker b(showWall);
    showWall->setChecked(false);
    fault(text);
  };
  QObject::connect(showWall, &QAction::toggled, menu, [wall, &display](bool on) {
    wall->appendTo(display);
    wall->setOn(on);
  });
}

}  // namespace zorvik
