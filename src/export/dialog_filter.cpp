#include "export/dialog_filter.h"

namespace zorvik {

std::vector<FileFilter> parseFilterList(std::string_view list) {
  std::vector<FileFilter> out;
  auto next = [&list](std::string_view& part) {
    if (list.empty()) return false;
    size_t zero = list.find('\0');
    part = list.substr(0, zero);
    list = zero == std::string_view::npos ? std::string_view() : list.substr(zero + 1);
    return true;
  };
  std::string_view description, pattern;
  while (next(description) && !description.empty() && next(pattern))
    out.push_back({std::string(description), std::string(pattern)});
  return out;
}

std::string qtNameFilter(const FileFilter& filter) {
  std::string patterns;
  size_t start = 0;
  while (start <= filter.pattern.size()) {
    size_t end = filter.pattern.find(';', start);
    if (end == std::string::npos) end = filter.pattern.size();
    std::string one = filter.pattern.substr(start, end - start);
    if (one == "*.*") one = "*";
    if (!one.empty()) patterns += (patterns.empty() ? "" : " ") + one;
    start = end + 1;
  }
  if (patterns.empty()) patterns = "*";
  std::string text = filter.description;
  const std::string given = "(" + filter.pattern + ")";
  if (text.size() >= given.size() && text.compare(text.size() - given.size(), given.size(), given) == 0)
    text.erase(text.size() - given.size());
  else
    text += ' ';
  return text + "(" + patterns + ")";
}

}  // namespace zorvik
