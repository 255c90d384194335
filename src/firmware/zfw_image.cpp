#include "firmware/zfw_image.h"

namespace zorvik {

namespace {
// The field of `length` characters after the first occurrence of the label; nothing when it is missing.
std::optional<std::string> field(std::string_view bytes, std::string_view label, size_t length) {
  const size_t at = bytes.find(label);
  if (at == std::string_view::npos) return std::nullopt;
  return std::string(bytes.substr(at + label.size(), length));
}

std::string four(std::string_view s, size_t from) {
  std::string out = from < s.size() ? std::string(s.substr(from, 4)) : std::string();
  out.resize(4, ' ');
  return out;
}
}  // namespace

std::optional<ZfwImage> parseZfw(std::string_view bytes) {
  ZfwImage image;
  auto target = field(bytes, "Target: ", 4);
  auto version = field(bytes, "Version: ", 4);
  auto date = field(bytes, "Date: ", 8);
  const size_t fw = bytes.find("FW:");
  if (!target || !version || !date || fw == std::string_view::npos) return std::nullopt;
  if (version->size() < 2 || (*version)[1] != '.') return std::nullopt;
  image.target = *target;
  image.version = *version;
  image.date = *date;
  image.body = std::string(bytes.substr(fw + 3));
  const int64_t length = static_cast<int64_t>(image.body.size());
  // A body shorter than a sector has no sectors (the old window divided by zero here).
  if (length < 512) return std::nullopt;
  image.SectorCount = static_cast<int32_t>(length / 512);
  image.SectorSize = static_cast<int32_t>(length / image.SectorCount);
  if (length % image.SectorSize != 0) return std::nullopt;
  return image;
}

DeviceIdentityFields parseDeviceIdentity(std::string_view value) {
  return {four(value, 0), four(value, 4), four(value, 8), four(value, 12)};
}

bool firmwareCompatible(const ZfwImage& image, const DeviceIdentityFields& device) {
  return image.target == device.model && image.version.substr(0, 3) == device.hwRev.substr(0, 3);
}

}  // namespace zorvik
