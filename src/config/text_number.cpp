#include "config/text_number.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <string>

namespace zorvik {

namespace {
bool iequals(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}
std::string_view trim(std::string_view t) {
  while (!t.empty() && std::isspace(static_cast<unsigned char>(t.front()))) t.remove_prefix(1);
  while (!t.empty() && std::isspace(static_cast<unsigned char>(t.back()))) t.remove_suffix(1);
  return t;
}
}  // namespace

std::optional<double> parseLeadingNumber(std::string_view text) {
  text = trim(text);
  std::string buf;
  size_t i = 0;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) buf += text[i++];
  bool digits = false;
  while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) {
    buf += text[i++];
    digits = true;
  }
  if (i < text.size() && (text[i] == '.' || text[i] == ',')) {
    buf += '.';
    ++i;
    while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) {
      buf += text[i++];
      digits = true;
    }
  }
  if (!digits) return std::nullopt;
  if (i + 1 < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    size_t j = i + 1;
    std::string exp = "e";
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) exp += text[j++];
    bool expDigits = false;
    while (j < text.size() && std::isdigit(static_cast<unsigned char>(text[j]))) {
      exp += text[j++];
      expDigits = true;
    }
    if (expDigits) buf += exp;
  }
  double v = std::strtod(buf.c_str(), nullptr);
  if (!std::isfinite(v)) return std::nullopt;
  return v;
}

double textToNumber(std::string_view text, double def) {
  auto v = parseLeadingNumber(text);
  return v ? *v : def;
}

bool textToBool(std::string_view text, bool def) {
  std::string_view t = trim(text);
  if (iequals(t, "true")) return true;
  if (iequals(t, "false")) return false;
  auto v = parseLeadingNumber(t);
  return v ? (*v != 0) : def;
}

}  // namespace zorvik
