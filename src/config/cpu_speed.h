#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace zorvik {

// The speed assumed when the processor's can't be read; parts of the display compare with 300 and 600.
constexpr std::int16_t kDefaultCpuMHz = 200;

// "cpu MHz" of the first processor listed in a /proc/cpuinfo text, rounded and capped to 16 bits;
// kDefaultCpuMHz when there is none or it makes no positive number.
std::int16_t parseCpuMHz(std::string_view cpuinfo);

// The same from the file (kDefaultCpuMHz when it can't be read).
std::int16_t CpuMHz(const std::string& cpuinfoPath = "/proc/cpuinfo");

}  // namespace zorvik
