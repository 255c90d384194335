#include <gtest/gtest.h>

#include "config/reg_file.h"
#include "config/reg_format.h"
#include "config_test_util.h"

namespace zorvik {
namespace {

using test::TempDir;

TEST(RegExport, TheTextOfATreeWithEveryValueType) {
  TempDir dir;
  RegistryStore store(dir.file("r.sqlite"));
  const std::string top = "Software\\Zorvik\\T";
  store.setValue(HKEY_CURRENT_USER, top, "s", kRegString, "C:\\dir \"x\"");
  store.setValue(HKEY_CURRENT_USER, top, "", kRegDword, std::string("\x05\x00\x01\x00", 4));
  store.setValue(HKEY_CURRENT_USER, top, "b", kRegBinary, std::string("\x00\x0a\x1f\xff\x10", 5));
  store.setValue(HKEY_CURRENT_USER, top, "m", kRegMultiString, std::string("ab\0", 3));
  store.setValue(HKEY_CURRENT_USER, top, "x", 0x1b, "\x07");
  store.setValue(HKEY_CURRENT_USER, top, "e", kRegBinary, "");
  store.setValue(HKEY_CURRENT_USER, top + "\\Sub", "v", kRegString, "1");
  store.createKey(HKEY_CURRENT_USER, top + "\\Sub\\Deep");
  store.createKey(HKEY_CURRENT_USER, top + "\\Z");

  ASSERT_TRUE(ExportRegFile(store, dir.file("t.reg"), HKEY_CURRENT_USER, top, ""));
  EXPECT_EQ(test::readFile(dir.file("t.reg")),
            "REGEDIT4\r\n"
            "\r\n"
            "[HKEY_CURRENT_USER\\Software\\Zorvik\\T]\r\n"
            "\"s\"=\"C:\\\\dir \"x\"\"\r\n"
            "@=dword:0105\r\n"
            "\"b\"=hex:00,A,1F,FF,10\r\n"
            "\"m\"=hex(7):61,00,62,00,00,00\r\n"
            "\"x\"=hex(1b):07\r\n"
            "\"e\"=\"\"\r\n"
            "\r\n"
            "[HKEY_CURRENT_USER\\Software\\Zorvik\\T\\Sub]\r\n"
            "\"v\"=\"1\"\r\n"
            "\r\n"
            "[HKEY_CURRENT_USER\\Software\\Zorvik\\T\\Sub\\Deep]\r\n"
            "\r\n"
            "[HKEY_CURRENT_USER\\Software\\Zorvik\\T\\Z]\r\n"
            "\r\n");

  // The shown path replaces the real one on every key line.
  ASSERT_TRUE(ExportRegFile(store, dir.file("s.reg"), HKEY_CURRENT_USER, top + "\\Sub", "New"));
  EXPECT_EQ(test::readFile(dir.file("s.reg")),
            "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\New]\r\n\"v\"=\"1\"\r\n\r\n[HKEY_CURRENT_USER\\New\\Deep]"
            "\r\n\r\n");
}

TEST(RegExport, NothingOrTheHeaderAloneWhenThereIsNothingToWrite) {
  TempDir dir;
  RegistryStore store(dir.file("r.sqlite"));
  EXPECT_FALSE(ExportRegFile(store, "", HKEY_CURRENT_USER, "Software", ""));
  test::writeFile(dir.file("old.reg"), "previous content that is longer");
  EXPECT_TRUE(ExportRegFile(store, dir.file("old.reg"), HKEY_CURRENT_USER, "Software\\Absent", ""));
  EXPECT_EQ(test::readFile(dir.file("old.reg")), "REGEDIT4\r\n\r\n");
  EXPECT_THROW(ExportRegFile(store, dir.file("no/such/dir.reg"), HKEY_CURRENT_USER, "", ""), Fault);
}

TEST(RegExport, ValueLineOddities) {
  // A dword with small top bytes comes out short: no padding at all.
  EXPECT_EQ(regValueLine({"d", kRegDword, std::string("\x01\x00\x00\x00", 4)}), "\"d\"=dword:0001");
  EXPECT_EQ(regValueLine({"d", kRegDword, "\x12\x34\xab\xcd"}), "\"d\"=dword:CDAB3412");
  EXPECT_EQ(regValueLine({"", kRegString, ""}), "\"\"=\"\"");
  EXPECT_EQ(regValueLine({"", kRegString, "x"}), "@=\"x\"");
  EXPECT_EQ(regByteList(std::string("\x00\x09\x0a\x0f\x10\xa0", 6)), "00,09,A,F,10,A0");
  EXPECT_EQ(regKeyLine(HKEY_DYN_DATA, ""), "[HKEY_DYN_DATA]");
}

TEST(RegExport, MultiStringListWrapsAndSubstitutes) {
  EXPECT_EQ(regValueLine({"m", kRegMultiString, "abcdefghijkl"}),
            "\"m\"=hex(7):61,00,62,00,63,00,64,00,65,00,66,00,67,00,68,00,69,00,6A,00,6B,\\\r\n"
            "  00,6C,00");
  // After a break the count restarts at 2 although the line already holds two blanks.
  std::string list = regWrappedList(std::vector<std::uint16_t>(40, 'a'), 73);
  EXPECT_EQ(list.substr(0, 10), "\\\r\n  61,00");
  EXPECT_EQ(list.find("\\\r\n", 3), 3u + 2 + 25 * 3);
  EXPECT_EQ(regWrappedList({0x0400, 0x0401}, 0), "50,04,01,04");
}

}  // namespace
}  // namespace zorvik
