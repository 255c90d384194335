#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>

#include "config/settings.h"
#include "core/recording_sink.h"
#include "link/fake_obex.h"
#include "session/main_controller.h"

using namespace zorvik;
using zorvik::test::FakeObex;

namespace {

std::string be(uint64_t v, int width) {
  std::string s;
  for (int i = width - 1; i >= 0; --i) s += static_cast<char>((v >> (8 * i)) & 0xFF);
  return s;
}

struct View : MainView {
  int clears = 0;
  std::vector<std::string> shown;
  void clearDisplay() override { ++clears; }
  void packetShown(const std::string& p) override { shown.push_back(p); }
};

struct Fixture : ::testing::Test {
  MemorySettings settings;
  RecordingSink sink;
  View view;
  FakeObex link;
  MainController main{settings, sink, view};
  void SetUp() override { main.attachLink(&link); }
  void TearDown() override { main.attachLink(nullptr); }
  void header(const std::string& name, const std::string& value, bool parallel = false) {
    main.ObexLinkDLL1_HeaderEvent(name, value, parallel);
  }
  static void flush() {
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
  }
};

using HeaderDispatch = Fixture;

}  // namespace

TEST_F(HeaderDispatch, RegistersDecodeAtTheirWidthAndIgnoreOverlongValues) {
  header("P1", be(0xFFFF, 2));
  EXPECT_EQ(main.cache().P1, -1);
  EXPECT_EQ(main.state().fields.at("Offs1cur"), "-1");
  header("V1", be(0x8000, 2));
  EXPECT_EQ(main.cache().V1, 32768);
  main.setReplotNeeded(false);
  header("V1", be(0x100000000ULL, 5));  // five bytes that do not fit: nothing changes
  EXPECT_EQ(main.cache().V1, 32768);
  EXPECT_FALSE(main.ReplotNeeded());
  header("M1", be(3, 1));
  EXPECT_EQ(main.state().fields.at("OknoBytesPerSample"), "2");
  EXPECT_TRUE(main.ReplotNeeded());
  header("O1", be(0x100, 2));  // a byte register refuses 256
  EXPECT_EQ(main.cache().O1, 0);
  header("TS", be(128, 4));
  EXPECT_EQ(main.state().fields.at("ClockPerSampleCur"), "0.5");
  header("TS", be(8, 4));
  EXPECT_EQ(main.state().fields.at("ClockPerSampleCur"), "0.031");
  header("TS", be(1000, 4));
  EXPECT_EQ(main.state().fields.at("ClockPerSampleCur"), "3");
  header("MC", be(800, 2));
  EXPECT_EQ(main.state().fields.at("ClockPeriodMCUcur"), "8000");
  EXPECT_EQ(main.state().fields.at("ClockMCUcur"), "125");
  EXPECT_TRUE(sink.messages.empty());
}

TEST_F(HeaderDispatch, PropertiesFillTheDevicePage) {
  header("VNM", "ZV-1");
  header("VSN", "123");
  EXPECT_EQ(main.state().fields.at("Property_VNM"), "ZV-1");
  EXPECT_EQ(main.state().fields.at("USBname"), "N1");
  EXPECT_EQ(main.state().fields.at("USBserial"), "S1");
  header("MCd", be(100, 4));  // kept, but shows nothing
  EXPECT_EQ(main.cache().MCd, 100);
  EXPECT_EQ(main.state().fields.count("DevicePage.ClockMCUdef"), 0u);
  header("MCd", be(1250, 4));
  EXPECT_EQ(main.state().fields.at("DevicePage.ClockMCUdef"), "12.5");
  EXPECT_EQ(main.state().fields.at("DeviceClockPage.ClockMCUdef"), "80");
  header("TOl", be(384, 4));
  EXPECT_EQ(main.state().fields.at("Property_TOl"), "1.50");
  header("TPl", be(25700, 4));
  EXPECT_EQ(main.state().fields.at("Property_TPl"), "100");
  EXPECT_TRUE(main.limitFlag("TOl"));
  EXPECT_FALSE(main.limitFlag("TMl"));
}

