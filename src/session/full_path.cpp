#include "session/full_path.h"

#include <algorithm>
#include <cmath>

#include "display/scope_display.h"
#include "measure/measurement_pass.h"
#include "measure/meter_readings.h"
#include "sim/packet_builder.h"
#include "sim/sim_config.h"
#include "spectrum/spectrum_stage.h"
#include "stat/stat_stage.h"

namespace zorvik {

const char* const kFullPathModeNames[5] = {"average", "hires", "peak_half", "peak", "sample"};

namespace {
constexpr int kBlackmanHarris = 6;
constexpr int kSinX = 2;
}  // namespace

FullPathRig::FullPathRig(int samplesPerDiv, int memoMode) {
  session_ = std::make_unique<ScopeSession>(settings_, makeIdentity(1), nullptr,
                                            SessionFrontEnd{*this, sink_, dialogs_, nullptr}, 1000);
  MainController& main = session_->main();
  RecordScale scale = main.scale();
  scale.SamplesPerDiv = samplesPerDiv;
  scale.SamplePeriod = 1e-7f;
  main.setScale(scale);

  ScopeDisplay& display = session_->display();
  DisplaySettings& s = display.settings();
  s.wide = true;
  s.interpolation = kSinX;
  s.memory = 1;
  s.memoMode = memoMode;
  s.memoryDepth = 2;
  s.speed.fill(3);   // every column drawn
  s.acqPerPlot = 0;  // every packet drawn
  display.SetupDisplay();

  for (const MeterInfo& m : meterTable()) session_->measurement().open.insert(m.meter);

  SpectrumStage& spectrum = session_->spectrum();
  spectrum.visible = [] { return true; };
  spectrum.setWindowFunction(kBlackmanHarris);
  spectrum.setInterpolation(1);
  spectrum.setNormalize(true);  // an interpolated, normalised plot refines the strongest line
  session_->stat().visible = [] { return true; };
  main.setPacketCount(0);
}

FullPathRig::~FullPathRig() = default;

void FullPathRig::packet(const std::string& bytes) {
  session_->main().ObexLinkDLL1_HeaderEvent("D", bytes, false);
}

std::vector<std::string> fullPathPackets(int mode, int count) {
  // A 100 kHz sine: two and a half periods on the screen's 240 samples, 82 in the record.
  SimConfig config;
  config.freq = 100000;
  SignalGenerator generator(config);
  PacketBuilder builder(generator);
  AcquisitionSetup setup;
  setup.MC = 1000;      // 10 ns clock
  setup.TS = 10 * 256;  // 100 ns a sample
  setup.M1 = static_cast<uint8_t>(mode);
  setup.qsh = config.qshForMode(setup.M1);
  setup.QS = std::min<uint32_t>(8192, setup.qsh);
  setup.TC = 1024;
  std::vector<std::string> packets;
  double now = 0;
  for (int i = 0; i < count; ++i) {
    packets.push_back(builder.build(setup, now));
    now = std::fmod(builder.endTime() + 0.000137 * (i + 1), generator.period());
  }
  return packets;
}

}  // namespace zorvik
