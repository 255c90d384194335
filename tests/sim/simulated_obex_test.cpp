#include "sim/simulated_obex.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <memory>

#include "sim/event_loop_helpers.h"
#include "sim/event_recorder.h"

namespace zorvik {
namespace {

class SimulatedObexTest : public ::testing::Test {
 protected:
  void make(std::string_view options) {
    link = std::make_unique<SimulatedObex>(parseSimConfig(options));
    link->setEventSink(&events);
  }
  // Opens a normal session and waits until it stands.
  void open(std::string_view options = "rate=max") {
    make(options);
    start();
  }
  void start() {
    bool ok = false;
    link->OpenSession(ok);
    ASSERT_TRUE(ok);
    ASSERT_TRUE(spinUntil([&] { return events.count("Start") == 1; }, 1000));
    events.entries.clear();
  }
  bool online() {
    bool on = false;
    link->GetOnline(on);
    return on;
  }
  bool serialActive() {
    bool on = false;
    link->GetSerialActive(on);
    return on;
  }

  EventRecorder events;
  std::unique_ptr<SimulatedObex> link;
};

TEST_F(SimulatedObexTest, HandshakeAndAnswersArriveOnlyFromTheEventLoop) {
  make("fault=badheader");
  bool ok = false;
  link->OpenSession(ok);
  EXPECT_TRUE(ok);
  EXPECT_TRUE(events.entries.empty());
  EXPECT_FALSE(online());
  ASSERT_TRUE(spinUntil([&] { return events.entries.size() == 3; }, 1000));
  EXPECT_EQ(events.kinds(), (std::vector<std::string>{"Message", "Start", "XQZ"}));
  EXPECT_EQ(events.entries[0].name, "ZV-1 ready");
  EXPECT_EQ(events.entries[2].value, std::string(1, '\0'));
  EXPECT_TRUE(online());

  link->GetProperty("VNM");
  link->PutRegister1("M1", 3);
  EXPECT_EQ(events.entries.size(), 3u);
  spinUntil([&] { return events.entries.size() == 5; }, 1000);
  EXPECT_EQ(events.kinds(), (std::vector<std::string>{"Message", "Start", "XQZ", "VNM", "M1"}));
  EXPECT_EQ(events.lastHeader("VNM")->value, "Zorvik ZV-1");

  link->CloseSession();
  EXPECT_FALSE(online());  // at once: a call in flight takes the offline branch
  EXPECT_EQ(events.count("End"), 0u);
  ASSERT_TRUE(spinUntil([&] { return events.count("End") == 1; }, 1000));
}

TEST_F(SimulatedObexTest, RefusedPortAndMissingDevice) {
  make("fault=noport");
  bool ok = true;
  link->OpenSession(ok);
  EXPECT_FALSE(ok);
  spinFor(30);
  EXPECT_TRUE(events.entries.empty());

  make("fault=nodevice");
  link->OpenSession(ok);
  EXPECT_TRUE(ok);
  QElapsedTimer clock;
  clock.start();
  ASSERT_TRUE(spinUntil([&] { return !events.entries.empty(); }, 2000));
  EXPECT_GE(clock.elapsed(), SimulatedObex::kSearchMs - 20);
  EXPECT_EQ(events.kinds(), (std::vector<std::string>{"NoDevice"}));
  EXPECT_FALSE(online());
}

TEST_F(SimulatedObexTest, BootStateOnlyTalksToTheLoader) {
  make("fault=boot");
  bool ok = false;
  link->OpenSession(ok);
  ASSERT_TRUE(spinUntil([&] { return !events.entries.empty(); }, 1000));
  spinFor(30);
  EXPECT_EQ(events.kinds(), (std::vector<std::string>{"Message"}));
  EXPECT_EQ(events.entries[0].name, "BOOT");
  EXPECT_TRUE(online());
  link->GetProperty("VNM");
  link->SendCommand("D", true, true);
  // The loader has no acquisition registers: a write is not echoed with a value, a read finds none.
  link->PutRegister2("V1", 100);
  link->GetRegister("MC");
  link->SendCommand("F", true, false);
  link->SendFirmwareSector("W",
                           std::string("\x05"
                                       "data",
                                       5),
                           true, true);
  link->CloseSession();
  ASSERT_TRUE(spinUntil([&] { return events.count("End") == 1; }, 1000));
  EXPECT_EQ(events.kinds(), (std::vector<std::string>{"Message", "V1", "MC", "F", "W", "End"}));
  EXPECT_EQ(events.lastHeader("V1")->value, "");
  EXPECT_EQ(events.lastHeader("MC")->value, "");
  EXPECT_EQ(events.lastHeader("F")->value, "ZV-11.2 01231.00");
  EXPECT_EQ(events.lastHeader("W")->value, std::string("O\x05", 2));
}

TEST_F(SimulatedObexTest, EchoesCarryTheClampedValueInTheRegisterWidth) {
  make("rate=max,fault=missing:TMh");
  link->PutRegister1("M1", 3);  // offline: not stored
  start();
  link->PutRegister2("MC", 0x10000 + 100);  // the low 16 bits, 100, are below MCl
  link->PutRegister4("TS", -1);
  link->PutRegister2("P1", -5);
  link->GetRegister("M1");
  link->GetProperty("TMh");  // told to stay silent
  link->GetProperty("D1x");
  link->GetProperty("TMl");
  ASSERT_TRUE(spinUntil([&] { return events.entries.size() == 5; }, 1000));
  spinFor(20);
  EXPECT_EQ(events.kinds(), (std::vector<std::string>{"MC", "TS", "P1", "M1", "TMl"}));
  EXPECT_EQ(events.lastHeader("MC")->value, std::string("\x03\x20", 2));
  EXPECT_EQ(events.lastHeader("TS")->value, std::string(4, '\xFF'));
  EXPECT_EQ(events.lastHeader("P1")->value, "\xFF\xFB");
  EXPECT_EQ(events.lastHeader("M1")->value, std::string(1, '\0'));
}

// A register the device lacks is answered under its own name with nothing in it, in the order asked.
TEST_F(SimulatedObexTest, ARegisterTheDeviceLacksIsAnsweredEmpty) {
  open();
  link->PutRegister1("XX", 1);
  link->GetRegister("nope");
  link->PutRegister4("ts", 7);  // names are exact
  link->PutRegister2("V1", 5);  // below the lowest sensitivity
  ASSERT_TRUE(spinUntil([&] { return events.entries.size() == 4; }, 1000));
  EXPECT_EQ(events.kinds(), (std::vector<std::string>{"XX", "nope", "ts", "V1"}));
  for (size_t i = 0; i < 3; ++i) EXPECT_EQ(events.entries[i].value, "") << events.entries[i].name;
  EXPECT_EQ(events.lastHeader("V1")->value, std::string("\0\x14", 2));
  EXPECT_FALSE(link->device().value("XX").has_value());
}

TEST_F(SimulatedObexTest, RepetitionRunsHoldsResumesAndStops) {
  open();
  link->SetRepeatCommand(true, "D", true);
  EXPECT_TRUE(serialActive());
  ASSERT_TRUE(spinUntil([&] { return events.count("Header", "D") >= 5; }, 2000));
  link->StopRepeat(false);
  EXPECT_FALSE(serialActive());
  spinFor(10);
  const size_t held = events.count("Header", "D");
  spinFor(40);
  EXPECT_EQ(events.count("Header", "D"), held);
  link->StopRepeat(true);
  ASSERT_TRUE(spinUntil([&] { return events.count("Header", "D") > held + 2; }, 2000));
  link->SetRepeatCommand(false, "", false);
  EXPECT_FALSE(serialActive());
  spinFor(10);
  const size_t stopped = events.count("Header", "D");
  spinFor(40);
  EXPECT_EQ(events.count("Header", "D"), stopped);
  EXPECT_EQ(link->packetsSent(), stopped);
}

TEST_F(SimulatedObexTest, LostDeviceEndsTheSessionAfterTheNthPacket) {
  open("rate=max,fault=lost:3");
  link->SetRepeatCommand(true, "D", true);
  ASSERT_TRUE(spinUntil([&] { return events.count("End") == 1; }, 2000));
  spinFor(20);
  EXPECT_EQ(events.kinds(), (std::vector<std::string>{"D", "D", "D", "End"}));
  EXPECT_FALSE(online());
  EXPECT_FALSE(serialActive());
}

TEST_F(SimulatedObexTest, PacingAndCalibrationDelayThePacket) {
  open("rate=20");  // 50 ms a packet
  QElapsedTimer clock;
  clock.start();
  link->SendCommand("D", true, true);
  ASSERT_TRUE(spinUntil([&] { return events.count("Header", "D") == 1; }, 1000));
  EXPECT_GE(clock.elapsed(), 45);
  clock.restart();
  link->SendCommand("C", false, false);  // no answer of its own
  link->SendCommand("D", true, true);
  ASSERT_TRUE(spinUntil([&] { return events.count("Header", "D") == 2; }, 1000));
  EXPECT_GE(clock.elapsed(), 45 + SimulatedObex::kCalibrationMs);
  EXPECT_EQ(events.entries.size(), 2u);
}

// A short record is not worth streaming: parallel transfer sends it as a plain "D".
TEST_F(SimulatedObexTest, ResendRepeatsTheLastPacketAndShortRecordsDoNotStream) {
  open();
  link->ResendLast();  // nothing sent yet, nothing to repeat
  link->SetParallelTransfer(true);
  link->PutRegister1("RS", 2);
  link->SendCommand("D", true, true);
  ASSERT_TRUE(spinUntil([&] { return events.count("Header", "D") == 1; }, 1000));
  const std::string packet = events.lastHeader("D")->value;
  ASSERT_EQ(packet.size(), 1004u);
  EXPECT_FALSE(events.lastHeader("D")->parallel);
  EXPECT_EQ(events.count("Roll"), 0u);

  link->ResendLast();
  ASSERT_TRUE(spinUntil([&] { return events.count("Header", "D") == 2; }, 1000));
  EXPECT_EQ(events.lastHeader("D")->value, packet);
  EXPECT_FALSE(events.lastHeader("D")->parallel);
  EXPECT_EQ(link->packetsSent(), 1u);
}

TEST_F(SimulatedObexTest, SameSeedSameStream) {
  std::vector<std::string> streams[2];
  for (auto& stream : streams) {
    events.entries.clear();
    open("rate=max,noise=0.05,seed=99");
    link->PutRegister1("T1", 0x35);  // either edge, noise on the trigger beyond its bands
    link->SetRepeatCommand(true, "D", true);
    ASSERT_TRUE(spinUntil([&] { return events.count("Header", "D") >= 4; }, 2000));
    for (const auto& e : events.entries)
      if (e.name == "D" && stream.size() < 4) stream.push_back(e.value);
  }
  EXPECT_EQ(streams[0], streams[1]);
  EXPECT_NE(streams[0][0], streams[0][1]);
}

TEST_F(SimulatedObexTest, DestroyedLinkDeliversNothingMore) {
  make("");
  bool ok = false;
  link->OpenSession(ok);
  link->GetProperty("VNM");
  link.reset();
  spinFor(20);
  EXPECT_TRUE(events.entries.empty());
}

}  // namespace
}  // namespace zorvik
