#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include "config/settings.h"
#include "core/recording_sink.h"
#include "link/fake_obex.h"
#include "session/basic_control.h"
#include "session/main_controller.h"

using namespace zorvik;
using zorvik::test::FakeObex;

namespace {

std::string be32(int32_t v) {
  std::string s;
  for (int i = 3; i >= 0; --i) s += static_cast<char>((static_cast<uint32_t>(v) >> (8 * i)) & 0xFF);
  return s;
}

struct View : MainView {
  bool visible = true;
  bool isWindowVisible() const override { return visible; }
};

void spin(int ms) {
  QElapsedTimer t;
  t.start();
  while (t.elapsed() < ms) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QThread::msleep(1);
  }
}

struct Session : ::testing::Test {
  MemorySettings settings;
  RecordingSink sink;
  View view;
  FakeObex link;
  MainController main{settings, sink, view};
  BasicControl control{main};
  void SetUp() override {
    control.fillRegisters(main.registers());
    main.attachLink(&link);
  }
  void TearDown() override { main.attachLink(nullptr); }
  void connect() {
    main.KeyConnect_Click();
    link.queueMessage("hello");
    link.queueStart();
    spin(5);
  }
  void sendLimits(bool allSeven) {
    for (const char* n : {"TOv", "TOl", "MCl", "MCh", "TMl", "TMh", "TPl"}) {
      if (!allSeven && std::string(n) == "TPl") continue;
      link.queueHeader(n, be32(std::string(n) == "TOv" ? 6 : 256));
    }
    spin(5);
  }
  std::vector<std::string> callsStartingWith(const std::string& prefix) {
    std::vector<std::string> out;
    for (const auto& c : link.calls)
      if (c.rfind(prefix, 0) == 0) out.push_back(c);
    return out;
  }
};

}  // namespace

TEST_F(Session, StartAsksPropertiesThenWritesRegistersInOrder) {
  EXPECT_EQ(link.calls.front(), "SetSettingsName Zorvik DSO1");
  connect();
  EXPECT_EQ(main.state().connectCaption, "Disconnect");
  EXPECT_EQ(main.sessionState(), SessionState::SettingUp);
  EXPECT_TRUE(main.state().devicePageVisible);
  std::vector<std::string> props;
  for (const auto& c : callsStartingWith("GetProperty ")) props.push_back(c.substr(12));
  EXPECT_EQ(props, (std::vector<std::string>{"VNM", "VSN", "VHW", "VSW", "MCl", "MCh", "MCd", "TOv", "TOl",
                                             "TMl", "TMh", "TPl"}));
  std::vector<std::string> writes;
  for (const auto& c : link.calls)
    if (c.rfind("Put", 0) == 0) writes.push_back(c.substr(5, c.find('=') - 5));
  EXPECT_EQ(writes, (std::vector<std::string>{"O1", "M1", "T1", "V1", "P1", "S1", "T1", "RT", "AP", "AR",
                                              "TA", "TW", "TD", "TC", "RS"}));
  // The device's start message is shown in a box that closes by itself.
  ASSERT_EQ(sink.messages.size(), 1u);
  EXPECT_EQ(sink.messages[0].text, "Device message: \r\nhello");
}

TEST_F(Session, SevenLimitsLeadToReadyAndTheTimeBase) {
  connect();
  link.calls.clear();
  sendLimits(true);
  EXPECT_EQ(callsStartingWith("Put4 TS").size(), 1u);  // the cached TS was cleared, so it is written
  spin(500);
  EXPECT_EQ(main.sessionState(), SessionState::Ready);
  EXPECT_TRUE(main.state().startEnabled);
  EXPECT_FALSE(main.state().connectVisible);
  EXPECT_FALSE(main.state().devicePageVisible);
}

TEST_F(Session, SixOfSevenLimitsStayInSettingUp) {
  connect();
  link.calls.clear();
  sendLimits(false);
  spin(500);
  EXPECT_EQ(main.sessionState(), SessionState::SettingUp);
  EXPECT_FALSE(main.state().startEnabled);
  EXPECT_TRUE(main.state().devicePageVisible);
  EXPECT_TRUE(callsStartingWith("Put4 TS").empty());
}

TEST_F(Session, HiddenWindowDoesNothingBeyondTheCaptions) {
  view.visible = false;
  connect();
  EXPECT_EQ(main.state().connectCaption, "Disconnect");
  EXPECT_TRUE(callsStartingWith("GetProperty").empty());
}

TEST_F(Session, BootAsksForFirmwareAndCancelCloses) {
  main.KeyConnect_Click();
  link.online = true;
  sink.answers.push_back(kAnswerCancel);
  link.queueMessage("BOOT");
  spin(5);
  ASSERT_EQ(sink.messages.size(), 1u);
  EXPECT_EQ(sink.messages[0].kind, BoxKind::OkCancel);
  EXPECT_EQ(sink.messages[0].text, "Device state:  BOOT\r\nYou must upload firmware. Process?");
  EXPECT_EQ(callsStartingWith("CloseSession").size(), 1u);
  spin(400);
  EXPECT_EQ(main.sessionState(), SessionState::NoSession);
  EXPECT_TRUE(main.state().connectVisible);
  // Another case of the word is an ordinary device message.
  link.queueMessage("Boot");
  spin(5);
  EXPECT_EQ(sink.messages.back().kind, BoxKind::InfoBox);
}

TEST_F(Session, PortRefusedAndNoDeviceAsk) {
  link.openOk = false;
  sink.answers.push_back(kAnswerYes);
  main.KeyConnect_Click();
  ASSERT_EQ(sink.messages.size(), 1u);
  EXPECT_EQ(sink.messages[0].title, "PortSetup");
  EXPECT_EQ(sink.messages[0].text, "Port unaccessible! Setup?");
  EXPECT_EQ(callsStartingWith("ShowPortSetup").size(), 1u);
  EXPECT_EQ(main.sessionState(), SessionState::NoSession);

  link.openOk = true;
  main.KeyConnect_Click();
  link.queueNoDevice();
  spin(5);
  EXPECT_EQ(sink.messages.back().text,
            "No answer. Check device power and cable.\r\nSetup another port number?");
  EXPECT_EQ(callsStartingWith("ShowPortSetup").size(), 1u);  // answered no
  link.portAutomatic = true;
  link.queueNoDevice();
  spin(5);
  EXPECT_EQ(sink.messages.size(), 2u);  // an automatic port asks nothing
}

TEST_F(Session, DeviceLostClearsTheSessionButKeepsRegisters) {
  connect();
  sendLimits(true);
  spin(400);
  link.queueHeader("V1", std::string("\x01\x00", 2));
  link.queueEnd();
  spin(400);
  EXPECT_EQ(main.sessionState(), SessionState::NoSession);
  EXPECT_EQ(main.state().connectCaption, "Connect");
  EXPECT_TRUE(main.state().connectVisible);
  EXPECT_FALSE(main.state().startEnabled);
  EXPECT_EQ(main.cache().V1, 256);  // kept for the next session
  EXPECT_EQ(main.cache().TS, 0);
  EXPECT_FALSE(main.limitFlag("TOv"));
}

TEST_F(Session, CloseAsksWhileOnline) {
  connect();
  sink.answers.push_back(kAnswerNo);
  EXPECT_FALSE(main.requestClose());
  sink.answers.push_back(kAnswerYes);
  EXPECT_TRUE(main.requestClose());
  EXPECT_TRUE(main.state().connectVisible);
  EXPECT_EQ(sink.messages.back().text, "You must close session\r\n before exit. Disconnect?");
}
