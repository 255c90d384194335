// Arbitrary bytes as a packet file: restored through the file, then replayed as every redraw does.
#include <unistd.h>

#include <QCoreApplication>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "config/settings.h"
#include "core/fault.h"
#include "core/recording_sink.h"
#include "export/packet_files.h"
#include "session/main_controller.h"

namespace {
// One scratch file for the whole run, removed at exit.
char scratchPath[4096];

void removeScratch() {
  std::remove(scratchPath);
}

const char* scratchFile() {
  if (scratchPath[0] == 0) {
    std::string pattern = (std::filesystem::temp_directory_path() / "zorvik-fuzz-XXXXXX").string();
    if (pattern.size() >= sizeof scratchPath) std::abort();
    pattern.copy(scratchPath, pattern.size());
    int fd = mkstemp(scratchPath);
    if (fd < 0) std::abort();
    close(fd);
    std::atexit(removeScratch);
  }
  return scratchPath;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static int argc = 1;
  static char arg0[] = "fuzz";
  static char* argv[] = {arg0, nullptr};
  static QCoreApplication app(argc, argv);
  const std::string path = scratchFile();
  std::ofstream(path, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  zorvik::MemorySettings settings;
  zorvik::RecordingSink sink;
  zorvik::MainView view;
  zorvik::MainController main(settings, sink, view);
  try {
    zorvik::RestorePacketFile(main, path);
  } catch (const zorvik::Fault&) {
    // A file that can't be read is a clear error, not a crash.
  }
  main.replayLastPacket();
  return 0;
}
