#include "firmware/firmware_update.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "config/config_test_util.h"
#include "config/settings.h"
#include "core/messages.h"
#include "export/scripted_file_dialogs.h"
#include "firmware/zfw_image.h"
#include "session/headless_session.h"

using namespace zorvik;
using zorvik::test::TempDir;
using zorvik::test::writeFile;

namespace {

std::string image(const std::string& target, const std::string& version, size_t body) {
  std::string s =
      "Zorvik firmware\r\nTarget: " + target + "\r\nVersion: " + version + "\r\nDate: 20261123\r\nFW:";
  for (size_t i = 0; i < body; ++i) s += static_cast<char>(i * 7);
  return s;
}

struct View : FirmwareView {
  bool shown = false, othersEnabled = true, startEnabled = false, inProgress = false;
  int sectors = 0;
  std::vector<int> good, bad;
  DeviceIdentityFields device;
  void showWindow() override { shown = true; }
  void closeWindow() override { shown = false; }
  void enableOtherWindows(bool e) override { othersEnabled = e; }
  void showImage(const ZfwImage&) override {}
  void showDevice(const DeviceIdentityFields& d) override { device = d; }
  void enableStart(bool e) override { startEnabled = e; }
  void showInProgress() override { inProgress = true; }
  void showSectors(int count) override { sectors = count; }
  void setSector(int index, bool ok) override { (ok ? good : bad).push_back(index); }
};

}  // namespace

TEST(ZfwImage, FieldsByLabelAndEqualSectors) {
  auto a = parseZfw(image("ZV-1", "1.23", 32768));
  ASSERT_TRUE(a);
  EXPECT_EQ(a->target, "ZV-1");
  EXPECT_EQ(a->version, "1.23");
  EXPECT_EQ(a->date, "20261123");
  EXPECT_EQ(a->SectorCount, 64);
  EXPECT_EQ(a->SectorSize, 512);
  auto b = parseZfw(image("ZV-1", "1.23", 1000));
  ASSERT_TRUE(b);
  EXPECT_EQ(b->SectorCount, 1);
  EXPECT_EQ(b->SectorSize, 1000);
  EXPECT_EQ(parseZfw(image("ZV-1", "1.23", 1100))->SectorSize, 550);
  EXPECT_FALSE(parseZfw(image("ZV-1", "1.23", 1025)));  // two sectors of 512 leave a byte over
  EXPECT_FALSE(parseZfw(image("ZV-1", "12.3", 1024)));  // no point as the second character
  EXPECT_FALSE(parseZfw(image("ZV-1", "1.23", 100)));   // shorter than a sector
  EXPECT_FALSE(parseZfw("Target: ZV-1 Version: 1.23 FW:" + std::string(1024, 'x')));  // no date

  const DeviceIdentityFields d = parseDeviceIdentity("ZV-11.2 0042");
  EXPECT_EQ(d.model, "ZV-1");
  EXPECT_EQ(d.hwRev, "1.2 ");
  EXPECT_EQ(d.serial, "0042");
  EXPECT_EQ(d.loader, "    ");
  EXPECT_TRUE(firmwareCompatible(*a, d));
  EXPECT_FALSE(firmwareCompatible(*parseZfw(image("ZV-2", "1.23", 1024)), d));
  EXPECT_FALSE(firmwareCompatible(*parseZfw(image("ZV-1", "2.23", 1024)), d));
}

