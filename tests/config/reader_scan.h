#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zorvik::test {

// One call of a settings reader found in a source text: `store.getInt(section, name[, default])` and
// its kin (getBool, getDouble, getText, GetSettingValue).
struct ReaderCall {
  std::string where;  // "file:line"
  std::string method;
  std::optional<std::string> section;  // the text, when a literal or a constant of the source gives it
  std::optional<std::string> name;
  std::optional<std::string> defaultSource;  // the default argument as written, when one is passed
  std::optional<std::string>
      defaultLiteral;  // its value, when it is a literal (true/false as "True"/"False")
};

// Named string constants ("constexpr char kSection[] = "Meters";") that calls may use for a section.
struct SourceConstants {
  void add(std::string_view source);
  std::optional<std::string> find(const std::string& identifier) const;

  std::vector<std::pair<std::string, std::string>> entries;
};

// The reader calls of one source text; `file` names it in `where`. Comments are skipped. An argument
// that is an identifier takes its value from the text's own constants, then from `shared`.
std::vector<ReaderCall> scanReaderCalls(std::string_view source, const std::string& file,
                                        const SourceConstants& shared);

// What is wrong with a call whose section and name are known: a name the catalogue lacks, a default
// passed for a setting that takes the catalogue's, or none passed where the reader must compute it.
// Empty when the call is right.
std::string readerProblem(const ReaderCall& call);

}  // namespace zorvik::test
