#pragma once
#include <string>

class QImage;

namespace zorvik {

// A baseline JFIF file of the picture: all three components sampled 1 x 1, the quality given, and the
// comment in a COM marker. Written through a temporary file and renamed, so that a failure leaves any
// earlier file as it was. Fault on failure.
void writeJpeg(const QImage& image, const std::string& path, const std::string& comment, int quality);

}  // namespace zorvik
