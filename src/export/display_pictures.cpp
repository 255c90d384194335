#include "export/display_pictures.h"

#include <QBuffer>
#include <QPainter>

#include "core/fault.h"
#include "core/file_write.h"
#include "display/label_painter.h"
#include "display/scope_display.h"
#include "export/acquisition_hold.h"
#include "export/dialog_filter.h"
#include "export/file_dialogs.h"
#include "export/gif_writer.h"
#include "export/jpeg_writer.h"
#include "link/device_context.h"

namespace zorvik {

namespace {

constexpr std::string_view kBmpFilter = filterList("Windows or OS/2 bitmap (*.bmp)\0*.bmp\0\0");
constexpr std::string_view kJpegFilter = filterList("JPEG - JFIF Compliant (*.jpg)\0*.jpg\0\0");
constexpr std::string_view kGifFilter = filterList("Graphics Interchange Format (*.gif)\0*.gif\0\0");

// A BMP encoded in memory and written by the shared writer, so that a failure leaves an earlier picture
// whole.
void writeBmp(const QImage& picture, const std::string& path) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!picture.save(&buffer, "BMP")) throw Fault("Cannot encode the picture " + path);
  writeFileReplacing(path, std::string_view(bytes.constData(), static_cast<size_t>(bytes.size())));
}

}  // namespace

void writePictureFile(PictureTarget target, const QImage& picture, const std::string& path,
                      const char* jpegComment, bool gifTransparent, uint32_t transparentColor) {
  switch (target) {
    case PictureTarget::Bmp:
      return writeBmp(picture, path);
    case PictureTarget::Gif:
      return AniGIF().SaveGIF(picture, path, gifTransparent,
                              gifTransparent ? transparentColor : AniGIF::kNoTransparent);
    case PictureTarget::Jpeg:
      return writeJpeg(picture, path, jpegComment, kJpegQuality);
    case PictureTarget::Clipboard:
    case PictureTarget::Wallpaper:
      break;
  }
  throw Fault("No picture file for that target: " + path);
}

void writeWallpaper(const QImage& picture) {
  writeBmp(picture, kWallpaperFile);
}

std::string autoPictureName(uint32_t tickMs, const char* extension) {
  return std::to_string(tickMs) + "." + extension;
}

QImage displayPicture(const ScopeDisplay& display, const DisplayLabels& labels, bool withLabels) {
  // At the zoom's size whatever the screen draws at.
  QImage picture = display.canvas().zoomImage();
  if (withLabels) {
    QPainter p(&picture);
    paintLabels(p, labels, display.settings(), display.canvas().zoomGeometry());
  }
  return picture;
}

void DisplayPictures::SaveToBMPGIFJPG(PictureTarget target, const std::function<QImage()>& picture,
                                      const std::function<void(const QImage&)>& toClipboard, bool autoName,
                                      uint32_t tickMs) {
  save(target, picture, toClipboard, kDisplayPictureTexts, autoName, tickMs);
}

void DisplayPictures::savePicture(PictureTarget target, const QImage& picture,
                                  const std::function<void(const QImage&)>& toClipboard,
                                  const PictureTexts& texts) {
  save(
      target, [&picture] { return picture; }, toClipboard, texts, false, 0);
}

void DisplayPictures::save(PictureTarget target, const std::function<QImage()>& picture,
                           const std::function<void(const QImage&)>& toClipboard, const PictureTexts& texts,
                           bool autoName, uint32_t tickMs) {
  AcquisitionHold hold(main_.link());
  const std::string& title = main_.identity().InstanceTitle;
  switch (target) {
    case PictureTarget::Bmp:
    case PictureTarget::Gif:
    case PictureTarget::Jpeg: {
      const char* extension = target == PictureTarget::Bmp   ? "bmp"
                              : target == PictureTarget::Gif ? "gif"
                                                             : "jpg";
      const std::string_view filter = target == PictureTarget::Bmp   ? kBmpFilter
                                      : target == PictureTarget::Gif ? kGifFilter
                                                                     : kJpegFilter;
      const std::string path =
          autoName ? autoPictureName(tickMs, extension)
                   : SaveFileDialog(dialogs_, main_.settings(), filter, extension, kPictureCategory);
      if (path.empty()) {
        hold.keepStopped();  // a cancelled dialog ends the command; the user starts again
        return;
      }
      std::string text = std::string(texts.savedText) + "\r\n" + path;
      const char* key = target == PictureTarget::Bmp ? texts.bmpKey : texts.jpgKey;
      const QImage image = picture();
      const uint32_t started = main_.tickMs();
      writePictureFile(target, image, path, texts.jpegComment, gifTransparent_, gifBackground_);
      if (target == PictureTarget::Gif) {
        text += "\r\ntime = " + std::string(" ") + std::to_string(main_.tickMs() - started) + " ms";
        key = texts.gifKey;
      }
      hold.release();
      main_.messages().show(BoxKind::InfoBox, title, text, key);
      return;
    }
    case PictureTarget::Clipboard:
      toClipboard(picture());
      hold.release();
      if (texts.clipboardText)
        main_.messages().show(BoxKind::InfoBox, title, texts.clipboardText, texts.clipboardKey);
      return;
    case PictureTarget::Wallpaper:
      // The desktop's wallpaper belongs to the desktop here: the picture is left in the file for it.
      writeWallpaper(picture());
      return;
  }
}

}  // namespace zorvik
