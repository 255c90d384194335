#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "config/settings.h"
#include "control/silent_obex.h"
#include "core/recording_sink.h"
#include "session/basic_control.h"
#include "session/main_controller.h"

namespace zorvik::test {

inline std::string be(int64_t v, int width) {
  std::string s;
  for (int i = width - 1; i >= 0; --i) s += static_cast<char>((static_cast<uint64_t>(v) >> (8 * i)) & 0xFF);
  return s;
}

// The channel and time base on a controller whose link answers nothing; `link.online` decides the branch.
struct ControlFixture : ::testing::Test {
  MemorySettings settings;
  RecordingSink sink;
  MainView view;
  SilentObex link;
  MainController main{settings, sink, view};
  std::unique_ptr<BasicControl> control;

  void SetUp() override {
    link.online = false;
    settings.saveInt("Sampling", "TimePerDiv", 15);  // 100 us a division, where the tests stand
    control = std::make_unique<BasicControl>(main);
    control->fillRegisters(main.registers());
    main.attachLink(&link);
  }
  void TearDown() override {
    main.attachLink(nullptr);
    main.registers().clear();
  }
  ChannelControl& channel() { return control->channel(); }
  TimebaseControl& timebase() { return control->timebase(); }
  DeviceCache& cache() { return main.cache(); }
  std::string stored(const std::string& section, const std::string& name) {
    return settings.GetSettingValue(section, name, "<none>");
  }
  // The simulator's limits, arrived as headers, as in a session once all seven answered.
  void deviceLimits() {
    const std::pair<const char*, int32_t> limits[] = {{"MCd", 1000}, {"MCl", 800},  {"MCh", 50000},
                                                      {"TOv", 7},    {"TOl", 256},  {"TMl", 8},
                                                      {"TMh", 256},  {"TPl", 25600}};
    for (const auto& [name, value] : limits) echo(name, be(value, 4));
  }
  void echo(const std::string& name, std::string bytes) { main.ObexLinkDLL1_HeaderEvent(name, bytes, false); }
};

}  // namespace zorvik::test
