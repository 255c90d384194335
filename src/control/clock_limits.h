#pragma once
#include <string>

namespace zorvik {

class DeviceContext;
class TimebaseControl;
struct DeviceCache;

// The clock window the time-base rule may use, as the device clock page sets it: each limit automatic or
// manual, a manual limit in MHz (section "MCUclock": "Manual max" and "Maximum", "Manual min" and
// "Minimum"). A change is stored and the time base is set again at once.
class ClockLimits {
 public:
  enum Limit { High, Low };
  struct Setting {
    bool manual = false;
    long mhz = 0;
  };

  ClockLimits(DeviceContext& main, TimebaseControl& timebase) : main_(main), timebase_(timebase) {}

  Setting setting(Limit limit) const;
  // The page's choice and typed value (read as far as it is a number); returns what was stored.
  Setting set(Limit limit, bool manual, const std::string& typedMHz);

  // A limit in MHz pulled into the instrument's range (100000 / MCl fastest, 100000 / MCh slowest, each
  // cut to its whole part); left as it stands until both are known.
  static long limitClock(double mhz, const DeviceCache& cache);

 private:
  DeviceContext& main_;
  TimebaseControl& timebase_;
};

}  // namespace zorvik
