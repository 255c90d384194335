#include "config/run_at_login.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "config/xdg_paths.h"
#include "core/fault.h"
#include "core/file_write.h"

namespace zorvik {

namespace {

void checkName(const std::string& name) {
  if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos ||
      name.find('\0') != std::string::npos)
    throw Fault("\"" + name + "\" makes no name for an autostart entry");
}

std::string trimmed(const std::string& s) {
  size_t b = s.find_first_not_of(" \t\r");
  if (b == std::string::npos) return {};
  return s.substr(b, s.find_last_not_of(" \t\r") - b + 1);
}

}  // namespace

std::string autostartFile(const std::string& name) {
  checkName(name);
  return xdgConfigHome() + "/autostart/" + name + ".desktop";
}

std::string autostartCommandLine(const std::string& executable) {
  // Reserved characters make the argument quoted; inside quotes these four take a backslash.
  // A percent sign is doubled in any case, since the key expands field codes.
  bool quote = executable.find_first_of(" \t\n\"'\\><~|&;$*?#()`") != std::string::npos;
  std::string out;
  for (char c : executable) {
    if (c == '%') {
      out += "%%";
      continue;
    }
    if (quote && (c == '"' || c == '`' || c == '$' || c == '\\')) out += '\\';
    out += c;
  }
  return quote ? "\"" + out + "\"" : out;
}

void SetRunAtLogin(const std::string& name, const std::string& commandLine) {
  if (commandLine.find_first_of("\r\n") != std::string::npos)
    throw Fault("The command line for the autostart entry holds a line break");
  std::filesystem::path file = autostartFile(name);
  std::error_code ec;
  std::filesystem::create_directories(file.parent_path(), ec);
  writeFileReplacing(file.string(), "[Desktop Entry]\nType=Application\nName=" + name +
                                        "\nExec=" + commandLine + "\nX-GNOME-Autostart-enabled=true\n");
}

void ClearRunAtLogin(const std::string& name) {
  std::error_code ec;
  std::filesystem::remove(autostartFile(name), ec);
  if (ec) throw Fault("Cannot remove the autostart entry \"" + autostartFile(name) + "\": " + ec.message());
}

bool IsRunAtLogin(const std::string& name) {
  std::ifstream in(autostartFile(name), std::ios::binary);
  if (!in) return false;
  std::string line;
  bool hidden = false;
  std::string exec;
  bool seenExec = false;
  while (std::getline(in, line)) {
    if (line.rfind("Exec=", 0) == 0 && !seenExec) {
      exec = trimmed(line.substr(5));
      seenExec = true;
    } else if (trimmed(line) == "Hidden=true") {
      hidden = true;  // an entry the desktop was told to ignore doesn't start anything
    }
  }
  return !hidden && !exec.empty();
}

}  // namespace zorvik