TEST(FirmwareUpdate, TheSimulatedInstrumentTakesEverySector) {
  TempDir dir;
  writeFile(dir.file("fw.zfw"), image("ZV-1", "1.20", 4 * 512));
  MemorySettings settings;
  HeadlessSession session(settings, {"rate=max"});
  ScriptedFileDialogs dialogs({dir.file("fw.zfw")});
  View view;
  FirmwareUpdate update(session.main(), dialogs, view);
  session.control().fillRegisters(session.main().registers(), &session.trigger(), &session.run(), &update);
  session.main().KeyConnect_Click();
  ASSERT_TRUE(
      HeadlessSession::spinUntil([&] { return session.main().sessionState() == SessionState::Ready; }, 5000));

  update.FirmWareUpdate();
  EXPECT_TRUE(update.Updating);
  EXPECT_FALSE(view.othersEnabled);
  EXPECT_EQ(view.sectors, 4);
  ASSERT_TRUE(HeadlessSession::spinUntil([&] { return view.startEnabled; }, 3000));  // the identity fits
  EXPECT_EQ(view.device.model, "ZV-1");
  update.KeyStartFU_Click();
  EXPECT_TRUE(view.inProgress);
  ASSERT_TRUE(HeadlessSession::spinUntil([&] { return !update.Updating; }, 8000));
  EXPECT_EQ(view.good, (std::vector<int>{0, 1, 2, 3}));
  EXPECT_TRUE(view.bad.empty());
  EXPECT_EQ(session.messages().messages.back().text, "Firmware update\r\ncompleted successfully!");
  EXPECT_TRUE(view.othersEnabled);
  HeadlessSession::spinUntil([&] { return !session.main().Online(); }, 2000);
  EXPECT_FALSE(session.main().Online());  // the update ends the session
}

TEST(FirmwareUpdate, ForeignImagesUnknownSectorsAndSilence) {
  TempDir dir;
  writeFile(dir.file("other.zfw"), image("ZX-9", "1.20", 1024));
  MemorySettings settings;
  HeadlessSession session(settings, {"rate=max"});
  ScriptedFileDialogs dialogs({dir.file("other.zfw")});
  View view;
  FirmwareUpdate update(session.main(), dialogs, view);
  session.control().fillRegisters(session.main().registers(), &session.trigger(), &session.run(), &update);

  update.FirmWareUpdate();  // offline: no instrument to answer
  EXPECT_EQ(session.messages().messages.back().text, "Firmware update error:\r\nno responce from Zorvik");
  EXPECT_FALSE(update.Updating);

  session.main().KeyConnect_Click();
  ASSERT_TRUE(
      HeadlessSession::spinUntil([&] { return session.main().sessionState() == SessionState::Ready; }, 5000));
  update.FirmWareUpdate();
  ASSERT_TRUE(HeadlessSession::spinUntil([&] { return !update.Updating; }, 3000));
  EXPECT_EQ(session.messages().messages.back().text, "Firmware uncompatible!");
  EXPECT_FALSE(view.startEnabled);

  // Answers outside the sectors, and the time-out.
  writeFile(dir.file("fw.zfw"), image("ZV-1", "1.20", 1024));
  ASSERT_TRUE(HeadlessSession::spinUntil([&] { return !session.main().Online(); }, 3000));
  session.main().KeyConnect_Click();
  ASSERT_TRUE(
      HeadlessSession::spinUntil([&] { return session.main().sessionState() == SessionState::Ready; }, 5000));
  dialogs.answers = {dir.file("fw.zfw")};
  update.FirmWareUpdate();
  ASSERT_TRUE(HeadlessSession::spinUntil([&] { return view.startEnabled; }, 3000));
  update.FirmwareSectorUpdateRezult(std::string("O") + static_cast<char>(200));
  EXPECT_EQ(session.messages().messages.back().text, "Undefined sector = 200");
  EXPECT_TRUE(update.timer().isActive());  // still waiting
  update.sectorTimeout();
  EXPECT_EQ(session.messages().messages.back().text,
            "Firmware update failed.\r\nReconnect zorvik and repite");
  EXPECT_FALSE(update.Updating);
}

TEST(FirmwareUpdate, AnInstrumentInItsBootStateIsOfferedTheUpdate) {
  TempDir dir;
  writeFile(dir.file("fw.zfw"), image("ZV-1", "1.20", 2 * 512));
  MemorySettings settings;
  HeadlessSession session(settings, {"rate=max,fault=boot"});
  ScriptedFileDialogs dialogs({dir.file("fw.zfw")});
  View view;
  FirmwareUpdate update(session.main(), dialogs, view);
  session.control().fillRegisters(session.main().registers(), &session.trigger(), &session.run(), &update);
  session.messages().answers.push_back(kAnswerOk);  // "You must upload firmware. Process?"
  session.main().KeyConnect_Click();
  ASSERT_TRUE(HeadlessSession::spinUntil([&] { return view.startEnabled; }, 5000));
  EXPECT_EQ(session.main().sessionState(), SessionState::Boot);
  update.KeyStartFU_Click();
  ASSERT_TRUE(HeadlessSession::spinUntil([&] { return !update.Updating; }, 8000));
  EXPECT_EQ(view.good, (std::vector<int>{0, 1}));
  EXPECT_EQ(session.messages().messages.back().text, "Firmware update\r\ncompleted successfully!");
}

