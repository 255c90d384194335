#include <gtest/gtest.h>

#include <filesystem>

#include "config/config_test_util.h"
#include "config/reader_scan.h"

namespace zorvik {
namespace {

namespace fs = std::filesystem;
using test::ReaderCall;

struct Scan {
  std::vector<ReaderCall> calls;
  std::vector<std::string> problems;
  int checked = 0;  // calls whose section and name the scan could read
};

Scan scan(const std::vector<std::pair<std::string, std::string>>& files) {
  test::SourceConstants shared;
  for (const auto& [path, text] : files) shared.add(text);
  Scan out;
  for (const auto& [path, text] : files)
    for (ReaderCall& call : test::scanReaderCalls(text, path, shared)) {
      if (call.section && call.name) ++out.checked;
      if (std::string problem = test::readerProblem(call); !problem.empty()) out.problems.push_back(problem);
      out.calls.push_back(std::move(call));
    }
  return out;
}

std::string lines(const std::vector<std::string>& texts) {
  std::string out;
  for (const std::string& t : texts) out += t + "\n";
  return out;
}

// Every setting the program reads is a row of the catalogue, and only the readers whose default the
// catalogue leaves to them pass one: a default written at a reader can't drift from the catalogue's.
TEST(SettingsReaders, EveryReadInTheSourceIsInTheCatalogueWithItsDefault) {
  std::vector<std::pair<std::string, std::string>> files;
  for (const fs::directory_entry& f : fs::recursive_directory_iterator(ZORVIK_SOURCE_DIR)) {
    const std::string ext = f.path().extension().string();
    if (f.is_regular_file() && (ext == ".cpp" || ext == ".h"))
      files.emplace_back(fs::relative(f.path(), ZORVIK_SOURCE_DIR).string(),
                         test::readFile(f.path().string()));
  }
  const Scan s = scan(files);
  EXPECT_TRUE(s.problems.empty()) << lines(s.problems);
  // Some ninety reads, most by a written name: far fewer found means the scan broke.
  EXPECT_GE(s.calls.size(), 85u);
  EXPECT_GE(s.checked, 65) << "reader calls found: " << s.calls.size();
}

TEST(SettingsReaders, TheScanFindsWrongDefaultsAndUnknownNames) {
  const std::string source = R"src(
namespace {
constexpr char kSection[] = "Spectrum";
}
void load(SettingsStore& s, Widget* w) {
  bool visible = s.getBool("Spectrum", "Visible", true);
  int range = s.getInt(kSection, "DBdiap", 4);
  int odd = s.getInt("Spectrum",
                     "Nonesuch");
  int left = s.getInt("Startup Position", "ZorvikWin Left");
  int top = w->settings()->getInt("Startup Position", "ZorvikWin Top", (height - w->height()) / 2);
  std::string mode = s.getText("Ch1", "AcqMode");
  int interpolation = s.getInt(kShared, "Interpolation1", std::max(0, 1));
  // s.getBool("Spectrum", "Visible", true) in a comment is no read
  std::string key = "x.getInt(\"Spectrum\", \"Nonesuch\")";
  int colour = s.getInt("Meters Colors", name + " Back", 7);
  int frames = QInputDialog::getInt(this, "Title", "Frames", 10);
}
)src";
  const Scan s = scan({{"shared.h", "constexpr const char* kShared = \"Stat\";"}, {"window.cpp", source}});

  ASSERT_EQ(s.calls.size(), 8u);
  EXPECT_EQ(s.checked, 7);  // all but the one with a built name
  ASSERT_EQ(s.problems.size(), 5u) << lines(s.problems);
  EXPECT_EQ(s.problems[0],
            "window.cpp:6: \"Spectrum/Visible\" is read with another default "
            "(true; the catalogue holds \"False\"): read it without one");
  EXPECT_NE(s.problems[1].find(
                "window.cpp:7: \"Spectrum/DBdiap\" is read with the catalogue's default written again"),
            std::string::npos);
  EXPECT_EQ(s.problems[2], "window.cpp:8: getInt reads \"Spectrum/Nonesuch\", which the catalogue lacks");
  EXPECT_NE(s.problems[3].find(
                "window.cpp:10: \"Startup Position/ZorvikWin Left\" has no default in the catalogue"),
            std::string::npos);
  EXPECT_NE(
      s.problems[4].find("window.cpp:13: \"Stat/Interpolation1\" is read with another default "
                         "(std::max(0, 1); the catalogue holds \"0\" or \"1\" by the processor's speed)"),
      std::string::npos);
}

}  // namespace
}  // namespace zorvik
