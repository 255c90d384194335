#include "measure/meter_text.h"

#include <cmath>
#include <cstdio>

namespace zorvik {

std::string formatPicture(double value, const std::string& picture) {
  if (!std::isfinite(value)) return std::isnan(value) ? "NaN" : value > 0 ? "Inf" : "-Inf";
  const size_t point = picture.find('.');
  const std::string whole = picture.substr(0, point);
  const std::string frac = point == std::string::npos ? std::string() : picture.substr(point + 1);
  int fracDigits = 0, fracRequired = 0, wholeRequired = 0;
  for (char c : frac)
    if (c == '0' || c == '#') ++fracDigits, fracRequired += c == '0';
  for (char c : whole) wholeRequired += c == '0';
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*f", fracDigits, std::fabs(value));
  std::string digits(buf);
  std::string intPart = digits.substr(0, digits.find('.'));
  std::string fracPart = fracDigits > 0 ? digits.substr(digits.find('.') + 1) : std::string();
  // Optional trailing digits drop when zero.
  while (static_cast<int>(fracPart.size()) > fracRequired && fracPart.back() == '0') fracPart.pop_back();
  if (intPart == "0" && wholeRequired == 0) intPart.clear();
  while (static_cast<int>(intPart.size()) < wholeRequired) intPart.insert(intPart.begin(), '0');
  const bool negative = value < 0 && (std::stod(digits) != 0);
  std::string out = negative ? "-" : "";
  out += intPart;
  if (!fracPart.empty()) out += "." + fracPart;
  // Literal characters after the digits (a blank in "000 ") stand as they are.
  for (size_t i = picture.find_last_of("0#.") + 1; i < picture.size(); ++i) out += picture[i];
  return out;
}

std::string meterEngineeringText(double value, double resolution, const std::string& unit, bool fixedWidth,
                                 MeterDigits digits) {
  const double m = std::fabs(value);
  if (resolution / 32 > m) return fixedWidth ? " 000" + std::string(unit.size() + 1, ' ') : "0";
  // The row's limit is 9.95, 9.995 or 9.9995 times its power of ten, so rounding never reaches the next.
  const int n = static_cast<int>(digits);
  const double edge = 10 - 5 * std::pow(10.0, -(n - 1));
  static const char* const kFixed[3][3] = {
      {"0.00", "00.0", "000 "}, {"0.000", "00.00", "000.0"}, {"0.0000", "00.000", "000.00"}};
  static const char* const kFree[3] = {"0.0#", "00.0", "000"};
  struct Decade {
    double scale;
    const char* prefix;
  };
  static const Decade kDecades[] = {{1e9, "n"}, {1e6, "µ"}, {1e3, "m"}, {1, " "}, {1e-3, "k"}, {1e-6, "M"}};
  double limit = edge * 1e-9;
  // Below the first row's decade (0 among them) the value falls through to the last row.
  if (m >= edge * 1e-10)
    for (const Decade& d : kDecades) {
      for (int row = 0; row < 3; ++row, limit *= 10) {
        if (m < limit) {
          const char* picture = fixedWidth ? kFixed[n - 3][row] : kFree[row];
          return formatPicture(value * d.scale, picture) + d.prefix + unit;
        }
      }
    }
  return formatPicture(value / 1e9, "##0.0#") + "G" + unit;
}

}  // namespace zorvik
