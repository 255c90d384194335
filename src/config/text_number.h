#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace zorvik {

// Reads the leading number of a text the way the front panel fields do: blanks skipped, an optional
// sign, digits, a point (or comma) and an exponent; returns nothing when no digit was read.
std::optional<double> parseLeadingNumber(std::string_view text);

// The number of a stored text, or the default when the text holds no number.
double textToNumber(std::string_view text, double def);

// "True"/"False" in any case, or a number (non-zero is true); else the default.
bool textToBool(std::string_view text, bool def);

}  // namespace zorvik
