// Arbitrary bytes as an acquisition packet through the packet entry and a replay, with the measurement
// pass (every meter open, the auto level on), the spectrum and the histogram reading segment 1.
#include "signal/process_packet.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "measure/measurement_pass.h"
#include "measure/meter_readings.h"
#include "spectrum/spectrum_engine.h"
#include "stat/histogram.h"

namespace {
struct Host : zorvik::PacketHost {
  explicit Host(zorvik::PacketStages& measure) : measure_(measure) {}
  uint32_t t = 0;
  uint32_t tickMs() override { return t += 7; }
  bool selectRectVisible() const override { return select; }
  void sampleCountChanged(int n) override { measure_.sampleCountChanged(n); }
  void measure(const zorvik::SegmentData& s) override { measure_.measure(s); }
  void spectrum(const zorvik::SegmentData& s) override {
    zorvik::SpectrumInput in{s.bytes, s.isHiRes, s.isPeak, s.oneCharSample};
    engine.ComputeSpectrum(in, settings);
  }
  void stat(const zorvik::SegmentData& s) override {
    histogram.BuildHistogram({s.bytes, s.isHiRes, s.isPeak, s.oneCharSample});
  }
  zorvik::SpectrumEngine engine;
  zorvik::HistogramEngine histogram;
  zorvik::SpectrumSettings settings;
  bool select = false;
  zorvik::PacketStages& measure_;
};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string packet(reinterpret_cast<const char*>(data), size);
  zorvik::MeasureInputs in;
  in.autoLevel = true;
  zorvik::MeasurementPass pass([&] { return in; });
  for (const zorvik::MeterInfo& m : zorvik::meterTable()) pass.open.insert(m.meter);
  in.byLevel = size % 4;
  in.negativePolarity = size % 2;
  Host host(pass);
  host.settings = {size % 3 == 0, size % 5 == 0, static_cast<int>(size % 7)};
  zorvik::PacketProcessor pp(host);
  pp.ProcessPacket(packet);
  host.select = true;
  pp.ProcessPacket(packet);
  return 0;
}
