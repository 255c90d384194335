#include "cli/render_command.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include "cli/display_command.h"
#include "control/channel_control.h"
#include "core/fault.h"
#include "display/label_painter.h"
#include "display/view_zoom.h"
#include "export/file_io.h"
#include "session/command_line.h"

namespace zorvik {

namespace {

constexpr int kMaxRepeat = 100000;

struct RenderArgs {
  std::vector<std::string> files;
  std::string png;
  DisplayOptions display;
  bool labels = false;
  int repeat = 1;
};

RenderArgs parseArgs(const std::vector<std::string>& args) {
  RenderArgs r;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string v;
    if (takeValue(args, i, "--png", v)) {
      r.png = v;
    } else if (takeDisplayOption(args, i, r.display)) {
      continue;
    } else if (args[i] == "--labels") {
      r.labels = true;
    } else if (takeValue(args, i, "--repeat", v)) {
      r.repeat = wholeNumberOption("--repeat", v, 1, kMaxRepeat);
    } else if (args[i].rfind("-", 0) == 0) {
      throw Fault("unexpected argument: " + args[i]);
    } else {
      r.files.push_back(args[i]);
    }
  }
  if (r.files.empty() || r.png.empty())
    throw Fault("usage: zorvik-cli render FILE... --png OUT.png [options]");
  return r;
}

std::string pngBytes(const QImage& image) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!image.save(&buffer, "PNG")) throw Fault("cannot encode the picture as PNG");
  return bytes.toStdString();
}

int render(const RenderArgs& a) {
  std::vector<PacketFile> packets;
  for (const std::string& file : a.files) packets.push_back(readPacketFile(file));
  if (a.labels && !qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
    throw Fault("--labels needs the GUI application object");

  HeadlessDisplay rig(a.display);
  {
    // The vertical labels follow the zoom as in the window: the channel's zoom scale at the view's
    // middle gives the volts a division and the centre shown.
    ChannelControl channel(rig.main());
    channel.setVertZoom(a.display.vZoom, 0, ViewZoom::kMin, ViewZoom::kMax);
    PlotInputs& in = rig.display().inputs();
    in.voltPerDiv = channel.model().ZoomVoltPerDiv;
    in.voltOffset = channel.model().ZoomCentre;
    rig.display().refreshVertical();
  }
  for (int r = 0; r < a.repeat; ++r)
    for (const PacketFile& p : packets)
      rig.packet(p.bytes, a.display.samplesPerDiv.value_or(p.samplesPerDiv.value_or(16)));

  ScopeDisplay& display = rig.display();
  const MainState& state = rig.main().state();
  QImage picture = display.canvas().image().copy();
  if (a.labels) {
    DisplayLabels labels = display.labels();
    labels.ModeTransparant = state.modeText;
    labels.modeColor = state.modeColor;
    labels.RISmodeTransparant = state.risVisible ? state.risCaption : std::string();
    labels.noTrigger = state.noTriggerVisible;
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
