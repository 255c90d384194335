#include "export/gif_writer.h"

#include <cstdio>
#include <unordered_map>

#include "core/fault.h"
#include "core/file_write.h"

namespace zorvik {

namespace {

int mapIndex(int r6, int g6, int b6) {
  return (b6 << 12) | (g6 << 6) | r6;
}
uint32_t bgr(int r, int g, int b) {
  return static_cast<uint32_t>(r | (g << 8) | (b << 16));
}

void put16(std::string& out, int v) {
  out += static_cast<char>(v & 0xFF);
  out += static_cast<char>((v >> 8) & 0xFF);
}

std::string digits(int index) {
  char buf[4];
  std::snprintf(buf, sizeof buf, "%03d", index);
  return buf;
}

void writeFile(const std::string& path, const std::string& bytes) {
  writeFileReplacing(path, bytes);
}

}  // namespace

void AniGIF::buildPalette(const QImage& first, uint32_t transparentColor) {
  palette_.assign(64, {0, 0, 0});
  colorMap_.assign(64 * 64 * 64, 0);
  hasTransparent_ = false;
  transparentIndex_ = 0;
  for (int b = 0; b < 4; ++b)
    for (int g = 0; g < 4; ++g)
      for (int r = 0; r < 4; ++r) {
        const int index = b * 16 + g * 4 + r;
        palette_[static_cast<size_t>(index)] = {static_cast<uint8_t>(r * 85), static_cast<uint8_t>(g * 85),
                                                static_cast<uint8_t>(b * 85)};
        for (int bb = b * 16; bb < b * 16 + 16; ++bb)
          for (int gg = g * 16; gg < g * 16 + 16; ++gg)
            for (int rr = r * 16; rr < r * 16 + 16; ++rr)
              colorMap_[static_cast<size_t>(mapIndex(rr, gg, bb))] = static_cast<uint8_t>(index);
        if (bgr(r * 85, g * 85, b * 85) == transparentColor) {
          transparentIndex_ = index;
          hasTransparent_ = true;
        }
      }
  std::vector<uint8_t> seen(64 * 64 * 64, 0);
  const QImage px = first.convertToFormat(QImage::Format_RGB32);
  for (int y = 0; y < px.height(); ++y) {
    const QRgb* line = reinterpret_cast<const QRgb*>(px.constScanLine(y));
    for (int x = 0; x < px.width(); ++x) {
      const int r = qRed(line[x]), g = qGreen(line[x]), b = qBlue(line[x]);
      const int cell = mapIndex(r >> 2, g >> 2, b >> 2);
      if (seen[static_cast<size_t>(cell)]) continue;
      seen[static_cast<size_t>(cell)] = 1;
      auto onCube = [](int v) { return (v >> 2) * 4 == (v >> 6) * 85; };
      if (onCube(r) && onCube(g) && onCube(b)) continue;
      if (palette_.size() > 255) continue;  // beyond the palette: the cube's level stands
      colorMap_[static_cast<size_t>(cell)] = static_cast<uint8_t>(palette_.size());
      if (bgr(r, g, b) == transparentColor) {
        transparentIndex_ = static_cast<int>(palette_.size());
        hasTransparent_ = true;
      }
      palette_.push_back({static_cast<uint8_t>(r), static_cast<uint8_t>(g), static_cast<uint8_t>(b)});
    }
  }
}

void AniGIF::header(std::string& out, const char* version, int width, int height) const {
  out += version;
  put16(out, width);
  put16(out, height);
  const bool small = palette_.size() <= 128;
  out += static_cast<char>(small ? 230 : 247);
  out += '\0';
  out += '\0';
  const size_t entries = small ? 128 : 256;
  for (size_t i = 0; i < entries; ++i)
    for (int c = 0; c < 3; ++c)
      out += static_cast<char>(i < palette_.size() ? palette_[i][static_cast<size_t>(c)] : 0);
}

// Codes are packed least significant bit first into blocks of 255 bytes behind their count.
void AniGIF::putCode(std::string& out, int code) {
  for (int bit = 0; bit < 9; ++bit) {
    if (mask_ == 256) {
      if (block_[0] > 254) {
        out.append(reinterpret_cast<const char*>(block_.data()), 256);
        block_[0] = 1;
      } else {
        ++block_[0];
      }
      block_[block_[0]] = 0;
      mask_ = 1;
    }
    if (code & (1 << bit)) block_[block_[0]] |= static_cast<uint8_t>(mask_);
    mask_ <<= 1;
  }
}

void AniGIF::flush(std::string& out) {
  out.append(reinterpret_cast<const char*>(block_.data()), block_[0] + 1u);
  block_[0] = 0;
  mask_ = 256;
}

void AniGIF::image(std::string& out, const QImage& picture) {
  const QImage px = picture.convertToFormat(QImage::Format_RGB32);
  out += ',';
  put16(out, 0);
  put16(out, 0);
  put16(out, px.width());
  put16(out, px.height());
  out += '\0';
  out += static_cast<char>(8);
  block_[0] = 0;
  mask_ = 256;
  std::unordered_map<std::string, int> table;
  for (int y = 0; y < px.height(); ++y) {
    const QRgb* line = reinterpret_cast<const QRgb*>(px.constScanLine(y));
    auto index = [&](int x) {
      return colorMap_[static_cast<size_t>(
          mapIndex(qRed(line[x]) >> 2, qGreen(line[x]) >> 2, qBlue(line[x]) >> 2))];
    };
    table.clear();
    putCode(out, 256);
    std::string prefix;
    int current = px.width() > 0 ? index(0) : 0;
    for (int x = 1; x < px.width(); ++x) {
      const std::string d = digits(index(x));
      std::string text = prefix + d;
      if (auto it = table.find(text); it != table.end()) {
        current = it->second;
        prefix = std::move(text);
        continue;
      }
      const int count = static_cast<int>(table.size());
      // A full table: the pending code, still one of the old table, goes before the clear code, and the
      // row goes on as from its start with this pixel. A decoder has then just made its entry 510 and
      // reads every later code in 9 bits from its emptied table.
      if (count == 253) {
        putCode(out, current);
        putCode(out, 256);
        table.clear();
      } else {
        table.emplace(std::move(text), 258 + count);
        putCode(out, current);
      }
      prefix = d;
      current = index(x);
    }
    putCode(out, current);
  }
  if (++nextCode_ > 511) {
    nextCode_ = 258;
    putCode(out, 256);
  }
  putCode(out, 257);
  flush(out);
}

void AniGIF::SaveGIF(const QImage& picture, const std::string& path, bool transparent,
                     uint32_t transparentColor) {
  buildPalette(picture, transparentColor);
  std::string out;
  header(out, transparent ? "GIF89a" : "GIF87a", picture.width(), picture.height());
  if (transparent) {
    out += std::string{'\x21',
                       '\xF9',
                       '\x04',
                       static_cast<char>(hasTransparent_ ? 9 : 8),
                       '\0',
                       '\0',
                       static_cast<char>(transparentIndex_),
                       '\0'};
  }
  image(out, picture);
  out += '\0';
  out += ';';
  writeFile(path, out);
}

void AniGIF::SaveAnimGIF(const std::vector<Frame>& frames, const std::string& path,
                         uint32_t transparentColor) {
  if (frames.empty()) throw Fault("No frames to write to " + path);
  buildPalette(frames[0].picture, transparentColor);
  std::string out;
  header(out, "GIF89a", frames[0].picture.width(), frames[0].picture.height());
  out += std::string("\x21\xFF\x0BNETSCAPE2.0\x03\x01", 16);
  out += std::string(3, '\0');
  for (const Frame& f : frames) {
    out += std::string{'\x21', '\xF9', '\x04', static_cast<char>(hasTransparent_ ? 9 : 8)};
    put16(out, f.delayMs / 10);
    out += static_cast<char>(transparentIndex_);
    out += '\0';
    image(out, f.picture);
    out += '\0';
  }
  out += ';';
  writeFile(path, out);
}

}  // namespace zorvik
