#pragma once
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zorvik {

// Each register of the instrument stated once: the writer that sends the stored value, and what its echo
// moves once the header dispatch has put the value in the cache. The session's other named steps sit
// beside the table. Every entry does nothing until somebody fills it.
class RegisterTable {
 public:
  struct Entry {
    std::string name;
    std::function<void()> write;
    std::function<void()> echo;
  };

  // A second entry of the same name replaces the first.
  void add(std::string name, std::function<void()> write, std::function<void()> echo);
  void write(std::string_view name) const;
  void echo(std::string_view name) const;
  bool has(std::string_view name) const { return find(name) != nullptr; }
  const std::vector<Entry>& entries() const { return entries_; }
  void clear();

  // The time-base rule for the time per division of the front panel.
  std::function<void()> SetupTimeDiv = [] {};
  // Echoes of the session's limits.
  std::function<void()> offsetRangeUpdate = [] {};   // P1h, P1l
  std::function<void()> sampleLimitStep = [] {};     // QSh
  std::function<void()> presampleLimitStep = [] {};  // TCh
  // After the first-time timer: the run mode applies when WorkMode is checked.
  std::function<void()> applyRunMode = [] {};
  // The firmware update (headers "F", "W"; the "BOOT" state).
  std::function<bool()> firmwareLoadRunning = [] { return false; };
  std::function<void()> startFirmwareLoad = [] {};
  std::function<void(const std::string&, const std::string&)> firmwareHeader = [](const std::string&,
                                                                                  const std::string&) {};
  // Items of the instrument's own display.
  std::function<void(const std::string&)> devDispHeader = [](const std::string&) {};

 private:
  const Entry* find(std::string_view name) const;
  std::vector<Entry> entries_;
};

}  // namespace zorvik
