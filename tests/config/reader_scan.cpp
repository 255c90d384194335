#include "config/reader_scan.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <regex>

#include "config/catalogue.h"
#include "config/text_number.h"

namespace zorvik::test {

namespace {

constexpr std::array<std::string_view, 5> kReaders{"getInt", "getBool", "getDouble", "getText",
                                                   "GetSettingValue"};
// Speeds on both sides of every threshold the catalogue compares with.
constexpr std::array<int, 6> kSpeeds{200, 300, 301, 600, 601, 2400};

bool identChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

// The end of the string or character literal that opens at `i` (one past its closing quote).
std::size_t literalEnd(std::string_view s, std::size_t i) {
  const char quote = s[i];
  for (++i; i < s.size(); ++i) {
    if (s[i] == '\\')
      ++i;
    else if (s[i] == quote)
      return i + 1;
  }
  return s.size();
}

// The text with its comments blanked out, lines kept, so that a call in a comment is no call.
std::string withoutComments(std::string_view s) {
  std::string out(s);
  for (std::size_t i = 0; i < s.size();) {
    if (s[i] == '"' || (s[i] == '\'' && (i == 0 || !std::isxdigit(static_cast<unsigned char>(s[i - 1]))))) {
      i = literalEnd(s, i);
    } else if (s.substr(i, 2) == "//") {
      for (; i < s.size() && s[i] != '\n'; ++i) out[i] = ' ';
    } else if (s.substr(i, 2) == "/*") {
      std::size_t end = s.find("*/", i + 2);
      end = end == std::string_view::npos ? s.size() : end + 2;
      for (; i < end; ++i)
        if (out[i] != '\n') out[i] = ' ';
    } else {
      ++i;
    }
  }
  return out;
}

std::string trim(std::string_view t) {
  while (!t.empty() && std::isspace(static_cast<unsigned char>(t.front()))) t.remove_prefix(1);
  while (!t.empty() && std::isspace(static_cast<unsigned char>(t.back()))) t.remove_suffix(1);
  return std::string(t);
}

// The value of one or more adjacent string literals making up the whole argument.
std::optional<std::string> stringLiteral(std::string_view arg) {
  std::string value;
  std::size_t i = 0;
  bool any = false;
  while (i < arg.size()) {
    if (std::isspace(static_cast<unsigned char>(arg[i]))) {
      ++i;
      continue;
    }
    if (arg[i] != '"') return std::nullopt;
    const std::size_t end = literalEnd(arg, i);
    for (std::size_t j = i + 1; j + 1 < end; ++j) {
      if (arg[j] == '\\' && j + 2 < end) {
        ++j;
        value += arg[j] == 'n' ? '\n' : arg[j] == 't' ? '\t' : arg[j];
      } else {
        value += arg[j];
      }
    }
    any = true;
    i = end;
  }
  return any ? std::optional(value) : std::nullopt;
}

// The top-level arguments of the call whose '(' stands at `open`, and the index past its ')'.
std::vector<std::string> arguments(std::string_view s, std::size_t open, std::size_t& close) {
  std::vector<std::string> args;
  int depth = 0;
  std::size_t start = open + 1;
  for (std::size_t i = open; i < s.size();) {
    const char c = s[i];
    if (c == '"' || c == '\'') {
      i = literalEnd(s, i);
      continue;
    }
    if (c == '(' || c == '[' || c == '{') ++depth;
    if (c == ')' || c == ']' || c == '}') {
      if (--depth == 0) {
        if (!trim(s.substr(start, i - start)).empty() || !args.empty())
          args.push_back(trim(s.substr(start, i - start)));
        close = i + 1;
        return args;
      }
    }
    if (c == ',' && depth == 1) {
      args.push_back(trim(s.substr(start, i - start)));
      start = i + 1;
    }
    ++i;
  }
  close = s.size();
  return args;
}

bool sameValue(const std::string& method, const std::string& a, const std::string& b) {
  if (method == "getBool")
    return textToBool(a, false) == textToBool(b, false) && textToBool(a, true) == textToBool(b, true);
  if (method == "getInt" || method == "getDouble") return parseLeadingNumber(a) == parseLeadingNumber(b);
  return a == b;
}

}  // namespace

void SourceConstants::add(std::string_view source) {
  static const std::regex constant(R"re(\b(k[A-Z]\w*)\s*(?:\[\s*\])?\s*=\s*"((?:[^"\\]|\\.)*)"\s*;)re");
  const std::string text = withoutComments(source);
  for (auto it = std::sregex_iterator(text.begin(), text.end(), constant); it != std::sregex_iterator(); ++it)
    entries.emplace_back((*it)[1].str(), (*it)[2].str());
}

std::optional<std::string> SourceConstants::find(const std::string& identifier) const {
  std::optional<std::string> found;
  for (const auto& [name, value] : entries) {
    if (name != identifier) continue;
    if (found && *found != value) return std::nullopt;  // two meanings: no meaning
    found = value;
  }
  return found;
}

std::vector<ReaderCall> scanReaderCalls(std::string_view source, const std::string& file,
                                        const SourceConstants& shared) {
  SourceConstants own;
  own.add(source);
  auto resolve = [&](const std::string& arg) -> std::optional<std::string> {
    if (auto literal = stringLiteral(arg)) return literal;
    if (arg.empty() || !std::all_of(arg.begin(), arg.end(), identChar)) return std::nullopt;
    if (auto value = own.find(arg)) return value;
    return shared.find(arg);
  };

  const std::string text = withoutComments(source);
  std::vector<ReaderCall> calls;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '.' && !(text[i] == '>' && i > 0 && text[i - 1] == '-')) continue;
    std::size_t at = i + 1;
    while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at]))) ++at;
    std::size_t end = at;
    while (end < text.size() && identChar(text[end])) ++end;
    const std::string_view method = std::string_view(text).substr(at, end - at);
    if (std::find(kReaders.begin(), kReaders.end(), method) == kReaders.end()) continue;
    std::size_t open = end;
    while (open < text.size() && std::isspace(static_cast<unsigned char>(text[open]))) ++open;
    if (open >= text.size() || text[open] != '(') continue;

    std::size_t close = open;
    const std::vector<std::string> args = arguments(text, open, close);
    if (args.size() < 2 || args.size() > 3) continue;
    ReaderCall call;
    call.where =
        file + ":" + std::to_string(1 + std::count(text.begin(), text.begin() + static_cast<long>(at), '\n'));
    call.method = std::string(method);
    call.section = resolve(args[0]);
    call.name = resolve(args[1]);
    if (args.size() == 3) {
      const std::string& d = args[2];
      call.defaultSource = d;
      static const std::regex number(R"(^[-+]?\d+(\.\d*)?([eE][-+]?\d+)?[fFlLuU]*$)");
      if (d == "true" || d == "false")
        call.defaultLiteral = d == "true" ? "True" : "False";
      else if (std::regex_match(d, number))
        call.defaultLiteral = d.substr(0, d.find_first_of("fFlLuU"));
      else
        call.defaultLiteral = stringLiteral(d);
    }
    calls.push_back(std::move(call));
    i = close - 1;
  }
  return calls;
}

