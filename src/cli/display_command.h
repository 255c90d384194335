#pragma once
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "config/settings.h"
#include "core/recording_sink.h"
#include "display/display_host.h"
#include "display/scope_display.h"
#include "session/main_controller.h"

namespace zorvik {

// The display options that render and bench share.
struct DisplayOptions {
  std::optional<int> zoom;
  bool wide = false;
  std::optional<int> interp;
  std::optional<int> tapsPower;
  int hZoom = 1;
  float vZoom = 1;
  std::optional<int> samplesPerDiv;
  std::optional<int> persist;  // MemoMode 1 or 2
  std::optional<int> depth;    // Memory Depth item
  std::vector<std::string> sets;
};

// True when args[i] is one of the display options (i then stands on its last word); Fault on a bad value.
bool takeDisplayOption(const std::vector<std::string>& args, size_t& i, DisplayOptions& options);

// A packet as a file holds it: raw, or a zrv file with its samples per division.
struct PacketFile {
  std::string bytes;
  std::optional<int> samplesPerDiv;
};
PacketFile readPacketFile(const std::string& path);

// The core as it runs behind the window, without the window: the packet entry onto the display's surface.
class HeadlessDisplay : private MainView {
 public:
  explicit HeadlessDisplay(const DisplayOptions& options);
  ~HeadlessDisplay() override;
  HeadlessDisplay(const HeadlessDisplay&) = delete;
  HeadlessDisplay& operator=(const HeadlessDisplay&) = delete;

  // One "D" event: counted, then the packet entry.
  void packet(const std::string& bytes, int samplesPerDiv);

  MainController& main() { return main_; }
  ScopeDisplay& display() { return display_; }

 private:
  MemorySettings settings_;
  RecordingSink sink_;
  MainController main_;
  ControllerDisplayHost host_;
  ScopeDisplay display_;
};

// The value of the word `text` among `items`; Fault naming the option and its words otherwise.
int pickOption(const std::string& name, const std::string& text,
               std::initializer_list<std::pair<const char*, int>> items);

}  // namespace zorvik
