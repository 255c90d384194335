#include "export/picture_options.h"

#include <utility>

#include "config/settings.h"
#include "core/fault.h"

namespace zorvik {

const char* PictureOptions::key(Option option) {
  switch (option) {
    case WithLabels:
      return "WithLabels";
    case TransparentGif:
      return "transparentGIF";
    case AnimatedGifRing:
      return "AnimatedGIFring";
    default:
      return "AutoFileName";
  }
}

PictureOptions::PictureOptions(SettingsStore& settings, std::string section)
    : settings_(settings), section_(std::move(section)) {
  for (int o = 0; o < kOptions; ++o) {
    const Option option = static_cast<Option>(o);
    if (kept(option)) on_[static_cast<size_t>(o)] = settings_.getBool(section_, key(option));
  }
}

bool PictureOptions::kept(Option option) const {
  return option != AutoFileName || section_ == "Save";
}

void PictureOptions::set(Option option, bool on) {
  if (!kept(option))
    throw Fault(std::string("Pictures of section ") + section_ + " have no option " + key(option));
  settings_.saveBool(section_, key(option), on);
  on_[static_cast<size_t>(option)] = on;
}

}  // namespace zorvik
