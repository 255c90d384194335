#pragma once
#include <array>
#include <string>

namespace zorvik {

class SettingsStore;

// The options of a window's pictures: the labels in the picture, a transparent GIF background, the
// animation recorded in a ring, and names without a dialog. They are kept in the window's section ("Save"
// for the main window; "SaveSpectrum" and "SaveStat" hold the first three) and stored as soon as one
// changes.
class PictureOptions {
 public:
  enum Option { WithLabels, TransparentGif, AnimatedGifRing, AutoFileName, kOptions };

  explicit PictureOptions(SettingsStore& settings, std::string section = "Save");

  bool on(Option option) const { return on_[static_cast<size_t>(option)]; }
  bool withLabels() const { return on(WithLabels); }
  bool transparentGif() const { return on(TransparentGif); }
  bool animatedGifRing() const { return on(AnimatedGifRing); }
  bool autoFileName() const { return on(AutoFileName); }
  // Stored first: a store that fails leaves the option as it was.
  void set(Option option, bool on);
  // Whether the section keeps the option at all.
  bool kept(Option option) const;

  // The option's name in the settings.
  static const char* key(Option option);

 private:
  SettingsStore& settings_;
  std::string section_;
  std::array<bool, kOptions> on_{};
};

}  // namespace zorvik
