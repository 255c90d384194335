#include "cli/render_command.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>

#include "cli/analysis_render.h"
#include "cli/display_command.h"
#include "cli/headless_picture.h"
#include "core/fault.h"
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

int render(const RenderArgs& a) {
  const std::vector<PacketFile> packets = readPacketFiles(a.files);
  if (a.labels && !qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
    throw Fault("--labels needs the GUI application object");

  HeadlessDisplay rig(a.display);
  zoomVertically(rig, a.display.vZoom);
  for (int r = 0; r < a.repeat; ++r)
    for (const PacketFile& p : packets) playPacket(rig, p, a.display);
  writeFileReplacing(a.png, pngBytes(headlessPicture(rig, a.labels)));
  return 0;
}

}  // namespace

int runRenderCommand(const std::vector<std::string>& args, std::ostream&, std::ostream& err) {
  try {
    if (asksForView(args)) return renderView(args);
    return render(parseArgs(args));
  } catch (const std::exception& e) {
    err << "zorvik-cli: " << e.what() << "\n";
    return 2;
  }
}

}  // namespace zorvik
