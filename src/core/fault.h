#pragma once
#include <stdexcept>
#include <string>

namespace zorvik {

// What cannot sensibly go on (a malformed file, a value that makes no number) throws this.
// It is caught at the event boundary: a box in the GUI, an error line and exit 2 in the CLI.
class Fault : public std::runtime_error {
 public:
  explicit Fault(const std::string& what) : std::runtime_error(what) {}
};

}  // namespace zorvik