std::string readerProblem(const ReaderCall& call) {
  if (!call.section || !call.name) return {};
  const std::string setting = "\"" + *call.section + "/" + *call.name + "\"";
  const CatalogueEntry* e = findCatalogueEntry(*call.section, *call.name);
  if (e == nullptr)
    return call.where + ": " + call.method + " reads " + setting + ", which the catalogue lacks";
  const bool computed = e->rule == DefaultRule::Reader || e->rule == DefaultRule::WrittenOnly;
  if (!call.defaultSource)
    return computed ? call.where + ": " + setting +
                          " has no default in the catalogue; its reader must pass the one it computes"
                    : std::string();
  if (computed) return {};

  std::vector<std::string> held;
  bool same = call.defaultLiteral.has_value();
  for (int mhz : kSpeeds) {
    const std::string d = catalogueDefault(*call.section, *call.name, mhz);
    if (std::find(held.begin(), held.end(), d) == held.end()) held.push_back(d);
    if (call.defaultLiteral && !sameValue(call.method, *call.defaultLiteral, d)) same = false;
  }
  std::string catalogue = "\"" + held[0] + "\"";
  if (held.size() > 1) catalogue += " or \"" + held[1] + "\" by the processor's speed";
  return call.where + ": " + setting + " is read with " +
         (same ? "the catalogue's default written again" : "another default") + " (" + *call.defaultSource +
         "; the catalogue holds " + catalogue + "): read it without one";
}

}  // namespace zorvik::test
