#pragma once
#include <map>
#include <string>
#include <utility>

#include "config/cpu_speed.h"

namespace zorvik {

// The one seam through which every setting is read and written. The persistent store stands behind it;
// a missing value reads as the caller's default.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  virtual std::string GetSettingValue(const std::string& section, const std::string& name,
                                      const std::string& def) = 0;
  virtual void SaveSettingValue(const std::string& section, const std::string& name,
                                const std::string& value) = 0;

  // The machine the catalogue's speed-dependent defaults are taken for.
  void setCpuMHz(int cpuMHz) { cpuMHz_ = cpuMHz; }
  int cpuMHz() const { return cpuMHz_; }

  // Reads whose default is the catalogue's, the single source of defaults. Fault for a name the
  // catalogue lacks and for one whose default its reader computes (that reader passes it, below).
  int getInt(const std::string& section, const std::string& name);
  bool getBool(const std::string& section, const std::string& name);
  double getDouble(const std::string& section, const std::string& name);
  std::string getText(const std::string& section, const std::string& name);

  // Reads of the settings whose default the reader computes (a centred place, a position another part
  // sets). Fault for a name the catalogue lacks, so that a misspelt or built name can't read unseen.
  int getInt(const std::string& section, const std::string& name, int computedDefault);
  bool getBool(const std::string& section, const std::string& name, bool computedDefault);
  double getDouble(const std::string& section, const std::string& name, double computedDefault);

  void saveInt(const std::string& section, const std::string& name, long long value);
  void saveBool(const std::string& section, const std::string& name, bool value);

 private:
  int cpuMHz_ = kDefaultCpuMHz;
};

// Settings kept only for the life of the object (tests, the CLI's scratch store).
class MemorySettings : public SettingsStore {
 public:
  std::string GetSettingValue(const std::string& section, const std::string& name,
                              const std::string& def) override;
  void SaveSettingValue(const std::string& section, const std::string& name,
                        const std::string& value) override;
  const std::map<std::pair<std::string, std::string>, std::string>& values() const { return values_; }

 private:
  std::map<std::pair<std::string, std::string>, std::string> values_;
};

}  // namespace zorvik
