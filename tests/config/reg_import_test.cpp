#include <gtest/gtest.h>

#include <optional>

#include "config/reg_file.h"
#include "config/reg_parse.h"
#include "config/registry_errors.h"
#include "config_test_util.h"

namespace zorvik {
namespace {

using test::TempDir;

RegLine parse(const std::string& line, const std::string& rest = "") {
  RegLineReader more(rest);
  return ParseRegLine(line, more);
}

TEST(RegImport, ExportThenImportGivesTheSameTree) {
  TempDir dir;
  RegistryStore a(dir.file("a.sqlite"));
  const std::string top = "Software\\Zorvik\\Zorvik DSO1";
  a.setValue(HKEY_CURRENT_USER, top + "\\View", "Hor.lab.font size ", kRegString, "5");
  a.setValue(HKEY_CURRENT_USER, top + "\\View", "", kRegString, "unnamed");
  a.setValue(HKEY_CURRENT_USER, top + "\\Folders", "Images", kRegString, "C:\\pics\\\\net \"q\" \\");
  a.setValue(HKEY_CURRENT_USER, top + "\\Folders", "empty", kRegString, "");
  a.setValue(HKEY_CURRENT_USER, top + "\\Bin", "b", kRegBinary,
             std::string(300, '\x9c') + std::string(1, '\0'));
  a.setValue(HKEY_CURRENT_USER, top + "\\Bin", "x2", 2, "%PATH%");
  a.setValue(HKEY_CURRENT_USER, top + "\\Bin", "xb", 11, std::string("\x01\x00\xff", 3));
  a.createKey(HKEY_CURRENT_USER, top + "\\Empty\\Deeper");
  ASSERT_TRUE(ExportRegFile(a, dir.file("t.reg"), HKEY_CURRENT_USER, top, ""));

  RegistryStore b(dir.file("b.sqlite"));
  ASSERT_TRUE(ImportRegFile(b, dir.file("t.reg")));
  EXPECT_EQ(test::dumpTree(b, HKEY_CURRENT_USER, top), test::dumpTree(a, HKEY_CURRENT_USER, top));
}

TEST(RegImport, KeyLines) {
  RegLine r = parse("  [hkey_current_user\\Software\\Zorvik]  ");
  EXPECT_EQ(r.type, kRegKeyLine);
  EXPECT_EQ(r.name, "Software\\Zorvik");
  EXPECT_EQ(r.data, "2147483649");
  r = parse("[HKEY_USERS]");
  EXPECT_EQ(r.type, kRegKeyLine);
  EXPECT_EQ(r.name, "");
  EXPECT_EQ(parse("[HKEY_CURRENT_USER\\a\\b]").type, 0);  // backslash third from the end
  EXPECT_EQ(parse("[HKEY_CURRENT_USER\\ab]").type, kRegKeyLine);
  EXPECT_EQ(parse("[HKEY_NOWHERE\\abc]").type, 0);
  EXPECT_EQ(parse("[]").type, 0);
}

TEST(RegImport, ValueLines) {
  RegLine r = parse("\"a\"=\"x\\\\\\\\y\\\\\\z\"");
  EXPECT_EQ(r.type, 1);
  EXPECT_EQ(r.data, "x\\\\y\\\\z");
  r = parse("@=\"only \"first\" and last count\"");
  EXPECT_EQ(r.name, "");
  EXPECT_EQ(r.data, "only \"first\" and last count");
  r = parse("\"e\"=\"\"");
  EXPECT_EQ(r.type, 1);
  EXPECT_EQ(r.data, "");
  EXPECT_EQ(parse("\"\"=\"\"").type, 0);      // "=" in the third position
  EXPECT_EQ(parse("\"a=b\"=\"x\"").type, 0);  // "=" in the name
  EXPECT_EQ(parse("\"ab=c\"=\"x\"").type, 0);
  EXPECT_EQ(parse("x=\"1\"").type, 0);
  EXPECT_EQ(parse("\"a\"=\"").type, 0);
  EXPECT_EQ(parse("   ").type, 0);  // a line of blanks
  EXPECT_EQ(parse("\"a\"=hex(3):01").type, 0);
  EXPECT_EQ(parse("\"a\"=dword").type, 0);
}

TEST(RegImport, NumbersAndByteLists) {
  RegLine r = parse("\"d\"=dword:0000001f");
  EXPECT_EQ(r.type, 4);
  EXPECT_EQ(r.data, "0000001f");
  EXPECT_EQ(regDwordImportData("0000001f"), std::string("31\0\0", 4));
  EXPECT_EQ(regDwordImportData("FFFFFFFF"), std::string("-1\0\0", 4));
  EXPECT_EQ(regDwordImportData("12345678"), "3054");
  EXPECT_EQ(parse("\"d\"=dword:0001").type, 0);  // a short export does not come back
  EXPECT_EQ(parse("\"d\"=dword:0000001g").type, 0);

  r = parse("\"b\"=hex:0a,FF;10,\\", "   20,3b,\\  \r\n  4c\r\nnot read");
  EXPECT_EQ(r.type, 3);
  EXPECT_EQ(r.bytes, "\x0a\xff\x10\x20\x3b\x4c");
  EXPECT_EQ(parse("\"b\"=hex:").bytes, "");
  EXPECT_EQ(parse("\"b\"=hex:").type, 3);
  EXPECT_EQ(parse("\"b\"=hex(b):01,0").type, 0);
  EXPECT_EQ(parse("\"b\"=hex:0g").type, 0);
  EXPECT_EQ(parse("\"b\"=hex:01,\\").type, 0);  // the file ends inside the list
  EXPECT_EQ(parse("\"b\"=hex(2):41").type, 2);
  // The merge skips the first byte and reads the pairs across their boundaries.
  r = parse("\"m\"=hex(7):61,00,62,00,00,00");
  EXPECT_EQ(r.type, 7);
  EXPECT_EQ(r.bytes, std::string("b\0\0", 3));
  EXPECT_EQ(parse("\"m\"=hex(7):01,00,43,00").bytes, std::string("C\0", 2));
  EXPECT_EQ(parse("\"m\"=hex(7):00,01,41").bytes, "?");  // a code above 255 has no byte
}

TEST(RegImport, LinesEndAtCrLfCrAloneOrLfAlone) {
  const std::string text = "a\r\nb\rc\nd\r\n\r\ne\n\nf";
  RegLineReader file(text);
  std::string line;
  std::vector<std::string> lines;
  while (file.next(line)) lines.push_back(line);
  EXPECT_EQ(lines, (std::vector<std::string>{"a", "b", "c", "d", "", "e", "", "f"}));
  EXPECT_EQ(file.lineNumber(), 8);
}

class RegImportFile : public ::testing::Test {
 protected:
  // Imports `text` into a store that already holds one value; returns the failure, if any.
  std::optional<RegFileError> import(const std::string& text) {
    test::writeFile(dir.file("in.reg"), text);
    before = test::dumpTree(store, HKEY_CURRENT_USER, "");
    try {
      ImportRegFile(store, dir.file("in.reg"));
    } catch (const RegFileError& e) {
      return e;
    }
    return std::nullopt;
  }
  std::string after() { return test::dumpTree(store, HKEY_CURRENT_USER, ""); }

