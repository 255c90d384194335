#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace zorvik {

// Reads a REG file's bytes line by line as the import always has: a line ends at CR LF or at a CR
// alone; a lone LF belongs to the line.
class RegLineReader {
 public:
  explicit RegLineReader(std::string_view text) : text_(text) {}
  explicit RegLineReader(std::string&&) = delete;  // it reads the text in place, so the text must outlive it
  // The next line without its end; false at the end of the file.
  bool next(std::string& line);
  // 1-based number of the line last read.
  int lineNumber() const { return line_; }

 private:
  std::string_view text_;
  std::size_t pos_ = 0;
  int line_ = 0;
};

// Result code of a key line; 0 means malformed; other codes are value types.
constexpr int kRegKeyLine = -1;

struct RegLine {
  int type = 0;
  std::string name;   // key path (key line) or value name
  std::string data;   // root number as decimal text (key line), the text (1), eight hex digits (4)
  std::string bytes;  // the bytes of the hexadecimal forms (2, 3, 7, 11)
};

// Parses one line of a REG file; a hexadecimal list continued by a backslash reads its further lines
// from `file`.
RegLine ParseRegLine(std::string_view line, RegLineReader& file);

// The data a dword line stores: the eight digits as a signed 32-bit number, its decimal text, and of
// that the first four bytes (zero-filled when shorter).
std::string regDwordImportData(std::string_view eightDigits);

}  // namespace zorvik
