#pragma once
#include <QImage>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zorvik {

// The GIF writer of the pictures and animations: its own palette (a 64-colour cube and the first
// picture's other colours), and a plain LZW of 9-bit codes that starts over on each row.
class AniGIF {
 public:
  static constexpr uint32_t kNoTransparent = 0x1000000;

  // One picture; GIF89a with a transparent colour, GIF87a without. Fault when the file can't be written.
  void SaveGIF(const QImage& picture, const std::string& path, bool transparent, uint32_t transparentColor);

  struct Frame {
    QImage picture;
    int delayMs = 0;
  };
  // Frames that repeat endlessly; the palette is the first frame's.
  void SaveAnimGIF(const std::vector<Frame>& frames, const std::string& path, uint32_t transparentColor);

 private:
  void buildPalette(const QImage& first, uint32_t transparentColor);
  void header(std::string& out, const char* version, int width, int height) const;
  void image(std::string& out, const QImage& picture);
  void putCode(std::string& out, int code);
  void flush(std::string& out);

  std::vector<std::array<uint8_t, 3>> palette_;
  std::vector<uint8_t> colorMap_;
  int transparentIndex_ = 0;
  bool hasTransparent_ = false;
  int nextCode_ = 0;
  int mask_ = 256;
  std::array<uint8_t, 256> block_{};
};

}  // namespace zorvik
