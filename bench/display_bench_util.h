#pragma once
// A display on a scratch store behind the packet entry, for the display's benchmarks.
#include <cmath>
#include <memory>
#include <string>

#include "config/settings.h"
#include "display/display_host.h"
#include "display/scope_display.h"
#include "signal/process_packet.h"

namespace zorvik::bench {

struct BenchHost : DisplayHost, PacketHost {
  int32_t PacketCount() const override { return packets; }
  void setPacketCount(int32_t c) override { packets = c; }
  bool ReplotNeeded() const override { return false; }
  void setReplotNeeded(bool) override {}
  int SamplesPerDiv() const override { return samplesPerDiv; }
  float SamplePeriod() const override { return 1e-6f; }
  int32_t TS() const override { return 0; }
  uint32_t tickMs() override { return t += 20; }
  void SetModeLabel(uint32_t m, bool multi, int n) override { display->SetModeLabel(m, multi, n); }
  void PlotSamples(std::string_view s, int n, bool d, bool t2) override { display->PlotSamples(s, n, d, t2); }
  void PlotPeaks(std::string_view s, int n, bool h) override { display->PlotPeaks(s, n, h); }
  void sampleCountChanged(int n) override { display->sampleCountChanged(n); }

  int32_t packets = 0;
  int samplesPerDiv = 16;
  uint32_t t = 0;
  ScopeDisplay* display = nullptr;
};

struct BenchRig {
  MemorySettings store;
  BenchHost host;
  std::unique_ptr<ScopeDisplay> display;
  PacketProcessor processor{host};

  explicit BenchRig(bool wide) {
    display = std::make_unique<ScopeDisplay>(host, store, 1000);
    host.display = display.get();
    display->settings().wide = wide;
    display->SetupDisplay();
  }
  DisplaySettings& s() { return display->settings(); }
  // The "D" event: counted, then the packet entry.
  void packet(const std::string& p) {
    ++host.packets;
    processor.ProcessPacket(p);
  }
};

// A triggered one-segment packet of a mode with a noisy sine (one or two bytes a sample, or pairs).
inline std::string makePacket(uint16_t mode, int samples, double period, int seed = 0) {
  const int width = (mode == 0x100 || mode == 0x300) ? 2 : 1;
  std::string p = {char(0x10), char(0), char(mode >> 8), char(mode & 0xFF)};
  for (int i = 0; i < samples; ++i) {
    const int v = static_cast<int>(std::lround(128 + 80 * std::sin((i + seed) * 2 * M_PI / period))) +
                  ((i * 7 + seed) % 5 - 2);
    if (width == 1)
      p += static_cast<char>(v);
    else if (mode == 0x100)
      p += {static_cast<char>(v), static_cast<char>((i * 37) & 0xFF)};
    else
      p += {static_cast<char>(v - 6), static_cast<char>(v + 6)};
  }
  return p;
}

}  // namespace zorvik::bench
