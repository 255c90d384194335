#include "config/reg_parse.h"

#include <optional>

#include "config/registry_store.h"

namespace zorvik {

namespace {

// Only blanks are trimmed, not tabs, as the import always did.
std::string_view trimBlanks(std::string_view t) {
  while (!t.empty() && t.front() == ' ') t.remove_prefix(1);
  while (!t.empty() && t.back() == ' ') t.remove_suffix(1);
  return t;
}

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

RegLine malformed() {
  return {};
}

RegLine parseKeyLine(std::string_view t) {
  std::size_t backslash = t.find('\\');
  std::size_t end = backslash == std::string_view::npos ? t.size() - 1 : backslash;
  std::optional<std::uint32_t> root = regRootByName(t.substr(1, end - 1));
  if (!root) return malformed();
  // A last path element of one character behind a backslash is refused, as it always was.
  if (t.size() >= 3 && t[t.size() - 3] == '\\') return malformed();
  RegLine r;
  r.type = kRegKeyLine;
  if (backslash != std::string_view::npos)
    r.name = std::string(t.substr(backslash + 1, t.size() - 2 - backslash));
  r.data = std::to_string(*root);
  return r;
}

// Two-digit groups in steps of three characters; whatever stands between them is not looked at.
bool walkPairs(std::string_view part, std::string& bytes) {
  for (std::size_t i = 0; i < part.size(); i += 3) {
    if (i + 1 >= part.size()) return false;
    int hi = hexValue(part[i]);
    int lo = hexValue(part[i + 1]);
    if (hi < 0 || lo < 0) return false;
    bytes += static_cast<char>(hi * 16 + lo);
  }
  return true;
}

bool readHexList(std::string_view part, RegLineReader& file, std::string& bytes) {
  std::string next;
  for (;;) {
    bool continued = !part.empty() && part.back() == '\\';
    if (continued) part = part.size() >= 2 ? part.substr(0, part.size() - 2) : std::string_view();
    if (!walkPairs(part, bytes)) return false;
    if (!continued) return true;
    if (!file.next(next)) return false;  // the file ended inside a continued list
    part = trimBlanks(next);
  }
}

// Character i (1-based) takes 256 times byte 2i plus byte 2i+1: the first byte is skipped and pairs are
// read across their boundaries. A byte past the end reads as 0; a code above 255 has no byte in this
// code page and becomes "?".
std::string mergeMultiString(const std::string& bytes) {
  auto at = [&](std::size_t oneBased) -> unsigned {
    return oneBased - 1 < bytes.size() ? static_cast<unsigned char>(bytes[oneBased - 1]) : 0u;
  };
  std::string chars;
  for (std::size_t i = 1; i <= bytes.size() / 2; ++i) {
    unsigned code = 256 * at(2 * i) + at(2 * i + 1);
    chars += code <= 255 ? static_cast<char>(code) : '?';
  }
  return chars;
}

}  // namespace

bool RegLineReader::next(std::string& line) {
  if (pos_ >= text_.size()) return false;
  // CR LF, CR alone or LF alone (a file written on this system) ends a line.
  std::size_t end = text_.find_first_of("\r\n", pos_);
  if (end == std::string_view::npos) {
    line.assign(text_.substr(pos_));
    pos_ = text_.size();
  } else {
    line.assign(text_.substr(pos_, end - pos_));
    pos_ = end + 1;
    if (text_[end] == '\r' && pos_ < text_.size() && text_[pos_] == '\n') ++pos_;
  }
  ++line_;
  return true;
}

RegLine ParseRegLine(std::string_view line, RegLineReader& file) {
  if (line.empty()) return malformed();
  std::string_view t = trimBlanks(line);
  if (t.size() >= 2 && t.front() == '[' && t.back() == ']') return parseKeyLine(t);

  // A line without "=" (a line of blanks among them) is malformed.
  std::size_t eq = t.find('=');
  if (eq == std::string_view::npos || eq == 0 || eq == 2) return malformed();
  RegLine r;
  if (eq == 1) {
    if (t[0] != '@') return malformed();
  } else {
    if (t[0] != '"' || t[eq - 1] != '"') return malformed();
    r.name = std::string(t.substr(1, eq - 2));
  }

  if (eq + 1 < t.size() && t[eq + 1] == '"' && t.back() == '"') {
    if (eq + 1 == t.size() - 1) return malformed();  // one quote alone is no string
    std::string_view text = t.substr(eq + 2, t.size() - eq - 3);
    for (std::size_t i = 0; i < text.size(); ++i) {
      r.data += text[i];
      if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '\\') ++i;
    }
    r.type = 1;
    return r;
  }

  std::size_t colon = t.find(':', eq + 1);
  if (colon == std::string_view::npos) return malformed();
  std::string_view tag = t.substr(eq + 1, colon - eq - 1);
  if (tag == "dword") {
    if (t.size() < 8) return malformed();
    std::string_view digits = t.substr(t.size() - 8);
    for (char c : digits)
      if (hexValue(c) < 0) return malformed();
    r.data = std::string(digits);
    r.type = 4;
    return r;
  }
  if (tag == "hex")
    r.type = 3;
  else if (tag == "hex(2)")
    r.type = 2;
  else if (tag == "hex(7)")
    r.type = 7;
  else if (tag == "hex(b)")
    r.type = 11;
  else
    return malformed();

  if (colon + 1 == t.size()) return r;
  if (!readHexList(t.substr(colon + 1), file, r.bytes)) return malformed();
  if (r.type == 7) r.bytes = mergeMultiString(r.bytes);
  return r;
}

std::string regDwordImportData(std::string_view eightDigits) {
  std::uint32_t n = 0;
  for (char c : eightDigits) {
    int v = hexValue(c);
    n = n * 16 + static_cast<std::uint32_t>(v < 0 ? 0 : v);
  }
  std::string text = std::to_string(static_cast<std::int32_t>(n));
  text.resize(4, '\0');
  return text;
}

}  // namespace zorvik
