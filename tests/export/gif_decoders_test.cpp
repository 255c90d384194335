// GIF files read back by decoders this program does not contain: Qt's reader and giflib.
#include <gif_lib.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QImageReader>
#include <optional>
#include <random>
#include <set>
#include <vector>

#include "config/config_test_util.h"
#include "export/gif_writer.h"

using namespace zorvik;
using zorvik::test::TempDir;

namespace {

uint32_t colourRef(QRgb c) {
  return static_cast<uint32_t>(qRed(c) | (qGreen(c) << 8) | (qBlue(c) << 16));
}

// `n` colours that read back exactly: colours off the cube, each in a six-bit cell of its own (at most 192,
// what the palette takes beyond the cube), then the cube's own levels, which are exact even when the
// palette is full.
std::vector<QRgb> colours(int n, std::mt19937& rng) {
  std::vector<QRgb> out;
  const int offCube = n > 192 ? 192 : n - n / 4;
  std::set<int> cells;
  std::uniform_int_distribution<int> level(1, 63);
  while (static_cast<int>(out.size()) < offCube) {
    const int r = level(rng), g = level(rng), b = level(rng);
    if (!cells.insert((b << 12) | (g << 6) | r).second) continue;
    out.push_back(qRgb(r * 4, g * 4, b * 4));
  }
  for (int i = 0; static_cast<int>(out.size()) < n; ++i)
    out.push_back(qRgb((i & 3) * 85, ((i >> 2) & 3) * 85, ((i >> 4) & 3) * 85));
  return out;
}

// Noise of `n` colours, with runs so that the table also meets long texts. The first pixels show the
// colours in their order, so that the palette takes those off the cube first.
QImage noise(int width, int height, int n, std::mt19937& rng) {
  const std::vector<QRgb> palette = colours(n, rng);
  std::uniform_int_distribution<int> pick(0, n - 1), run(0, 7);
  QImage image(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    QRgb c = palette[static_cast<size_t>(pick(rng))];
    for (int x = 0; x < width; ++x) {
      if (run(rng) < 5) c = palette[static_cast<size_t>(pick(rng))];
      const int k = y * width + x;
      image.setPixel(x, y, k < n ? palette[static_cast<size_t>(k)] : c);
    }
  }
  return image;
}

// Every frame as giflib decodes it, each pixel its palette colour; nothing when giflib refuses the file.
struct GiflibFrame {
  QImage picture;
  int transparentIndex = NO_TRANSPARENT_COLOR;
  int delay = 0;
};
std::optional<std::vector<GiflibFrame>> readWithGiflib(const std::string& path) {
  int error = 0;
  GifFileType* gif = DGifOpenFileName(path.c_str(), &error);
  if (!gif) return std::nullopt;
  std::optional<std::vector<GiflibFrame>> frames;
  if (DGifSlurp(gif) == GIF_OK && gif->SColorMap) {
    frames.emplace();
    for (int i = 0; i < gif->ImageCount; ++i) {
      const SavedImage& s = gif->SavedImages[i];
      GiflibFrame f;
      GraphicsControlBlock gcb{};
      if (DGifSavedExtensionToGCB(gif, i, &gcb) == GIF_OK) {
        f.transparentIndex = gcb.TransparentColor;
        f.delay = gcb.DelayTime;
      }
      f.picture = QImage(s.ImageDesc.Width, s.ImageDesc.Height, QImage::Format_RGB32);
      for (int y = 0; y < s.ImageDesc.Height; ++y)
        for (int x = 0; x < s.ImageDesc.Width; ++x) {
          const int index = s.RasterBits[y * s.ImageDesc.Width + x];
          const GifColorType c = gif->SColorMap->Colors[index];
          // The transparent index shows as a colour no picture here holds.
          f.picture.setPixel(x, y,
                             index == f.transparentIndex ? qRgb(1, 2, 3) : qRgb(c.Red, c.Green, c.Blue));
        }
      frames->push_back(std::move(f));
    }
  }
  DGifCloseFile(gif, &error);
  return frames;
}

// The picture as a reader should show it: the transparent colour (when there is one) as qRgb(1, 2, 3).
QImage withTransparency(const QImage& picture, std::optional<QRgb> transparent) {
  QImage out = picture.copy();
  if (transparent)
    for (int y = 0; y < out.height(); ++y)
      for (int x = 0; x < out.width(); ++x)
        if (out.pixel(x, y) == *transparent) out.setPixel(x, y, qRgb(1, 2, 3));
  return out;
}

// Qt's reading with the transparent pixels (alpha 0) marked the same way.
QImage readWithQt(QImageReader& reader) {
  const QImage read = reader.read().convertToFormat(QImage::Format_ARGB32);
  QImage out(read.size(), QImage::Format_RGB32);
  for (int y = 0; y < read.height(); ++y)
    for (int x = 0; x < read.width(); ++x) {
      const QRgb c = read.pixel(x, y);
      out.setPixel(x, y, qAlpha(c) == 0 ? qRgb(1, 2, 3) : (c | 0xFF000000u));
    }
  return out;
}

}  // namespace

// Wide rows of many colours fill the table in the middle of a row; each reset must leave the decoders
// knowing every code that follows.
TEST(GifDecoders, RandomPicturesReadBackExactlyInQtAndGiflib) {
  std::mt19937 rng(20261123);
  TempDir dir;
  const int widths[] = {1, 2, 255, 341, 501, 1024, 1705};
  const int counts[] = {2, 3, 8, 64, 100, 192, 256};
  int n = 0;
  for (int width : widths)
    for (int colourCount : counts)
      for (bool transparent : {false, true}) {
        SCOPED_TRACE(testing::Message() << width << " wide, " << colourCount << " colours"
                                        << (transparent ? ", transparent" : ""));
        const QImage picture = noise(width, 9, colourCount, rng);
        const std::optional<QRgb> clear =
            transparent ? std::optional<QRgb>(picture.pixel(0, 0) | 0xFF000000u) : std::nullopt;
        const std::string path = dir.file(std::to_string(++n) + ".gif");
        AniGIF().SaveGIF(picture, path, transparent, clear ? colourRef(*clear) : AniGIF::kNoTransparent);
        const QImage expected = withTransparency(picture, clear);

        QImageReader reader(QString::fromStdString(path));
        EXPECT_EQ(readWithQt(reader), expected);
        const auto frames = readWithGiflib(path);
        ASSERT_TRUE(frames.has_value());
        ASSERT_EQ(frames->size(), 1u);
        EXPECT_EQ((*frames)[0].picture, expected);
      }
}

TEST(GifDecoders, AnimationFramesReadBackInGiflib) {
  std::mt19937 rng(7);
  TempDir dir;
  const QImage first = noise(1705, 5, 200, rng);
  std::vector<AniGIF::Frame> frames{{first, 125}, {first.mirrored(true, false), 40}, {first.mirrored(), 0}};
  AniGIF().SaveAnimGIF(frames, dir.file("a.gif"), AniGIF::kNoTransparent);
  const auto read = readWithGiflib(dir.file("a.gif"));
  ASSERT_TRUE(read.has_value());
  ASSERT_EQ(read->size(), 3u);
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ((*read)[i].picture, frames[i].picture.convertToFormat(QImage::Format_RGB32)) << "frame " << i;
    EXPECT_EQ((*read)[i].delay, frames[i].delayMs / 10);
  }
}
