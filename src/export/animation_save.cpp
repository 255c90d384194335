#include "export/animation_save.h"

#include "core/messages.h"
#include "export/acquisition_hold.h"
#include "export/dialog_filter.h"
#include "export/file_dialogs.h"
#include "link/device_context.h"

namespace zorvik {

SavedAnimation saveAnimationFrames(DeviceContext& main, FileDialogs& dialogs,
                                   const std::vector<AniGIF::Frame>& frames, uint32_t transparentColour) {
  SavedAnimation saved;
  if (frames.empty()) return saved;
  AcquisitionHold hold(main.link());
  static constexpr std::string_view kGif = filterList("Graphics Interchange Format (*.gif)\0*.gif\0\0");
  saved.path = SaveFileDialog(dialogs, main.settings(), kGif, "gif", "Animations");
  if (saved.path.empty()) {
    hold.keepStopped();
    return saved;
  }
  AniGIF().SaveAnimGIF(frames, saved.path, transparentColour);
  hold.release();
  saved.view =
      main.messages().show(BoxKind::QuestBox, main.identity().InstanceTitle,
                           "Animated GIF saved.\r\nDo you want view it?", "ViewAnimGIF") == kAnswerYes;
  return saved;
}

}  // namespace zorvik
