#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace zorvik {

// Where an instrument is served: `unix:PATH` (a Unix socket) or `tcp:HOST:PORT`.
struct DeviceAddress {
  enum class Kind { Unix, Tcp };
  Kind kind = Kind::Unix;
  std::string path;  // Unix: the socket's path as given
  std::string host;  // TCP: a name or an address (IPv6 in brackets: tcp:[::1]:5025)
  uint16_t port = 0;

  // The address as it is written on a command line.
  std::string text() const;
};

// Throws Fault naming what is wrong. `allowAnyPort` admits TCP port 0 (a listener then takes a free one).
DeviceAddress parseDeviceAddress(std::string_view text, bool allowAnyPort = false);

}  // namespace zorvik
