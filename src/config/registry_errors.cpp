#include "config/registry_errors.h"

#include <utility>

namespace zorvik {

RegError::RegError(std::uint32_t number, std::string source, std::string description, const std::string& what)
    : Fault(what), number_(number), source_(std::move(source)), description_(std::move(description)) {}

namespace {
std::string fileErrorText(const std::string& description, const std::string& fileName, int line) {
  std::string t = description;
  if (line > 0) t += " at line " + std::to_string(line);
  if (!fileName.empty()) t += " of \"" + fileName + "\"";
  return t + " (" + RegFileError::kSource + ", error 321)";
}
}  // namespace

RegFileError::RegFileError(const std::string& description, const std::string& fileName, int line)
    : RegError(kNumber, kSource, description, fileErrorText(description, fileName, line)), line_(line) {}

RegWriteError::RegWriteError(int status, const std::string& storeMessage)
    : RegError(kNumber, kSource, "Error " + std::to_string(status) + ", Line 0",
               std::string("The setting could not be stored: ") + kSource + ": Error " +
                   std::to_string(status) + ", Line 0" +
                   (storeMessage.empty() ? "" : " (" + storeMessage + ")")),
      status_(status) {}

}  // namespace zorvik
