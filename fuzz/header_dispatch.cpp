// Arbitrary header events into the dispatch and, through the register table, into the echoes of the
// channel, time base, trigger and run control. The first byte picks a name, the rest is the value.
#include <QCoreApplication>
#include <cstddef>
#include <cstdint>
#include <string>

#include "config/settings.h"
#include "control/trigger_control.h"
#include "core/recording_sink.h"
#include "session/basic_control.h"
#include "session/main_controller.h"
#include "session/run_control.h"

namespace {
const char* const kNames[] = {"D",   "VHW", "VSW", "VNM", "VSN", "MCd", "MCl", "MCh", "TOv", "TOl",
                              "TMl", "TMh", "TPl", "TCh", "QSh", "P1h", "P1l", "D1m", "MC",  "TS",
                              "RS",  "AP",  "AR",  "RT",  "QS",  "TD",  "TC",  "TA",  "TW",  "O1",
                              "V1",  "P1",  "M1",  "T1",  "S1",  "C",   "F",   "W",   "G1",  "G2",
                              "Gs",  "Lt",  "L1",  "L2",  "L_B", "RIS", "??"};
constexpr size_t kCount = sizeof(kNames) / sizeof(kNames[0]);
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static int argc = 1;
  static char arg0[] = "fuzz";
  static char* argv[] = {arg0, nullptr};
  static QCoreApplication app(argc, argv);
  zorvik::MemorySettings settings;
  zorvik::RecordingSink sink;
  zorvik::MainView view;
  zorvik::MainController main(settings, sink, view);
  zorvik::BasicControl control(main);
  zorvik::RunControl run(main);
  zorvik::TriggerControl trigger(main);
  control.wire(run, trigger);
  control.fillRegisters(main.registers(), &trigger, &run);
  main.setVoltDivPosition(size > 0 ? data[0] % 40 - 3 : 0);
  // Several events per input: each starts with a name byte and a length byte.
  size_t i = 0;
  while (i + 2 <= size) {
    const char* name = kNames[data[i] % kCount];
    size_t len = data[i + 1];
    i += 2;
    size_t n = std::min(len, size - i);
    std::string value(reinterpret_cast<const char*>(data + i), n);
    i += n;
    main.ObexLinkDLL1_HeaderEvent(name, value, (len & 1) != 0);
  }
  main.replayLastPacket();
  main.registers().clear();
  return 0;
}
