#pragma once
#include <cstdint>
#include <string>

#include "core/fault.h"

namespace zorvik {

// A failure in the style the settings code has always raised: a number, a source and a description.
// what() adds the context a box needs (file, line, store message).
class RegError : public Fault {
 public:
  RegError(std::uint32_t number, std::string source, std::string description, const std::string& what);
  std::uint32_t number() const { return number_; }
  const std::string& source() const { return source_; }
  const std::string& description() const { return description_; }

 private:
  std::uint32_t number_;
  std::string source_;
  std::string description_;
};

// Failure 321: a REG file that is not in the format (bad header, malformed line, value before a key).
class RegFileError : public RegError {
 public:
  static constexpr std::uint32_t kNumber = 321;
  static constexpr const char* kSource = "Zorvik Registry Module";
  static constexpr const char* kInvalidFormat = "Invalid file format";
  static constexpr const char* kValueWithoutKey = "REG file contains Value entry without Key entry";

  // line: 1-based line of the file where the import stopped, 0 when unknown.
  RegFileError(const std::string& description, const std::string& fileName, int line);
  int line() const { return line_; }

 private:
  int line_;
};

// A setting that could not be written: "Error <store status>, Line 0" from "RegSetKeyValue".
class RegWriteError : public RegError {
 public:
  static constexpr std::uint32_t kNumber = 0x80040000u;
  static constexpr const char* kSource = "RegSetKeyValue";

  RegWriteError(int status, const std::string& storeMessage);
  int status() const { return status_; }

 private:
  int status_;
};

}  // namespace zorvik
