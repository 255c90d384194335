#include "app/cli_render.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <optional>

#include "app/command_line.h"
#include "config/cpu_speed.h"
#include "config/settings.h"
#include "config/text_number.h"
#include "core/fault.h"
#include "display/display_host.h"
#include "display/label_painter.h"
#include "display/scope_display.h"
#include "export/file_io.h"
#include "export/zrv_file.h"
#include "link/main_controller.h"
#include "ui/recording_sink.h"

namespace zorvik {

namespace {

constexpr int kMaxRepeat = 100000;

struct RenderArgs {
  std::vector<std::string> files;
  std::string png;
  std::optional<int> zoom;
  bool wide = false;
  std::optional<int> interp;
  std::optional<int> tapsPower;
  int hZoom = 1;
  float vZoom = 1;
  std::optional<int> samplesPerDiv;
  bool labels = false;
  std::optional<int> persist;  // MemoMode 1 or 2
  std::optional<int> depth;    // Memory Depth item
  int repeat = 1;
  std::vector<std::string> sets;
};

bool takeValue(const std::vector<std::string>& args, size_t& i, const std::string& name, std::string& value) {
  if (args[i] == name) {
    if (i + 1 >= args.size()) throw Fault(name + " needs a value");
    value = args[++i];
    return true;
  }
  if (args[i].rfind(name + "=", 0) == 0) {
    value = args[i].substr(name.size() + 1);
    return true;
  }
  return false;
}

int wholeNumber(const std::string& name, const std::string& text, int lo, int hi) {
  auto v = parseLeadingNumber(text);
  if (!v || *v != static_cast<double>(static_cast<long long>(*v)) || *v < lo || *v > hi)
    throw Fault(name + " wants a whole number from " + std::to_string(lo) + " to " + std::to_string(hi) + ": " + text);
  return static_cast<int>(*v);
}

int pick(const std::string& name, const std::string& text, std::initializer_list<std::pair<const char*, int>> items) {
  for (const auto& [word, value] : items)
    if (text == word) return value;
  std::string all;
  for (const auto& item : items) all += std::string(all.empty() ? "" : "|") + item.first;
  throw Fault(name + " wants " + all + ": " + text);
}

RenderArgs parseArgs(const std::vector<std::string>& args) {
  RenderArgs r;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string v;
    if (takeValue(args, i, "--png", v)) {
      r.png = v;
    } else if (takeValue(args, i, "--zoom", v)) {
      r.zoom = wholeNumber("--zoom", v, 0, 3);
    } else if (args[i] == "--wide") {
      r.wide = true;
    } else if (takeValue(args, i, "--interp", v)) {
      r.interp = pick("--interp", v, {{"none", 0}, {"line", 1}, {"sinx", 2}, {"lanczos", 3}, {"lagrange", 4}});
    } else if (takeValue(args, i, "--taps", v)) {
      const int taps = wholeNumber("--taps", v, 2, 256);
      if ((taps & (taps - 1)) != 0) throw Fault("--taps wants a power of two from 2 to 256: " + v);
      int power = 0;
      while ((1 << power) < taps) ++power;
      r.tapsPower = power;
    } else if (takeValue(args, i, "--hzoom", v)) {
      r.hZoom = pick("--hzoom", v, {{"1", 1}, {"2", 2}, {"4", 4}, {"5", 5}, {"10", 10}});
    } else if (takeValue(args, i, "--vzoom", v)) {
      r.vZoom = static_cast<float>(pick("--vzoom", v, {{"1", 1}, {"2", 2}, {"5", 5}, {"10", 10}}));
    } else if (takeValue(args, i, "--samples-per-div", v)) {
      r.samplesPerDiv = wholeNumber("--samples-per-div", v, 1, 32767);
    } else if (args[i] == "--labels") {
      r.labels = true;
    } else if (takeValue(args, i, "--persist", v)) {
      r.persist = pick("--persist", v, {{"intensity", 1}, {"color", 2}});
    } else if (takeValue(args, i, "--depth", v)) {
      r.depth = pick("--depth", v, {{"infinite", 0}, {"128", 1}, {"32", 2}, {"8", 3}});
    } else if (takeValue(args, i, "--repeat", v)) {
      r.repeat = wholeNumber("--repeat", v, 1, kMaxRepeat);
    } else if (takeValue(args, i, "--set", v)) {
      r.sets.push_back(v);
    } else if (args[i].rfind("-", 0) == 0) {
      throw Fault("unexpected argument: " + args[i]);
    } else {
      r.files.push_back(args[i]);
    }
  }
  if (r.files.empty() || r.png.empty()) throw Fault("usage: zorvik-cli render FILE... --png OUT.png [options]");
  return r;
}

struct Packet {
  std::string bytes;
  std::optional<int> samplesPerDiv;
};

// The window's state is not shown here: the core runs as it does behind the window.
class NoView : public MainView {};

void applySettings(const RenderArgs& a, DisplaySettings& s) {
  for (const std::string& text : a.sets) {
    SettingAssignment set = parseSettingAssignment(text);
    if (!s.assign(set.section, set.name, set.value))
      throw Fault("no plot setting " + set.section + "/" + set.name);
  }
  if (a.zoom) s.zoom = *a.zoom;
  if (a.wide) s.wide = true;
  if (a.interp) s.interpolation = *a.interp;
  if (a.tapsPower) s.interpolationPoints = *a.tapsPower;
  if (a.persist) {
    s.memory = 1;
    s.memoMode = *a.persist;
  }
  if (a.depth) s.memoryDepth = *a.depth;
}

std::string pngBytes(const QImage& image) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!image.save(&buffer, "PNG")) throw Fault("cannot encode the picture as PNG");
  return bytes.toStdString();
}

