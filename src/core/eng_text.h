#pragma once
#include <string>

namespace zorvik {

// A value in engineering form with up to three significant digits and the prefixes n, µ, m, k, M, G,
// e.g. engineeringText(0.0005, "s") == "500µs", engineeringText(0.02, "V") == "20mV".
std::string engineeringText(double value, const std::string& unit);

}  // namespace zorvik
