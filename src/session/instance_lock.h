#pragma once
#include <QLockFile>
#include <memory>
#include <string>
#include <vector>

namespace zorvik {

// Decides which instance this process is: the first when the command line holds "first" anywhere or
// when no other instance runs (nobody holds the lock of instance 1); else the second.
class InstanceLock {
 public:
  // lockDir empty: the system's temporary directory (ZORVIK_LOCK_DIR overrides it).
  explicit InstanceLock(const std::vector<std::string>& args, const std::string& lockDir = {});
  int instance() const { return instance_; }

 private:
  std::unique_ptr<QLockFile> lock_;
  int instance_ = 1;
};

bool hasWord(const std::vector<std::string>& args, const std::string& word);

}  // namespace zorvik
