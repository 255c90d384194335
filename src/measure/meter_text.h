#pragma once
#include <string>

namespace zorvik {

// The number forms of the meters: three, four or five significant digits with the prefixes n, µ, m, k,
// M and G, in a fixed width (leading zeros, a blank as the prefix of plain units) or free.
enum class MeterDigits { Three = 3, Four = 4, Five = 5 };

// A value below the resolution / 32 reads as zero: " 000" and blanks in a fixed width, "0" otherwise.
std::string meterEngineeringText(double value, double resolution, const std::string& unit, bool fixedWidth,
                                 MeterDigits digits);

// A value formatted by a picture of digits and one point ("00.0", "00.00", "##0.0#"): 0 a digit always
// shown, # a digit shown when not a leading or trailing zero; other characters stand as they are.
std::string formatPicture(double value, const std::string& picture);

}  // namespace zorvik
