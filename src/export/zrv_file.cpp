#include "export/zrv_file.h"

#include "core/fault.h"

namespace zorvik {

bool hasZrvMagic(std::string_view bytes) {
  return bytes.substr(0, kZrvMagic.size()) == kZrvMagic;
}

std::optional<ZrvContents> parseZrv(std::string_view bytes) {
  if (!hasZrvMagic(bytes)) return std::nullopt;
  ZrvContents out;
  if (bytes.size() <= kZrvMagic.size()) return out;
  size_t extra = static_cast<unsigned char>(bytes[kZrvMagic.size()]);
  size_t start = kZrvMagic.size() + 1;
  if (extra >= 1 && start < bytes.size()) out.samplesPerDiv = static_cast<unsigned char>(bytes[start]);
  if (start + extra < bytes.size()) out.packet = std::string(bytes.substr(start + extra));
  return out;
}

std::string makeZrv(std::string_view packet, int samplesPerDiv) {
  if (samplesPerDiv < 0 || samplesPerDiv > 255)
    throw Fault("samples per division " + std::to_string(samplesPerDiv) + " do not fit a packet file");
  std::string out(kZrvMagic);
  out.reserve(kZrvMagic.size() + 2 + packet.size());
  out += static_cast<char>(1);
  out += static_cast<char>(static_cast<unsigned char>(samplesPerDiv));
  out += packet;
  return out;
}

}  // namespace zorvik
