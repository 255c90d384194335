#include "cli/picture_command.h"

#include <cctype>

#include "cli/display_command.h"
#include "cli/headless_picture.h"
#include "core/fault.h"
#include "export/animation_recorder.h"
#include "export/display_pictures.h"
#include "export/gif_writer.h"
#include "session/command_line.h"

namespace zorvik {

namespace {

// A frame's delay travels in hundredths of a second in 16 bits.
constexpr int kMaxDelayMs = 655359;
constexpr int kDefaultDelayMs = 100;

struct PictureArgs {
  std::vector<std::string> files;
  std::string out;
  DisplayOptions display;
  bool labels = false;
  bool transparent = false;
  int delayMs = kDefaultDelayMs;
};

PictureArgs parseArgs(const std::vector<std::string>& args, bool animation, const char* usage) {
  PictureArgs a;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string v;
    if (takeValue(args, i, "--out", v)) {
      a.out = v;
    } else if (takeDisplayOption(args, i, a.display)) {
      continue;
    } else if (args[i] == "--labels") {
      a.labels = true;
    } else if (args[i] == "--transparent") {
      a.transparent = true;
    } else if (animation && takeValue(args, i, "--delay-ms", v)) {
      a.delayMs = wholeNumberOption("--delay-ms", v, 0, kMaxDelayMs);
    } else if (args[i].rfind("-", 0) == 0) {
      throw Fault("unexpected argument: " + args[i]);
    } else {
      a.files.push_back(args[i]);
    }
  }
  if (a.out.empty() || (a.files.empty() && !animation)) throw Fault(usage);
  return a;
}

std::string lowerExtension(const std::string& path) {
  const size_t dot = path.rfind('.');
  const size_t slash = path.rfind('/');
  if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return {};
  std::string extension = path.substr(dot + 1);
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return extension;
}

PictureTarget targetOf(const std::string& path) {
  const std::string extension = lowerExtension(path);
  if (extension == "bmp") return PictureTarget::Bmp;
  if (extension == "gif") return PictureTarget::Gif;
  if (extension == "jpg" || extension == "jpeg") return PictureTarget::Jpeg;
  throw Fault("the picture's name ends in .bmp, .gif or .jpg: " + path);
}

// The display's background as the GIF writer names colours, as the window passes it.
uint32_t background(HeadlessDisplay& rig) {
  return static_cast<uint32_t>(rig.display().settings().backColor) & 0xFFFFFF;
}

int picture(const PictureArgs& a) {
  const PictureTarget target = targetOf(a.out);
  const std::vector<PacketFile> packets = readPacketFiles(a.files);
  HeadlessDisplay rig(a.display);
  zoomVertically(rig, a.display.vZoom);
  for (const PacketFile& p : packets) playPacket(rig, p, a.display);
  writePictureFile(target, headlessPicture(rig, a.labels), a.out, kJpegComment, a.transparent,
                   background(rig));
  return 0;
}

int animate(const PictureArgs& a) {
  if (targetOf(a.out) != PictureTarget::Gif) throw Fault("an animation is a GIF: " + a.out);
  const std::vector<PacketFile> packets = readPacketFiles(a.files);
  HeadlessDisplay rig(a.display);
  zoomVertically(rig, a.display.vZoom);

  std::vector<AniGIF::Frame> frames;
  AnimationRecorder recorder;
  recorder.capture = [&] { return headlessPicture(rig, a.labels); };
  recorder.onComplete = [&frames](std::vector<AniGIF::Frame> done) { frames = std::move(done); };
  recorder.start(static_cast<int>(packets.size()));
  for (const PacketFile& p : packets) {
    playPacket(rig, p, a.display);
    recorder.recordFrame(a.delayMs);
  }
  if (frames.empty()) throw Fault("no frames to write to " + a.out);
  AniGIF().SaveAnimGIF(frames, a.out, a.transparent ? background(rig) : AniGIF::kNoTransparent);
  return 0;
}

int failed(std::ostream& err, const std::exception& e) {
  err << "zorvik-cli: " << e.what() << "\n";
  return 2;
}

}  // namespace

int runPictureCommand(const std::vector<std::string>& args, std::ostream&, std::ostream& err) {
  try {
    return picture(parseArgs(args, false,
                             "usage: zorvik-cli picture FILE... --out OUT.bmp|OUT.gif|OUT.jpg [--labels] "
                             "[--transparent] [options]"));
  } catch (const std::exception& e) {
    return failed(err, e);
  }
}

int runAnimateCommand(const std::vector<std::string>& args, std::ostream&, std::ostream& err) {
  try {
    return animate(parseArgs(args, true,
                             "usage: zorvik-cli animate FILE... --out OUT.gif [--delay-ms N] [--labels] "
                             "[--transparent] [options]"));
  } catch (const std::exception& e) {
    return failed(err, e);
  }
}

}  // namespace zorvik
