#include <gtest/gtest.h>
#include <unistd.h>

#include <QImage>
#include <filesystem>

#include "config/config_test_util.h"
#include "config/settings.h"
#include "core/fault.h"
#include "core/recording_sink.h"
#include "export/display_pictures.h"
#include "export/jpeg_writer.h"
#include "export/scripted_file_dialogs.h"
#include "link/fake_obex.h"
#include "session/main_controller.h"

using namespace zorvik;
using zorvik::test::readFile;
using zorvik::test::TempDir;
namespace fs = std::filesystem;

namespace {

QImage picture() {
  QImage image(341, 277, QImage::Format_RGB32);
  image.fill(Qt::black);
  for (int x = 0; x < 341; ++x)
    image.setPixel(x, 138 + static_cast<int>(60 * std::sin(x / 20.0)), qRgb(0, 255, 0));
  return image;
}

struct SerialLink : test::FakeObex {
  bool serial = true;
  int resumes = 0;
  void GetSerialActive(bool& a) override { a = serial; }
  void StopRepeat(bool resume) override {
    serial = resume;
    resumes += resume;
  }
};

struct PicturesTest : ::testing::Test {
  PicturesTest() : main(settings, sink, view), pictures(main, dialogs) { main.attachLink(&link); }
  ~PicturesTest() override { main.attachLink(nullptr); }
  void save(PictureTarget t, bool autoName = false) {
    pictures.SaveToBMPGIFJPG(
        t, picture, [this](const QImage& i) { clipboard = i; }, autoName, 4711);
  }
  SerialLink link;
  RecordingSink sink;
  MemorySettings settings;
  MainView view;
  MainController main;
  ScriptedFileDialogs dialogs;
  DisplayPictures pictures;
  TempDir dir;
  QImage clipboard;
};

}  // namespace

TEST(JpegWriter, BaselineJfifWithTheCommentAndFullSampling) {
  TempDir dir;
  const std::string path = dir.file("p.jpg");
  writeJpeg(picture(), path, kJpegComment, kJpegQuality);
  const std::string bytes = readFile(path);
  ASSERT_GT(bytes.size(), 100u);
  EXPECT_EQ(bytes.substr(0, 2), "\xFF\xD8");
  EXPECT_NE(bytes.find(std::string("\xFF\xFE") + '\0' +
                       static_cast<char>(2 + std::string(kJpegComment).size()) + kJpegComment),
            std::string::npos);
  // The baseline frame: three components, each sampled 1 x 1.
  const size_t sof = bytes.find("\xFF\xC0");
  ASSERT_NE(sof, std::string::npos);
  EXPECT_EQ(bytes[sof + 9], 3);
  for (int c = 0; c < 3; ++c) EXPECT_EQ(static_cast<unsigned char>(bytes[sof + 11 + 3 * c]), 0x11) << c;
  const QImage back(QString::fromStdString(path));
  EXPECT_EQ(back.size(), QSize(341, 277));
  EXPECT_FALSE(fs::exists(path + ".tmp"));

  EXPECT_THROW(writeJpeg(picture(), dir.file("no/such/p.jpg"), "", 80), Fault);
}

TEST_F(PicturesTest, FilesTheirMessagesAndTheHeldAcquisition) {
  dialogs.answers = {dir.file("d")};
  save(PictureTarget::Bmp);
  const QImage bmp(QString::fromStdString(dir.file("d.bmp")));
  EXPECT_EQ(bmp.size(), QSize(341, 277));  // exactly the display
  ASSERT_EQ(sink.messages.size(), 1u);
  EXPECT_EQ(sink.messages[0].text, "Display saved:\r\n" + dir.file("d.bmp"));
  EXPECT_EQ(sink.messages[0].key, "DisplayBMPwrited");
  EXPECT_EQ(dialogs.requests.at(0).title, "File Save: Zorvik Images");
  EXPECT_EQ(link.resumes, 1);

  // A cancelled dialog: nothing written, nothing said, and the acquisition stays stopped.
  save(PictureTarget::Jpeg);
  EXPECT_EQ(sink.messages.size(), 1u);
  EXPECT_FALSE(link.serial);

  save(PictureTarget::Clipboard);
  EXPECT_EQ(clipboard.size(), QSize(341, 277));
  EXPECT_EQ(sink.messages.back().key, "Display2clipboard");

  // Without a dialog: the tick as the name, in the working directory.
  const fs::path previous = fs::current_path();
  fs::current_path(dir.file("."));
  save(PictureTarget::Jpeg, true);
  save(PictureTarget::Wallpaper);
  fs::current_path(previous);
  EXPECT_TRUE(fs::exists(dir.file("4711.jpg")));
  EXPECT_TRUE(fs::exists(dir.file("wallpaper.bmp")));
  EXPECT_EQ(autoPictureName(12, "bmp"), "12.bmp");

  // A memo window's picture: its own texts, and the clipboard filled without a word.
  const size_t said = sink.messages.size();
  dialogs.answers = {dir.file("memo.jpg")};
  pictures.savePicture(
      PictureTarget::Jpeg, picture(), [](const QImage&) {}, kMemoPictureTexts);
  ASSERT_EQ(sink.messages.size(), said + 1);
  EXPECT_EQ(sink.messages.back().text, "Picture saved:\r\n" + dir.file("memo.jpg"));
  EXPECT_EQ(sink.messages.back().key, "MemoPictWrited");
  EXPECT_NE(readFile(dir.file("memo.jpg")).find("Zorvik screen capture"), std::string::npos);
  pictures.savePicture(
      PictureTarget::Clipboard, picture(), [](const QImage&) {}, kMemoPictureTexts);
  EXPECT_EQ(sink.messages.size(), said + 1);
}