TEST(FirmwareUpdate, ARefusedImageEndsTheUpdateAndTheNextBootOffersItAgain) {
  TempDir dir;
  writeFile(dir.file("bad.zfw"), "not a firmware image");
  writeFile(dir.file("fw.zfw"), image("ZV-1", "1.20", 2 * 512));
  MemorySettings settings;
  HeadlessSession session(settings, {"rate=max,fault=boot"});
  ScriptedFileDialogs dialogs({dir.file("bad.zfw"), dir.file("fw.zfw")});
  View view;
  FirmwareUpdate update(session.main(), dialogs, view);
  session.control().fillRegisters(session.main().registers(), &session.trigger(), &session.run(), &update);
  auto offers = [&] {
    int n = 0;
    for (const RecordedMessage& m : session.messages().messages)
      if (m.text.find("You must upload firmware. Process?") != std::string::npos) ++n;
    return n;
  };

  session.messages().answers = {kAnswerOk, kAnswerOk};
  session.main().KeyConnect_Click();
  ASSERT_TRUE(HeadlessSession::spinUntil([&] { return dialogs.requests.size() == 1; }, 5000));
  const RecordedMessage refused = session.messages().messages.back();
  EXPECT_EQ(refused.kind, BoxKind::Critical);
  EXPECT_EQ(refused.text, "Firmware file error!");
  EXPECT_FALSE(update.Updating);
  EXPECT_TRUE(view.othersEnabled);
  EXPECT_FALSE(view.shown);
  // Ended as the other refusals end it: the session closes.
  ASSERT_TRUE(HeadlessSession::spinUntil([&] { return !session.main().Online(); }, 3000));

  // The instrument still in its loader: the next connection offers the update again.
  session.main().KeyConnect_Click();
  ASSERT_TRUE(HeadlessSession::spinUntil([&] { return view.startEnabled; }, 5000));
  EXPECT_EQ(offers(), 2);
  EXPECT_TRUE(update.Updating);
  EXPECT_FALSE(view.othersEnabled);
  update.cancel();
}

TEST(FirmwareUpdate, AFifoChosenAsTheImageIsRefusedAtOnceAndEndsTheUpdate) {
  TempDir dir;
  const std::string fifo = dir.file("fw.zfw");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  // Frees a reader that waits for a writer, so that a failure does not hang the run.
  std::atomic<bool> done{false};
  std::thread unblock([&] {
    for (int i = 0; i < 50 && !done; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(100));
    if (done) return;
    const int fd = ::open(fifo.c_str(), O_WRONLY | O_NONBLOCK);
    if (fd >= 0) ::close(fd);
  });
  MemorySettings settings;
  HeadlessSession session(settings, {"rate=max,fault=boot"});
  ScriptedFileDialogs dialogs({fifo});
  View view;
  FirmwareUpdate update(session.main(), dialogs, view);
  session.control().fillRegisters(session.main().registers(), &session.trigger(), &session.run(), &update);
  session.messages().answers = {kAnswerOk};
  session.main().KeyConnect_Click();
  const bool asked = HeadlessSession::spinUntil([&] { return dialogs.requests.size() == 1; }, 5000);
  done = true;
  unblock.join();
  ASSERT_TRUE(asked);
  const RecordedMessage refused = session.messages().messages.back();
  EXPECT_EQ(refused.kind, BoxKind::Critical);
  EXPECT_EQ(refused.text, "the firmware image \"" + fifo + "\" is not a regular file");
  EXPECT_FALSE(update.Updating);
  EXPECT_TRUE(view.othersEnabled);
}
