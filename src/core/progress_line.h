#pragma once
#include <ostream>
#include <string>

namespace zorvik {

// "what: done/total" rewritten in place on a terminal while a long command runs, and wiped at the end, so
// that a user sees the work go on and a script's output stays clean (off when not on a terminal).
class ProgressLine {
 public:
  ProgressLine(std::ostream& out, bool onTerminal, std::string what, int total);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  // Shown when the whole percentage moved, so that a fast loop does not spend its time printing.
  void step(int done);

  // Whether the standard error stream is a terminal.
  static bool stderrIsTerminal();

 private:
  std::ostream& out_;
  bool on_;
  std::string what_;
  int total_;
  int shownPercent_ = -1;
};

}  // namespace zorvik
