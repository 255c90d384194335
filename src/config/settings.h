#pragma once
#include <map>
#include <string>
#include <utility>

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

  int getInt(const std::string& section, const std::string& name, int def);
  bool getBool(const std::string& section, const std::string& name, bool def);
  void saveInt(const std::string& section, const std::string& name, long long value);
  void saveBool(const std::string& section, const std::string& name, bool value);
};

// Settings kept only for the life of the object (tests, the CLI's scratch store).
class MemorySettings : public SettingsStore {
 public:
  std::string GetSettingValue(const std::string& section, const std::string& name,
                              const std::string& def) override;
  void SaveSettingValue(const std::string& section, const std::string& name, const std::string& value) override;
  const std::map<std::pair<std::string, std::string>, std::string>& values() const { return values_; }

 private:
  std::map<std::pair<std::string, std::string>, std::string> values_;
};

}  // namespace zorvik
