#pragma once
#include <string>
#include <string_view>

namespace zorvik {

// The CSV files are one column: each value followed by a lone CR (no LF); the text writer adds the
// closing CR LF.

// An integer with its sign position kept: " 137", " 0", "-5", then CR.
void appendCsvInteger(std::string& out, long long value);

// Every byte of the packet from the fifth on (the master word and the first segment word are left
// out; later segment words and both bytes of 16-bit samples are written as they lie).
std::string packetCsvText(std::string_view packet);

}  // namespace zorvik
