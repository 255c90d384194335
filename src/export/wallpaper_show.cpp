#include "export/wallpaper_show.h"

#include <exception>

#include "export/display_pictures.h"
#include "link/device_context.h"

namespace zorvik {

WallpaperShow::WallpaperShow() : write(writeWallpaper), wait(DeviceContext::Wait) {}

void WallpaperShow::appendTo(ChainedStages& first) {
  ChainedStages* last = &first;
  while (auto* n = dynamic_cast<ChainedStages*>(&last->next())) {
    if (n == this) return;
    last = n;
  }
  if (last != this) last->setNext(this);
}

void WallpaperShow::wallpaper() {
  // A packet that comes inside the waits is drawn but not written: the file of the one before is still
  // being shown.
  if (on_ && !busy_) {
    busy_ = true;
    try {
      write(capture());
      wait(kWriteWaitMs);
      wait(kDesktopWaitMs);
    } catch (const std::exception& e) {
      on_ = false;
      busy_ = false;
      onFault(e.what());
    }
    busy_ = false;
  }
  next().wallpaper();
}

}  // namespace zorvik
