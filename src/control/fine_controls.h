#pragma once
#include <cstdint>
#include <string>

namespace zorvik {

class DeviceContext;

// The device pages' fine controls, which reach the instrument beyond the front panel's lists: any time
// per division, the sampling period and the clock trimmed by hand, and raw register values. Typed texts
// are read as far as they are numbers, a comma standing for the point.
namespace fine {

enum class TimeUnit { NsPerDiv, UsPerDiv, MsPerDiv, SPerDiv };

// "Fine T/div": the typed time per division in seconds.
double timePerDiv(const std::string& typed, TimeUnit unit);

// A typed value times `scale`, cut to a whole number within 32 bits.
int32_t whole(const std::string& typed, double scale = 1);

// "Fine samperate trim": a typed sampling period (clocks per sample) is written as TS in 1/256 clocks, a
// typed clock period in ps as MC in units of 10 ps; an empty field asks the instrument for its value.
void trimSampling(DeviceContext& main, const std::string& clocksPerSample, const std::string& clockPs);

// "Trigger level:": 0 (bottom) to 255 (top).
int triggerLevel(const std::string& typed);

}  // namespace fine

}  // namespace zorvik
