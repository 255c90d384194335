#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "export/gif_writer.h"

namespace zorvik {

class DeviceContext;
class FileDialogs;

// A finished recording to its GIF file, as every window's recorder saves it: a running serial acquisition
// is held around the dialog (a cancelled dialog leaves it stopped), the frames are written with the
// transparent colour given (AniGIF::kNoTransparent for none), and the question "Animated GIF saved." asks
// whether to view it. The path written, or empty when the dialog was cancelled; Fault when it can't be
// written.
struct SavedAnimation {
  std::string path;
  bool view = false;  // the user asked to see it
};
SavedAnimation saveAnimationFrames(DeviceContext& main, FileDialogs& dialogs,
                                   const std::vector<AniGIF::Frame>& frames, uint32_t transparentColour);

}  // namespace zorvik
