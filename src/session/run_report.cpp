#include "session/run_report.h"

#include <sys/resource.h>

#include <cstdio>

namespace zorvik {

namespace {
double perSecond(double count, double seconds) {
  return seconds > 0 ? count / seconds : 0;
}
}  // namespace

std::string RunReport::line() const {
  char text[256];
  std::snprintf(text, sizeof text,
                "seconds=%.2f packets=%lld packets_per_s=%.0f updates=%lld paints=%lld paints_per_s=%.1f "
                "cpu_share=%.2f",
                seconds, static_cast<long long>(packets), perSecond(static_cast<double>(packets), seconds),
                static_cast<long long>(updates), static_cast<long long>(paints),
                perSecond(static_cast<double>(paints), seconds), perSecond(cpuSeconds, seconds));
  return text;
}

double processCpuSeconds() {
  rusage use{};
  if (getrusage(RUSAGE_SELF, &use) != 0) return 0;
  auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
  return seconds(use.ru_utime) + seconds(use.ru_stime);
}

}  // namespace zorvik
