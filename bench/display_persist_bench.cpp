// Graded persistence on the wide screen: the whole packet (decode, plot, accumulate, colour, decay), and
// the accumulation, the colour render and the decay alone.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

#include "display/persistence.h"
#include "display_bench_util.h"

namespace {

using zorvik::bench::BenchRig;
using zorvik::bench::makePacket;

BenchRig& memoRig(BenchRig& rig, int memoMode, int depthItem) {
  rig.s().memory = 1;
  rig.s().memoMode = memoMode;
  rig.s().memoryDepth = depthItem;
  rig.s().interpolation = 2;
  rig.display->SetupDisplay();
  return rig;
}

// A packet through decode, Sin(x)/x, accumulation, colour or brightness render and decay.
void BM_PacketWithGradedPersistence(benchmark::State& state) {
  BenchRig rig(true);
  memoRig(rig, static_cast<int>(state.range(0)), 2);
  std::vector<std::string> packets;
  for (int i = 0; i < 16; ++i) packets.push_back(makePacket(0x000, 330, 37.3, i * 3));
  for (int i = 0; i < 200; ++i) rig.packet(packets[static_cast<size_t>(i % 16)]);
  size_t i = 0;
  for (auto _ : state) rig.packet(packets[i++ % 16]);
  state.SetLabel(state.range(0) == 2 ? "colour, depth 32, wide" : "intensity, depth 32, wide");
}
BENCHMARK(BM_PacketWithGradedPersistence)->Arg(2)->Arg(1);

// The same with peak pairs and the bitmap path at zoom 1.
void BM_PeakPacketWithColourBitmap(benchmark::State& state) {
  BenchRig rig(true);
  memoRig(rig, 2, 2);
  rig.s().byBitmap = true;
  rig.host.samplesPerDiv = 32;
  std::vector<std::string> packets;
  for (int i = 0; i < 16; ++i) packets.push_back(makePacket(0x300, 1000, 120, i * 5));
  for (int i = 0; i < 200; ++i) rig.packet(packets[static_cast<size_t>(i % 16)]);
  size_t i = 0;
  for (auto _ : state) rig.packet(packets[i++ % 16]);
}
BENCHMARK(BM_PeakPacketWithColourBitmap);

// A store with a band of counts in every column, as after many packets of a noisy trace.
void fill(zorvik::Persistence& p) {
  for (int x = 0; x < 480; ++x)
    for (int y = 60; y < 200; ++y) p.addHit(x, y, 1 + (x * 31 + y * 17) % 400);
}

// One packet's accumulation on the wide screen: a hit per column (a sample trace), or the span of a peak
// pair and the gap to the column before (peak pairs), at depth 32.
void BM_Accumulate(benchmark::State& state) {
  zorvik::Persistence p;
  const bool spans = state.range(0) != 0;
  int phase = 0;
  for (auto _ : state) {
    phase = (phase + 7) % 64;
    int prevLo = -1, prevHi = -1;
    for (int x = 0; x < 480; ++x) {
      const int y = 128 + static_cast<int>(80 * std::sin((x + phase) * 0.05));
      if (!spans) {
        p.addHit(x, y, 32);
        continue;
      }
      const int lo = y - 6, hi = y + 6;
      if (prevLo < 0) prevLo = lo, prevHi = hi;
      p.addSpan(x, std::min(lo, prevHi), std::max(hi, prevLo), 32);
      prevLo = lo;
      prevHi = hi;
    }
    benchmark::DoNotOptimize(p.count(10, 100));
  }
  state.SetLabel(spans ? "peak spans, wide" : "one hit a column, wide");
}
BENCHMARK(BM_Accumulate)->Arg(0)->Arg(1);

void BM_ColourRender(benchmark::State& state) {
  zorvik::Persistence p;
  fill(p);
  zorvik::DisplayCanvas canvas;
  canvas.setup(zorvik::DisplayGeometry::make(1, true), 0xFF000000, true);
  zorvik::GradeStyle g;
  g.colour = true;
  g.byBitmap = state.range(0) != 0;
  for (auto _ : state) p.render(canvas, 0, 479, 1, g);
  state.SetLabel(g.byBitmap ? "bitmap, wide" : "point calls, wide");
}
BENCHMARK(BM_ColourRender)->Arg(1)->Arg(0);

void BM_Decay(benchmark::State& state) {
  zorvik::Persistence p;
  fill(p);
  for (auto _ : state) {
    state.PauseTiming();
    zorvik::Persistence q = p;
    state.ResumeTiming();
    q.decay(0, 479, 1, 32, state.range(0) != 0);
    benchmark::DoNotOptimize(q.count(10, 100));
  }
  state.SetLabel(state.range(0) ? "leave single, wide" : "wide");
}
BENCHMARK(BM_Decay)->Arg(1)->Arg(0);

}  // namespace
