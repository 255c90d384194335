#pragma once
#include <string>
#include <vector>

namespace zorvik {

// What zorvik and zorvik-cli session take from their command line.
struct CommandLine {
  std::vector<std::string> words;       // "first", "reset" and any other plain word
  std::vector<std::string> simOptions;  // each --sim value, applied in order
  std::vector<std::string> sets;        // --set SECTION/NAME=VALUE
  std::string device;                   // --device unix:PATH|tcp:HOST:PORT: an instrument served there
  std::string packetFile;               // a packet file to show at start (a word with a '.' or a '/')
  bool dev = false;
  double reportAfter = 0;  // --report-after SECONDS: the window's figures printed, then it quits
};

// Throws Fault for an unknown option or one missing its value.
CommandLine parseCommandLine(const std::vector<std::string>& args);

// --help/-h or --version among a program's arguments, whichever comes first; the program prints the
// text and exits 0 without doing anything else (zorvik answers before it looks for a display).
enum class InfoRequest { None, Help, Version };
InfoRequest infoRequest(const std::vector<std::string>& args);
// "0.1.0": what both programs print behind their name for --version.
std::string programVersion();
// What `zorvik --help` prints.
std::string guiUsage();

// SECTION/NAME=VALUE split at the first '/' and the first '=' after it; Fault when malformed.
struct SettingAssignment {
  std::string section, name, value;
};
SettingAssignment parseSettingAssignment(const std::string& text);

// When args[i] is NAME VALUE or NAME=VALUE: the value, with i on the last word taken.
bool takeValue(const std::vector<std::string>& args, size_t& i, const std::string& name, std::string& value);
// A whole number lo..hi filling the text; Fault naming the option otherwise.
int wholeNumberOption(const std::string& name, const std::string& text, int lo, int hi);
// A finite number at the start of the text; Fault naming the option otherwise.
double numberOption(const std::string& name, const std::string& text);

}  // namespace zorvik
