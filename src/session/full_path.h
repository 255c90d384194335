#pragma once
#include <memory>
#include <string>
#include <vector>

#include "config/settings.h"
#include "core/recording_sink.h"
#include "export/scripted_file_dialogs.h"
#include "link/main_state.h"
#include "session/scope_session.h"

namespace zorvik {

// The sample formats of the acquisition modes M1 0 to 4, as the benchmarks name them.
extern const char* const kFullPathModeNames[5];

// The session core with everything a packet can meet open, and no window or link: the wide display with
// Sin(x)/x and colour-graded persistence (or brightness grading), every meter of the measurement pass,
// the Blackman-Harris spectrum with its strongest line refined, the histogram, and the recorder idle.
// It times the whole signal path of one "D" header.
class FullPathRig : private MainView {
 public:
  // memoMode: 2 colour grading, 1 brightness grading.
  explicit FullPathRig(int samplesPerDiv = 16, int memoMode = 2);
  ~FullPathRig() override;
  FullPathRig(const FullPathRig&) = delete;
  FullPathRig& operator=(const FullPathRig&) = delete;

  // One "D" header with the packet, as the link hands it over.
  void packet(const std::string& bytes);

  ScopeSession& session() { return *session_; }

 private:
  MemorySettings settings_;
  RecordingSink sink_;
  ScriptedFileDialogs dialogs_;
  std::unique_ptr<ScopeSession> session_;
};

// `count` triggered 8192-sample acquisitions of the simulated instrument in mode M1 (0 to 4), 100 ns a
// sample, of a 100 kHz sine at different phases, so that the persistence sees a moving trace of a few
// periods on the screen.
std::vector<std::string> fullPathPackets(int mode, int count);

}  // namespace zorvik
