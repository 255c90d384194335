#include "config/cpu_speed.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <optional>
#include <sstream>

#include "config/text_number.h"

namespace zorvik {

std::int16_t parseCpuMHz(std::string_view cpuinfo) {
  while (!cpuinfo.empty()) {
    std::size_t end = cpuinfo.find('\n');
    std::string_view line = cpuinfo.substr(0, end);
    cpuinfo = end == std::string_view::npos ? std::string_view() : cpuinfo.substr(end + 1);
    if (line.rfind("cpu MHz", 0) != 0) continue;
    std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) return kDefaultCpuMHz;
    std::optional<double> mhz = parseLeadingNumber(line.substr(colon + 1));
    if (!mhz || !(*mhz >= 0.5)) return kDefaultCpuMHz;
    // A 16-bit global holds it; faster than that is as fast as it gets for every comparison made.
    return static_cast<std::int16_t>(std::min(std::lround(*mhz), 32767L));
  }
  return kDefaultCpuMHz;
}

std::int16_t CpuMHz(const std::string& cpuinfoPath) {
  std::ifstream in(cpuinfoPath);
  if (!in) return kDefaultCpuMHz;
  std::ostringstream s;
  s << in.rdbuf();
  return parseCpuMHz(s.str());
}

}  // namespace zorvik
