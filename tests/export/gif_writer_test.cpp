#include "export/gif_writer.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QImageReader>
#include <cmath>

#include "config/config_test_util.h"

using namespace zorvik;
using zorvik::test::readFile;
using zorvik::test::TempDir;

namespace {
// A display as the program draws it: black, an olive grid, a green trace.
QImage display(int phase = 0) {
  QImage image(341, 277, QImage::Format_RGB32);
  image.fill(Qt::black);
  for (int x = 10; x <= 330; x += 32)
    for (int y = 10; y <= 266; ++y) image.setPixel(x, y, qRgb(128, 128, 0));
  for (int x = 10; x <= 330; ++x)
    image.setPixel(x, 138 + static_cast<int>(std::lround(80 * std::sin((x + phase) / 25.0))),
                   qRgb(0, 255, 0));
  return image;
}
}  // namespace

TEST(GifWriter, APictureReadsBackPixelForPixel) {
  TempDir dir;
  const std::string path = dir.file("d.gif");
  AniGIF().SaveGIF(display(), path, false, AniGIF::kNoTransparent);
  const std::string bytes = readFile(path);
  EXPECT_EQ(bytes.substr(0, 6), "GIF87a");
  EXPECT_EQ(static_cast<unsigned char>(bytes[6]), 341 & 0xFF);
  EXPECT_EQ(static_cast<unsigned char>(bytes[7]), 341 >> 8);
  EXPECT_EQ(static_cast<unsigned char>(bytes[10]), 230);  // few colours: a palette of 128
  EXPECT_EQ(bytes.back(), ';');
  const QImage back = QImage(QString::fromStdString(path)).convertToFormat(QImage::Format_RGB32);
  ASSERT_EQ(back.size(), QSize(341, 277));
  EXPECT_EQ(back, display());
}

TEST(GifWriter, TransparencyAndAnimation) {
  TempDir dir;
  AniGIF().SaveGIF(display(), dir.file("t.gif"), true, 0);  // black, a colour of the cube, is transparent
  const std::string t = readFile(dir.file("t.gif"));
  EXPECT_EQ(t.substr(0, 6), "GIF89a");
  const size_t gce = t.find("\x21\xF9\x04");
  ASSERT_NE(gce, std::string::npos);
  EXPECT_EQ(t[gce + 3], 9);  // the transparent flag
  EXPECT_EQ(t[gce + 6], 0);  // index 0: black

  std::vector<AniGIF::Frame> frames;
  for (int i = 0; i < 3; ++i) frames.push_back({display(i * 7), 250});
  AniGIF().SaveAnimGIF(frames, dir.file("a.gif"), AniGIF::kNoTransparent);
  const std::string a = readFile(dir.file("a.gif"));
  EXPECT_NE(a.find("NETSCAPE2.0"), std::string::npos);
  EXPECT_NE(a.find(std::string("\x21\xF9\x04\x08\x19\x00", 6)), std::string::npos);  // 250 ms: 25 hundredths
  QImageReader reader(QString::fromStdString(dir.file("a.gif")));
  EXPECT_EQ(reader.imageCount(), 3);
  QImage first, second;
  ASSERT_TRUE(reader.read(&first));
  ASSERT_TRUE(reader.read(&second));
  EXPECT_EQ(first.convertToFormat(QImage::Format_RGB32), display(0));
  EXPECT_EQ(second.convertToFormat(QImage::Format_RGB32), display(7));
}
