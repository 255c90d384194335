#pragma once
#include <QImage>
#include <cstdint>
#include <functional>
#include <string>

namespace zorvik {

class DeviceContext;
class FileDialogs;
class ScopeDisplay;
struct DisplayLabels;

// The targets of the display's picture, in the order of the menu.
enum class PictureTarget { Bmp = 0, Gif = 1, Jpeg = 2, Clipboard = 3, Wallpaper = 4 };

constexpr const char* kPictureCategory = "Images";
constexpr const char* kJpegComment = "Zorvik oscilloscope screen capture";
constexpr int kJpegQuality = 80;

// What a picture command says and writes: the success text and its keys, and the JPEG comment.
struct PictureTexts {
  const char* savedText;
  const char* bmpKey;
  const char* jpgKey;
  const char* gifKey;
  const char* clipboardText;  // none: the clipboard is filled silently
  const char* clipboardKey;
  const char* jpegComment;
};
constexpr PictureTexts kDisplayPictureTexts{"Display saved:",   "DisplayBMPwrited",     "DisplayJPGwrited",
                                            "DisplayGIFwrited", "Display in clipboard", "Display2clipboard",
                                            kJpegComment};
constexpr PictureTexts kMemoPictureTexts{"Picture saved:",       "MemoPictWrited", "MemoPictWrited",
                                         "MemoPictWrited",       nullptr,          nullptr,
                                         "Zorvik screen capture"};
constexpr const char* kWallpaperFile = "wallpaper.bmp";

// The name of a picture without a dialog: the millisecond tick with the target's extension, so that
// pictures taken in a row get rising names.
std::string autoPictureName(uint32_t tickMs, const char* extension);

// A BMP, GIF or JPEG file of the picture as the picture commands write it: the JPEG with `jpegComment` and
// quality 80; the GIF with its own palette, as GIF89a with `transparentColor` clear when `gifTransparent`.
// Fault when it can't be written; an earlier file of that name then stays as it was.
void writePictureFile(PictureTarget target, const QImage& picture, const std::string& path,
                      const char* jpegComment, bool gifTransparent, uint32_t transparentColor);

// The wallpaper file in the current folder: the desktop takes its wallpaper from there. Fault when it
// can't be written; an earlier file then stays as it was.
void writeWallpaper(const QImage& picture);

// What the display shows: its surface, with the labels over it when asked.
QImage displayPicture(const ScopeDisplay& display, const DisplayLabels& labels, bool withLabels);

// The picture commands of the main window's menu. A running serial acquisition is held around each one;
// a cancelled dialog ends the command and leaves it stopped. Faults of writing go to the caller.
class DisplayPictures {
 public:
  DisplayPictures(DeviceContext& main, FileDialogs& dialogs) : main_(main), dialogs_(dialogs) {}

  // GIF pictures: the display's background becomes transparent when asked.
  void setGifTransparency(bool transparent, uint32_t background) {
    gifTransparent_ = transparent;
    gifBackground_ = background;
  }

  // `picture` is taken once the acquisition is held; the clipboard is the window's to fill.
  void SaveToBMPGIFJPG(PictureTarget target, const std::function<QImage()>& picture,
                       const std::function<void(const QImage&)>& toClipboard, bool autoName, uint32_t tickMs);
  // A picture that stands still (the memo window's): always through the dialog.
  void savePicture(PictureTarget target, const QImage& picture,
                   const std::function<void(const QImage&)>& toClipboard, const PictureTexts& texts);

 private:
  void save(PictureTarget target, const std::function<QImage()>& picture,
            const std::function<void(const QImage&)>& toClipboard, const PictureTexts& texts, bool autoName,
            uint32_t tickMs);

  DeviceContext& main_;
  FileDialogs& dialogs_;
  bool gifTransparent_ = false;
  uint32_t gifBackground_ = 0;
};

}  // namespace zorvik