TEST_F(HeaderDispatch, LimitTablesAreIndexedAtArrival) {
  DeviceCache& c = main.cache();
  c.TMl = 8, c.TMh = 256, c.TOl = 256, c.TOv = 6;
  c.TS = 4096;  // class 4
  c.M1 = 4;
  header("QSh", be(16384, 4));
  EXPECT_EQ(c.QShTable[4 * 8][4], 16384);
  c.TS = 4;  // class 0: a later answer lands in the row of the new TS
  header("TCh", be(1000, 4));
  EXPECT_EQ(c.TChTable[0][4], 1000);
  EXPECT_EQ(c.TChTable[32][4], 0);
}

TEST_F(HeaderDispatch, OffsetLimitsStoreAtThePresentVoltDivPosition) {
  header("P1h", be(768, 2));
  EXPECT_EQ(main.cache().P1h, 768);
  EXPECT_FALSE(main.cache().P1hValid[5]);
  main.setVoltDivPosition(5);
  header("P1l", be(static_cast<uint16_t>(-768), 2));
  EXPECT_EQ(main.cache().P1lTable[5], -768);
  EXPECT_TRUE(main.cache().P1lValid[5]);
}

TEST_F(HeaderDispatch, UnknownNameAndFirmwareErrorBoxes) {
  header("XQZ", "1");
  ASSERT_EQ(sink.messages.size(), 1u);
  EXPECT_EQ(sink.messages[0].title, "OBEX reseiving error");
  EXPECT_EQ(sink.messages[0].text, "Unknown header identifier=XQZ");
  header("d", "abc");  // names are compared with their case
  EXPECT_EQ(sink.messages.size(), 2u);
  header("L_B", std::string(1, '\0'));
  EXPECT_EQ(sink.messages.size(), 2u);
  header("L_B", std::string(1, '\xFF'));
  ASSERT_EQ(sink.messages.size(), 3u);
  EXPECT_EQ(sink.messages[2].text, "Device firmware error");
  EXPECT_EQ(sink.messages[2].kind, BoxKind::Critical);
  header("RIS", "ab");  // too short to read: ignored
  EXPECT_EQ(sink.messages.size(), 3u);
}

TEST_F(HeaderDispatch, DataIsCountedKeptAndDrawnUnlessParallelWithoutShowTime) {
  std::string p = be(0x1000, 2) + be(0, 2) + std::string(20, 'x');
  header("D", p);
  EXPECT_EQ(main.PacketCount(), 1);
  EXPECT_EQ(view.shown.size(), 1u);
  EXPECT_EQ(main.LastPacket(), p);
  std::string p2 = p + "yy";
  header("D", p2, true);  // parallel and ShowTimeMs 0: counted and kept, not drawn
  EXPECT_EQ(main.PacketCount(), 2);
  EXPECT_EQ(view.shown.size(), 1u);
  EXPECT_EQ(main.LastPacket(), p2);
}

TEST_F(HeaderDispatch, PacketsArrivingInsideTheShowWaitAreKeptNotDrawn) {
  std::string p = be(0x1000, 2) + be(0, 2) + std::string(20, 'x');
  main.setShowTimeMs(30);
  // Two more packets of the stream land while the first one stands on the screen.
  QTimer::singleShot(0, [&] { header("D", p + "a", true); });
  QTimer::singleShot(0, [&] { header("D", p + "b", true); });
  header("D", p, true);
  EXPECT_EQ(main.PacketCount(), 3);
  EXPECT_EQ(view.shown.size(), 1u);
  EXPECT_EQ(main.LastPacket(), p);  // the first one's wait ended last
  header("D", p + "c", true);       // the wait is over: drawn again
  EXPECT_EQ(view.shown.size(), 2u);
}

TEST_F(HeaderDispatch, EmptyDataMeansNoTrigger) {
  main.setModeText("Started");
  header("D", "");
  EXPECT_EQ(main.PacketCount(), 0);
  EXPECT_EQ(main.state().modeColor, kColorRed);
  EXPECT_TRUE(main.state().noTriggerVisible);
  EXPECT_EQ(main.state().modeText, "Stopped");
  EXPECT_EQ(view.clears, 1);
  main.setNoTriggerMsg(false);
  header("D", "");
  EXPECT_FALSE(main.state().noTriggerVisible);
}
