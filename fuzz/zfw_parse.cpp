// Arbitrary bytes as a firmware image file and as the instrument's identity.
#include <cstddef>
#include <cstdint>
#include <string>

#include "firmware/zfw_image.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const auto image = zorvik::parseZfw(bytes);
  const auto device = zorvik::parseDeviceIdentity(bytes);
  if (image) {
    if (image->SectorCount <= 0 || image->SectorSize <= 0 ||
        static_cast<size_t>(image->SectorCount) * static_cast<size_t>(image->SectorSize) !=
            image->body.size())
      __builtin_trap();
    (void)zorvik::firmwareCompatible(*image, device);
  }
  return 0;
}
