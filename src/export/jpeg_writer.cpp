#include "export/jpeg_writer.h"

#include <QImage>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <vector>

// libjpeg's header needs FILE and size_t before it.
#include <jpeglib.h>

#include "core/fault.h"
#include "core/file_write.h"

namespace zorvik {

namespace {

struct ErrorManager {
  jpeg_error_mgr base;
  std::jmp_buf jump;
  char message[JMSG_LENGTH_MAX];
};

void onError(j_common_ptr info) {
  auto* e = reinterpret_cast<ErrorManager*>(info->err);
  (*info->err->format_message)(info, e->message);
  std::longjmp(e->jump, 1);
}

// The encoder proper; false with the library's message on failure. No C++ object with a destructor lives
// across the jump.
bool encode(unsigned char** out, unsigned long* size, const QImage& rgb, const std::string& comment,
            int quality, ErrorManager& err) {
  jpeg_compress_struct c;
  c.err = jpeg_std_error(&err.base);
  err.base.error_exit = onError;
  if (setjmp(err.jump)) {
    jpeg_destroy_compress(&c);
    return false;
  }
  jpeg_create_compress(&c);
  jpeg_mem_dest(&c, out, size);
  c.image_width = static_cast<JDIMENSION>(rgb.width());
  c.image_height = static_cast<JDIMENSION>(rgb.height());
  c.input_components = 3;
  c.in_color_space = JCS_RGB;
  jpeg_set_defaults(&c);
  jpeg_set_quality(&c, quality, TRUE);
  for (int i = 0; i < c.num_components; ++i) {
    c.comp_info[i].h_samp_factor = 1;
    c.comp_info[i].v_samp_factor = 1;
  }
  jpeg_start_compress(&c, TRUE);
  jpeg_write_marker(&c, JPEG_COM, reinterpret_cast<const JOCTET*>(comment.data()),
                    static_cast<unsigned>(comment.size()));
  while (c.next_scanline < c.image_height) {
    JSAMPROW row = const_cast<JSAMPROW>(rgb.constScanLine(static_cast<int>(c.next_scanline)));
    jpeg_write_scanlines(&c, &row, 1);
  }
  jpeg_finish_compress(&c);
  jpeg_destroy_compress(&c);
  return true;
}

}  // namespace

void writeJpeg(const QImage& image, const std::string& path, const std::string& comment, int quality) {
  if (image.isNull() || image.width() < 1 || image.height() < 1)
    throw Fault("No picture to write to " + path);
  const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
  // Encoded in memory, then written as one file by the shared writer.
  unsigned char* encoded = nullptr;
  unsigned long size = 0;
  ErrorManager err{};
  const bool ok = encode(&encoded, &size, rgb, comment, quality, err);
  std::string bytes;
  if (ok && encoded) bytes.assign(reinterpret_cast<const char*>(encoded), size);
  std::free(encoded);
  if (!ok) throw Fault("Cannot write the picture " + path + ": " + std::string(err.message));
  writeFileReplacing(path, bytes);
}

}  // namespace zorvik