int render(const RenderArgs& a) {
  std::vector<Packet> packets;
  for (const std::string& file : a.files) {
    std::string bytes = readWholeFile(file, kZrvMaxBytes);
    if (std::optional<ZrvContents> zrv = parseZrv(bytes))
      packets.push_back({std::move(zrv->packet), zrv->samplesPerDiv});
    else
      packets.push_back({std::move(bytes), std::nullopt});
  }
  if (a.labels && !qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
    throw Fault("--labels needs the GUI application object");

  MemorySettings settings;
  RecordingSink sink;
  NoView view;
  MainController main(settings, sink, view);
  ControllerDisplayHost host(main);
  ScopeDisplay display(host, settings, CpuMHz());
  applySettings(a, display.settings());
  display.inputs().hZoom = a.hZoom;
  display.inputs().vZoom = a.vZoom;
  display.SetupDisplay();
  main.setStages(&display);

  main.setPacketCount(0);
  for (int r = 0; r < a.repeat; ++r) {
    for (const Packet& p : packets) {
      main.SamplesPerDiv = a.samplesPerDiv.value_or(p.samplesPerDiv.value_or(16));
      if (main.SamplesPerDiv < 1) main.SamplesPerDiv = 16;
      main.setPacketCount(main.PacketCount() + 1);
      main.ProcessPacket(p.bytes);
      main.setLastPacket(p.bytes);
    }
  }
  main.setStages(nullptr);

  QImage picture = display.canvas().image().copy();
  if (a.labels) {
    DisplayLabels labels = display.labels();
    labels.ModeTransparant = main.state().modeText;
    labels.modeColor = main.state().modeColor;
    labels.RISmodeTransparant = main.state().risVisible ? main.state().risCaption : std::string();
    labels.noTrigger = main.state().noTriggerVisible;
    QPainter painter(&picture);
    paintLabels(painter, labels, display.settings(), display.canvas().geometry());
  }
  writeFileReplacing(a.png, pngBytes(picture));
  return 0;
}

}  // namespace

int runRenderCommand(const std::vector<std::string>& args, std::ostream&, std::ostream& err) {
  try {
    return render(parseArgs(args));
  } catch (const std::exception& e) {
    err << "zorvik-cli: " << e.what() << "\n";
    return 2;
  }
}

}  // namespace zorvik
