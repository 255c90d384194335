#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "config/registry_store.h"

namespace zorvik {

// The pieces of the REG text (the registry editor's format) as the export writes them. Line ends are
// the caller's: every function returns text without a trailing CR LF.

// Upper-case hexadecimal bytes joined by commas, each through the picture "00": "05", "A", "1F".
std::string regByteList(std::string_view bytes);

// The list of a multi-string value: per character its low and then its high byte as two digits,
// wrapped with "\", CR LF and two blanks once the counted line length passes 75. `column` is the
// length of the line before the list (left side and type tag).
std::string regWrappedList(const std::vector<std::uint16_t>& chars, std::size_t column);

// The digits of a 32-bit value: its four bytes from the last to the first, each without padding.
std::string regDwordDigits(std::string_view data);

// "[HKEY_CURRENT_USER\path]", or "[HKEY_CURRENT_USER]" when the path is empty.
std::string regKeyLine(std::uint32_t root, std::string_view shownPath);

// One value line, e.g. "\"Color\"=\"3\"", "@=dword:1F", "\"b\"=hex:01,A".
std::string regValueLine(const RegValue& value);

}  // namespace zorvik
