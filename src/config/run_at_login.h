#pragma once
#include <string>

namespace zorvik {

// The program's name for its run-at-log-in entry.
constexpr const char* kRunAtLoginName = "Zorvik";

// Run at log-in is an XDG autostart entry: <config home>/autostart/<name>.desktop.
std::string autostartFile(const std::string& name);

// An executable path quoted as the Exec key of a desktop entry wants it.
std::string autostartCommandLine(const std::string& executable);

// Write or remove the entry; Fault when the file can't be written or removed, or the name makes no file name.
void SetRunAtLogin(const std::string& name, const std::string& commandLine);
void ClearRunAtLogin(const std::string& name);
// True when the entry exists, was read, and its command line isn't blank.
bool IsRunAtLogin(const std::string& name);

}  // namespace zorvik
