#include "export/packet_files.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "config/config_test_util.h"
#include "config/settings.h"
#include "core/fault.h"
#include "core/recording_sink.h"
#include "export/scripted_file_dialogs.h"
#include "link/fake_obex.h"
#include "session/main_controller.h"

using namespace zorvik;
using namespace std::string_literals;
using zorvik::test::readFile;
using zorvik::test::TempDir;
using zorvik::test::writeFile;
namespace fs = std::filesystem;
using Log = std::vector<std::string>;

namespace {

const std::string kPacket = "\x10\x00\x00\x00"s + "\x89\x00\xff" + std::string(20, '\x40');

// A serial acquisition that StopRepeat holds and lets go, noted in one log with the dialog and the boxes.
struct HoldingLink : test::FakeObex {
  explicit HoldingLink(Log& log) : log_(log) {}
  bool serial = false;
  void GetSerialActive(bool& a) override { a = serial; }
  void StopRepeat(bool resume) override {
    log_.push_back(resume ? "resume" : "hold");
    serial = resume;
  }
  Log& log_;
};

struct LoggingSink : RecordingSink {
  explicit LoggingSink(Log& log) : log_(log) {}
  int show(BoxKind kind, const std::string& title, const std::string& text, const std::string& key) override {
    log_.push_back(boxKindName(kind));
    return RecordingSink::show(kind, title, text, key);
  }
  Log& log_;
};

struct ShownView : MainView {
  Log shown;
  void packetShown(const std::string& p) override { shown.push_back(p); }
};

struct PacketFilesTest : ::testing::Test {
  PacketFilesTest() : link(log), sink(log), main(settings, sink, view), files(main, dialogs) {
    main.attachLink(&link);
    dialogs.whileOpen = [this] { log.push_back("dialog"); };
    main.setLastPacket(kPacket);
  }
  ~PacketFilesTest() override { main.attachLink(nullptr); }

  Log log;
  HoldingLink link;
  LoggingSink sink;
  MemorySettings settings;
  ShownView view;
  MainController main;
  ScriptedFileDialogs dialogs;
  PacketFiles files;
  TempDir dir;
};

}  // namespace

TEST_F(PacketFilesTest, BinarySaveHoldsSerialAcquisitionAroundTheDialogAndWritesTheLayout) {
  link.serial = true;
  {
    RecordScale scale = main.scale();
    scale.SamplesPerDiv = 32;
    main.setScale(scale);
  }
  dialogs.answers = {dir.file("p")};  // typed without extension
  files.SaveLastPacket2binary();

  EXPECT_EQ(log, (Log{"hold", "dialog", "resume", "infobox"}));
  std::string path = dir.file("p.zrv");
  EXPECT_EQ(readFile(path), "zorvik\x01\x20"s + kPacket);
  EXPECT_EQ(sink.messages[0].text, "Last packet saved\rin " + path);
  EXPECT_EQ(sink.messages[0].key, "BinFileWrited");
  EXPECT_EQ(dialogs.requests[0].title, "File Save: Zorvik Binary data");
  // What zorvik-cli writes is the same file.
  saveLastPacketTo(main, dir.file("cli.zrv"));
  EXPECT_EQ(readFile(dir.file("cli.zrv")), readFile(path));
}

TEST_F(PacketFilesTest, CancelledOrFailedSavesLetAcquisitionGoOn) {
  link.serial = true;
  files.SaveLastPacket2binary();  // silent
  files.SaveLastPacket2csv();     // the writer fails on the empty name, and both boxes show
  EXPECT_EQ(log, (Log{"hold", "dialog", "resume", "hold", "dialog", "critical", "resume", "infobox"}));
  EXPECT_EQ(sink.messages[1].text, "Last packet body saved:\r\n");
  EXPECT_TRUE(fs::is_empty(dir.file("")));
  sink.messages.clear();

  dialogs.answers = {dir.file("missing/p.zrv")};
  EXPECT_THROW(files.SaveLastPacket2binary(), Fault);
  EXPECT_TRUE(link.serial);
  EXPECT_TRUE(sink.messages.empty());
}

