// Arbitrary bytes through the packet entry onto the display: the first bytes choose the plot settings
// and the scale, the rest is the packet, drawn twice so that the persistence accumulates and decays.
#include <QCoreApplication>
#include <cstddef>
#include <cstdint>
#include <string>

#include "config/settings.h"
#include "core/recording_sink.h"
#include "display/display_host.h"
#include "display/scope_display.h"
#include "session/main_controller.h"

namespace {
constexpr size_t kSettingBytes = 8;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < kSettingBytes) return 0;
  zorvik::MemorySettings settings;
  zorvik::RecordingSink sink;
  zorvik::MainView view;
  zorvik::MainController main(settings, sink, view);
  zorvik::ControllerDisplayHost host(main);
  zorvik::ScopeDisplay display(host, settings, 1000);

  zorvik::DisplaySettings& s = display.settings();
  s.zoom = data[0] & 3;
  s.wide = (data[0] & 4) != 0;
  s.gridFore = (data[0] & 8) != 0;
  s.linePlot = (data[0] & 16) != 0;
  s.psetPlot = (data[0] & 32) != 0;
  s.varBright = (data[0] & 64) != 0;
  s.byBitmap = (data[0] & 128) != 0;
  s.interpolation = data[1] % 5;
  s.interpolationPoints = 1 + (data[1] >> 5);
  s.memory = data[2] & 1;
  s.memoMode = (data[2] >> 1) % 3;
  s.memoryDepth = (data[2] >> 3) & 3;
  s.acqPerPlot = (data[2] >> 5) & 3;
  s.peakDecimation = (data[3] & 1) != 0;
  s.peakInterpolation = (data[3] >> 1) & 1;
  s.risRainbow = (data[3] & 4) != 0;
  s.leaveSingle = (data[3] & 8) != 0;
  s.speed.fill(1 + ((data[3] >> 4) % 3));
  const int hZooms[5] = {1, 2, 4, 5, 10};
  const float vZooms[4] = {1, 2, 5, 10};
  display.inputs().hZoom = hZooms[data[4] % 5];
  display.inputs().vZoom = vZooms[(data[4] >> 3) & 3];
  display.inputs().hViewFrac = (static_cast<int>(data[5]) - 128) / 128.0;
  display.inputs().vViewFrac = (static_cast<int>(data[6]) - 128) / 256.0;
  main.setScale({.SamplePeriod = 1e-6f, .SamplesPerDiv = 1 + data[7]});
  main.cache().TS = static_cast<int32_t>(data[7]) * 8;
  display.SetupDisplay();
  main.setStages(&display);

  const std::string packet(reinterpret_cast<const char*>(data + kSettingBytes), size - kSettingBytes);
  for (int i = 0; i < 2; ++i) {
    main.setPacketCount(main.PacketCount() + 1);
    main.ProcessPacket(packet);
  }
  main.setStages(nullptr);
  return 0;
}
