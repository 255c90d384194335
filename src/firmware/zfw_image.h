#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zorvik {

// A firmware image: the head's fields, found by their labels, and the body cut into sectors.
struct ZfwImage {
  std::string target;   // 4 characters after "Target: "
  std::string version;  // 4 after "Version: ", a point as its second character
  std::string date;     // 8 after "Date: "
  std::string body;     // everything after "FW:"
  int32_t SectorCount = 0;
  int32_t SectorSize = 0;
};

// Sectors are the body's length divided by its count of 512-byte sectors, so each is 512 to 1023 bytes;
// the instrument takes at most 64 of them. An image file is refused above 64 sectors of 1024 bytes,
// which leaves the head far more room than its labels need.
constexpr size_t kZfwMaxSectors = 64;
constexpr size_t kZfwMaxBytes = kZfwMaxSectors * 1024;

// Nothing when a label is missing, the version has no point as its second character, or the body is
// shorter than a sector or does not divide into equal sectors.
std::optional<ZfwImage> parseZfw(std::string_view bytes);

// The instrument's answer to "F": model, hardware revision, serial number and loader version, four
// characters each (missing characters are blank).
struct DeviceIdentityFields {
  std::string model, hwRev, serial, loader;
};
DeviceIdentityFields parseDeviceIdentity(std::string_view value);

// The image is for this instrument: the target is its model and the version's first three characters
// are its hardware revision's.
bool firmwareCompatible(const ZfwImage& image, const DeviceIdentityFields& device);

}  // namespace zorvik
