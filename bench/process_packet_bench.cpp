// The packet entry on 8192-sample packets of each mode, plotting stubbed.
#include <benchmark/benchmark.h>

#include <string>

#include "signal/process_packet.h"

namespace {

struct StubHost : zorvik::PacketHost {
  uint32_t t = 0;
  uint32_t tickMs() override { return t += 20; }
  void PlotSamples(std::string_view s, int, bool, bool) override { benchmark::DoNotOptimize(s.data()); }
  void PlotPeaks(std::string_view s, int, bool) override { benchmark::DoNotOptimize(s.data()); }
};

std::string makePacket(uint16_t mode, int samples) {
  int bytesPerSample = (mode == 0x100 || mode == 0x300) ? 2 : 1;
  std::string p = {char(0x10), char(0), char(mode >> 8), char(mode & 0xFF)};
  for (int i = 0; i < samples * bytesPerSample; ++i) p += static_cast<char>(128 + (i % 64) - 32);
  return p;
}

void BM_ProcessPacket(benchmark::State& state) {
  const uint16_t mode = static_cast<uint16_t>(state.range(0));
  std::string packet = makePacket(mode, 8192);
  StubHost host;
  zorvik::PacketProcessor pp(host);
  for (auto _ : state) benchmark::DoNotOptimize(pp.ProcessPacket(packet));
  state.SetLabel("mode 0x" + std::to_string(mode / 256) + "00");
}
BENCHMARK(BM_ProcessPacket)->Arg(0x000)->Arg(0x100)->Arg(0x200)->Arg(0x300)->Arg(0x400);

}  // namespace
