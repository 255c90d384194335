#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zorvik {

// A double-zero list from a literal that spells its zeros: filterList("Text (*.txt)\0*.txt\0\0").
template <size_t N>
constexpr std::string_view filterList(const char (&text)[N]) {
  return std::string_view(text, N - 1);
}

// One entry of a file dialog's type list.
struct FileFilter {
  std::string description;  // "Zorvik data files (*.zrv)"
  std::string pattern;      // "*.zrv"; several are joined by ';'
};

// The platform's double-zero list: description, zero, pattern, zero, ..., and one more zero after the
// last pattern. An empty description ends the list; a description without its pattern is dropped.
std::vector<FileFilter> parseFilterList(std::string_view list);

// The entry as a Qt name filter: patterns separated by blanks, "*.*" as "*" (names without a dot are
// files too), and the patterns in the trailing parentheses where Qt looks for them. A description that
// already ends in its patterns keeps its text.
std::string qtNameFilter(const FileFilter& filter);

}  // namespace zorvik