  TempDir dir;
  RegistryStore store{dir.file("r.sqlite")};
  std::string before;
  void SetUp() override { store.setValue(HKEY_CURRENT_USER, "Keep", "v", kRegString, "1"); }
};

TEST_F(RegImportFile, HeaderRules) {
  EXPECT_FALSE(
      import("xx Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\Ab]\r\n\"v\"=\"2\""));
  EXPECT_EQ(store.getValue(HKEY_CURRENT_USER, "Ab", "v")->data, "2");
  auto e = import("regedit4\r\n[HKEY_CURRENT_USER\\B]\r\n");
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), 321u);
  EXPECT_EQ(e->source(), "Zorvik Registry Module");
  EXPECT_TRUE(import(""));
  EXPECT_TRUE(import("REGEDIT4 \r\n"));
  EXPECT_THROW(ImportRegFile(store, dir.file("absent.reg")), Fault);
}

TEST_F(RegImportFile, AFailureLeavesTheStoreAsItWas) {
  auto e = import(
      "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Keep]\r\n\"v\"=\"changed\"\r\n[HKEY_CURRENT_USER\\New]\r\n"
      "\"w\"=\"1\"\r\n    \r\n\"z\"=\"2\"\r\n");
  ASSERT_TRUE(e);
  EXPECT_EQ(e->description(), "Invalid file format");
  EXPECT_EQ(e->line(), 7);
  EXPECT_EQ(after(), before);

  e = import("REGEDIT4\r\n\r\n\"v\"=\"1\"\r\n[HKEY_CURRENT_USER\\New]\r\n");
  ASSERT_TRUE(e);
  EXPECT_EQ(e->description(), "REG file contains Value entry without Key entry");
  EXPECT_NE(std::string(e->what()).find("REG file contains Value entry without Key entry"),
            std::string::npos);
  EXPECT_EQ(after(), before);
}

TEST_F(RegImportFile, EmptyLinesAreSkippedAndDwordsStoreText) {
  ASSERT_FALSE(
      import("REGEDIT4\r\n\r\n\r\n[HKEY_CURRENT_USER\\Dw]\r\n\r\n\"n\"=dword:00000200\r\n\"e\"=\"\"\r\n"
             "\"h\"=hex:\r\n"));
  auto n = store.getValue(HKEY_CURRENT_USER, "Dw", "n");
  EXPECT_EQ(n->type, 4u);
  EXPECT_EQ(n->data, std::string("512\0", 4));
  EXPECT_EQ(store.getValue(HKEY_CURRENT_USER, "Dw", "e")->data, "");
  EXPECT_EQ(store.getValue(HKEY_CURRENT_USER, "Dw", "h")->type, 3u);
}

TEST_F(RegImportFile, AFileWithLfLineEndsImportsAsWithCrLf) {
  ASSERT_FALSE(import("REGEDIT4\n\n[HKEY_CURRENT_USER\\Lf]\n\"s\"=\"x\"\n\"b\"=hex:01,\\\n  02\n"));
  EXPECT_EQ(store.getValue(HKEY_CURRENT_USER, "Lf", "s")->data, "x");
  EXPECT_EQ(store.getValue(HKEY_CURRENT_USER, "Lf", "b")->data, std::string("\x01\x02"));
}

}  // namespace
}  // namespace zorvik