TEST_F(PacketFilesTest, SaveReplacesALongerFileWithoutItsOldBytes) {
  std::string path = dir.file("p.zrv");
  writeFile(path, std::string(5000, 'x'));
  // A second name of the old file shows that it was replaced, never cut and rewritten in place.
  fs::create_hard_link(path, dir.file("old"));
  main.setLastPacket("\x10\x00\x00\x00\x01"s);
  dialogs.answers = {path};
  files.SaveLastPacket2binary();
  EXPECT_EQ(readFile(path), "zorvik\x01\x10\x10\x00\x00\x00\x01"s);
  EXPECT_EQ(readFile(dir.file("old")), std::string(5000, 'x'));
}

TEST_F(PacketFilesTest, FailedTextWriteLeavesTheEarlierFile) {
  if (geteuid() == 0) GTEST_SKIP() << "the superuser writes into read-only folders";
  std::string path = dir.file("ro/p.csv");
  fs::create_directory(dir.file("ro"));
  writeFile(path, "earlier");
  fs::permissions(dir.file("ro"), fs::perms::owner_read | fs::perms::owner_exec);
  dialogs.answers = {path};
  files.SaveLastPacket2csv();
  fs::permissions(dir.file("ro"), fs::perms::owner_all);
  EXPECT_EQ(readFile(path), "earlier");
  EXPECT_EQ(sink.messages[0].text, "File saving error. May be open by Excell?");
}

TEST_F(PacketFilesTest, CsvFileEndsInCrCrLfAndItsBoxNamesThePath) {
  link.serial = true;
  main.setLastPacket("\x10\x00\x00\x00\x89\x00"s);
  std::string path = dir.file("p.csv");
  dialogs.answers = {path};
  files.SaveLastPacket2csv();
  EXPECT_EQ(readFile(path), " 137\r 0\r\r\n");
  EXPECT_EQ(log, (Log{"hold", "dialog", "resume", "infobox"}));
  EXPECT_EQ(sink.messages[0].text, "Last packet body saved:\r\n" + path);
  EXPECT_EQ(sink.messages[0].key, "CsvFileWrited");
  EXPECT_EQ(dialogs.requests[0].title, "File Save: Zorvik CSV data");

  main.setLastPacket("\x10\x00\x00\x00"s);
  dialogs.answers = {path};
  files.SaveLastPacket2csv();
  EXPECT_EQ(readFile(path), "\r\n");
}

TEST_F(PacketFilesTest, RestoreReplaysThePacketAndLeavesAcquisitionStopped) {
  link.serial = true;
  main.setLastPacket("");
  std::string path = dir.file("r.zrv");
  writeFile(path, "zorvik\x03\x40\xAA\xBB"s + kPacket);
  dialogs.answers = {path};
  files.RestorePacketFromBinary();
  EXPECT_EQ(log, (Log{"hold", "dialog"}));
  EXPECT_EQ(main.LastPacket(), kPacket);
  EXPECT_EQ(main.scale().SamplesPerDiv, 64);
  EXPECT_EQ(main.state().fields.at(kCurSamplesPerDivField), "64");
  EXPECT_EQ(view.shown, Log{kPacket});
  EXPECT_EQ(dialogs.requests[0].title, "File Open: Zorvik Binary data");
  EXPECT_EQ(dialogs.requests[0].filters.size(), 2u);
}

TEST_F(PacketFilesTest, RestoreWithoutExtraBlockKeepsSamplesPerDivAndSevenBytesGiveAnEmptyPacket) {
  {
    RecordScale scale = main.scale();
    scale.SamplesPerDiv = 48;
    main.setScale(scale);
  }
  writeFile(dir.file("r.zrv"), "zorvik\x00"s + kPacket);
  files.RestorePacketFile(dir.file("r.zrv"));
  EXPECT_EQ(main.scale().SamplesPerDiv, 48);
  EXPECT_EQ(main.LastPacket(), kPacket);

  writeFile(dir.file("seven.zrv"), "zorvik\x00"s);
  files.RestorePacketFile(dir.file("seven.zrv"));
  EXPECT_EQ(main.LastPacket(), "");
  EXPECT_EQ(view.shown.size(), 1u);  // the packet entry ignores the empty one
  EXPECT_TRUE(sink.messages.empty());
}

