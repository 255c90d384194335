#include "core/progress_line.h"

#include <unistd.h>

#include <algorithm>

namespace zorvik {

ProgressLine::ProgressLine(std::ostream& out, bool onTerminal, std::string what, int total)
    : out_(out), on_(onTerminal && total > 0), what_(std::move(what)), total_(std::max(total, 1)) {}

ProgressLine::~ProgressLine() {
  if (on_ && shownPercent_ >= 0) out_ << "\r\x1b[K" << std::flush;
}

void ProgressLine::step(int done) {
  if (!on_) return;
  const int percent = static_cast<int>(std::clamp<long long>(100LL * done / total_, 0, 100));
  if (percent == shownPercent_) return;
  shownPercent_ = percent;
  out_ << "\r" << what_ << ": " << done << "/" << total_ << " (" << percent << "%)" << std::flush;
}

bool ProgressLine::stderrIsTerminal() {
  return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace zorvik
