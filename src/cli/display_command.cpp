#include "cli/display_command.h"

#include <initializer_list>
#include <utility>

#include "cli/decode_command.h"
#include "config/cpu_speed.h"
#include "core/fault.h"
#include "export/zrv_file.h"
#include "session/command_line.h"

namespace zorvik {

int pickOption(const std::string& name, const std::string& text,
               std::initializer_list<std::pair<const char*, int>> items) {
  for (const auto& [word, value] : items)
    if (text == word) return value;
  std::string all;
  for (const auto& item : items) all += std::string(all.empty() ? "" : "|") + item.first;
  throw Fault(name + " wants " + all + ": " + text);
}

namespace {

void applySettings(const DisplayOptions& o, DisplaySettings& s) {
  for (const std::string& text : o.sets) {
    SettingAssignment set = parseSettingAssignment(text);
    if (!s.assign(set.section, set.name, set.value))
      throw Fault("no plot setting " + set.section + "/" + set.name);
  }
  if (o.zoom) s.zoom = *o.zoom;
  if (o.wide) s.wide = true;
  if (o.interp) s.interpolation = *o.interp;
  if (o.tapsPower) s.interpolationPoints = *o.tapsPower;
  if (o.persist) {
    s.memory = 1;
    s.memoMode = *o.persist;
  }
  if (o.depth) s.memoryDepth = *o.depth;
}

}  // namespace

bool takeDisplayOption(const std::vector<std::string>& args, size_t& i, DisplayOptions& o) {
  std::string v;
  if (takeValue(args, i, "--zoom", v)) {
    o.zoom = wholeNumberOption("--zoom", v, 0, 3);
  } else if (args[i] == "--wide") {
    o.wide = true;
  } else if (takeValue(args, i, "--interp", v)) {
    o.interp =
        pickOption("--interp", v, {{"none", 0}, {"line", 1}, {"sinx", 2}, {"lanczos", 3}, {"lagrange", 4}});
  } else if (takeValue(args, i, "--taps", v)) {
    const int taps = wholeNumberOption("--taps", v, 2, 256);
    if ((taps & (taps - 1)) != 0) throw Fault("--taps wants a power of two from 2 to 256: " + v);
    int power = 0;
    while ((1 << power) < taps) ++power;
    o.tapsPower = power;
  } else if (takeValue(args, i, "--hzoom", v)) {
    o.hZoom = pickOption("--hzoom", v, {{"1", 1}, {"2", 2}, {"4", 4}, {"5", 5}, {"10", 10}});
  } else if (takeValue(args, i, "--vzoom", v)) {
    o.vZoom = static_cast<float>(pickOption("--vzoom", v, {{"1", 1}, {"2", 2}, {"5", 5}, {"10", 10}}));
  } else if (takeValue(args, i, "--samples-per-div", v)) {
    o.samplesPerDiv = wholeNumberOption("--samples-per-div", v, 1, 32767);
  } else if (takeValue(args, i, "--persist", v)) {
    o.persist = pickOption("--persist", v, {{"intensity", 1}, {"color", 2}});
  } else if (takeValue(args, i, "--depth", v)) {
    o.depth = pickOption("--depth", v, {{"infinite", 0}, {"128", 1}, {"32", 2}, {"8", 3}});
  } else if (takeValue(args, i, "--set", v)) {
    o.sets.push_back(v);
  } else {
    return false;
  }
  return true;
}

PacketFile readPacketFile(const std::string& path) {
  PacketFile file{readPacketBytes(path), std::nullopt};
  if (std::optional<ZrvContents> zrv = parseZrv(file.bytes))
    file = {std::move(zrv->packet), zrv->samplesPerDiv};
  requirePacket(path, file.bytes);  // what measure refuses, render refuses alike
  return file;
}

HeadlessDisplay::HeadlessDisplay(const DisplayOptions& options)
    : main_(settings_, sink_, static_cast<MainView&>(*this)),
      host_(main_),
      display_(host_, settings_, CpuMHz()) {
  applySettings(options, display_.settings());
  display_.inputs().hZoom = options.hZoom;
  display_.inputs().vZoom = options.vZoom;
  display_.SetupDisplay();
  main_.setStages(&display_);
  main_.setPacketCount(0);
}

HeadlessDisplay::~HeadlessDisplay() {
  main_.setStages(nullptr);
}

void HeadlessDisplay::packet(const std::string& bytes, int samplesPerDiv) {
  {
    RecordScale scale = main_.scale();
    scale.SamplesPerDiv = samplesPerDiv >= 1 ? samplesPerDiv : 16;
    main_.setScale(scale);
  }
  main_.setPacketCount(main_.PacketCount() + 1);
  main_.ProcessPacket(bytes);
  main_.setLastPacket(bytes);
}

}  // namespace zorvik