TEST_F(PacketFilesTest, OnlyAWrongMagicIsReportedAndNothingChanges) {
  files.RestorePacketFile("");
  files.RestorePacketFile(dir.file("missing.zrv"));
  files.RestorePacketFile(dir.file(""));
  files.RestorePacketFromBinary();  // cancelled
  std::string path = dir.file("upper.zrv");
  writeFile(path, "Zorvik\x01\x20\x10\x00\x00\x00\x01"s);
  files.RestorePacketFile(path);
  EXPECT_EQ(log, (Log{"dialog", "infobox"}));
  EXPECT_EQ(sink.messages[0].text, "This is not zorvik file");
  EXPECT_EQ(sink.messages[0].key, "ZORVIK 1");  // cannot be silenced
  EXPECT_EQ(main.LastPacket(), kPacket);
  EXPECT_EQ(main.scale().SamplesPerDiv, 16);
  EXPECT_TRUE(view.shown.empty());
}

TEST_F(PacketFilesTest, DefaultPacketOfTheStartDirectoryIsRestored) {
  main.setLastPacket("");
  fs::path before = fs::current_path();
  fs::current_path(dir.file(""));
  restoreDefaultPacket(main);  // absent: silent
  writeFile(dir.file("default.zrv"), "zorvik\x01\x08"s + kPacket);
  restoreDefaultPacket(main);
  fs::current_path(before);
  EXPECT_TRUE(sink.messages.empty());
  EXPECT_EQ(main.LastPacket(), kPacket);
  EXPECT_EQ(main.scale().SamplesPerDiv, 8);
}

TEST_F(PacketFilesTest, APacketFileNamedAtStartTakesThePlaceOfTheDefault) {
  writeFile(dir.file("named.zrv"), "zorvik\x01\x04"s + kPacket);
  restoreDefaultPacket(main, dir.file("named.zrv"));
  EXPECT_EQ(main.LastPacket(), kPacket);
  EXPECT_EQ(main.scale().SamplesPerDiv, 4);
  EXPECT_TRUE(sink.messages.empty());
  restoreDefaultPacket(main, dir.file("missing.zrv"));  // asked for by name: its absence is told
  ASSERT_EQ(sink.messages.size(), 1u);
  EXPECT_NE(sink.messages[0].text.find("missing.zrv"), std::string::npos);
  EXPECT_EQ(main.LastPacket(), kPacket);
}

TEST_F(PacketFilesTest, ScaledCsvUsesTheRecordsScaleAndReplacesTheFile) {
  link.serial = true;
  {
    RecordScale scale = main.scale();
    scale.FullScaleVolts = 3.2f;
    scale.ZeroVolts = -1;
    scale.SamplePeriod = 5e-7f;
    main.setScale(scale);
  }
  main.setLastPacket("\x10\x00\x00\x00\x80\xc0\x40\x00\x80\x80"s);
  std::string path = dir.file("v.csv");
  writeFile(path, std::string(500, 'x'));
  fs::create_hard_link(path, dir.file("old"));
  dialogs.answers = {dir.file("v")};  // typed without extension
  files.SaveLastPacket2scaledCsv();
  EXPECT_EQ(readFile(path),
            "time_s,volts\n0,-1\n5e-07,-0.2\n1e-06,-1.8\n1.5e-06,-2.6\n2e-06,-1\n2.5e-06,-1\n");
  EXPECT_EQ(readFile(dir.file("old")), std::string(500, 'x'));
  EXPECT_EQ(log, (Log{"hold", "dialog", "resume", "infobox"}));
  EXPECT_EQ(sink.messages[0].text, "Last packet saved in seconds and volts:\r\n" + path);
  EXPECT_EQ(dialogs.requests[0].title, "File Save: Zorvik CSV data");
}

TEST_F(PacketFilesTest, ScaledCsvOfNoPacketIsRefusedBeforeTheDialogAndCancelIsSilent) {
  link.serial = true;
  main.setLastPacket("");
  EXPECT_THROW(files.SaveLastPacket2scaledCsv(), Fault);
  EXPECT_TRUE(log.empty());
  main.setLastPacket(kPacket);
  files.SaveLastPacket2scaledCsv();  // cancelled
  EXPECT_EQ(log, (Log{"hold", "dialog", "resume"}));
  EXPECT_TRUE(fs::is_empty(dir.file("")));
}
