#include "link/device_address.h"

#include <charconv>

#include "core/fault.h"

namespace zorvik {

namespace {

[[noreturn]] void bad(std::string_view text, const std::string& why) {
  throw Fault("bad device address \"" + std::string(text) + "\": " + why +
              " (want unix:PATH or tcp:HOST:PORT)");
}

}  // namespace

std::string DeviceAddress::text() const {
  if (kind == Kind::Unix) return "unix:" + path;
  const bool v6 = host.find(':') != std::string::npos;
  return "tcp:" + (v6 ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

DeviceAddress parseDeviceAddress(std::string_view text, bool allowAnyPort) {
  DeviceAddress a;
  if (text.starts_with("unix:")) {
    a.path = text.substr(5);
    if (a.path.empty()) bad(text, "no socket path");
    if (a.path.find('\0') != std::string::npos) bad(text, "a NUL byte in the path");
    return a;
  }
  if (!text.starts_with("tcp:")) bad(text, "unknown kind");
  a.kind = DeviceAddress::Kind::Tcp;
  std::string_view rest = text.substr(4);
  const size_t colon = rest.rfind(':');
  if (colon == std::string_view::npos) bad(text, "no port");
  std::string_view host = rest.substr(0, colon);
  const std::string_view port = rest.substr(colon + 1);
  if (host.size() >= 2 && host.front() == '[' && host.back() == ']') {
    host = host.substr(1, host.size() - 2);
  } else if (host.find(':') != std::string_view::npos) {
    bad(text, "an IPv6 address goes in brackets");
  }
  if (host.empty()) bad(text, "no host");
  for (char c : host)
    if (static_cast<unsigned char>(c) <= ' ') bad(text, "a space or control character in the host");
  unsigned value = 0;
  const auto [end, ec] = std::from_chars(port.data(), port.data() + port.size(), value);
  if (port.empty() || ec != std::errc() || end != port.data() + port.size() || value > 65535 ||
      (value == 0 && !allowAnyPort))
    bad(text, "the port is not a number from 1 to 65535");
  a.host = host;
  a.port = static_cast<uint16_t>(value);
  return a;
}

}  // namespace zorvik
