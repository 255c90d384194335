// The stream link against a peer that this test plays, byte by byte: the faults of a wire.
#include "link/stream_obex.h"

#include <gtest/gtest.h>

#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <memory>

#include "link/wire_message.h"
#include "sim/event_loop_helpers.h"
#include "sim/event_recorder.h"

using namespace zorvik;

namespace {

std::string bytesOf(WireType type, const std::string& name = "", const std::string& data = "",
                    bool flag = false) {
  WireMessage m;
  m.type = type;
  m.name = name;
  m.data = data;
  m.flagA = flag;
  if (type == WireType::Hello) {
    m.number = kWireProtocolVersion;
    m.data = "2.00";
    m.text = "Zorvik DSO";
  }
  return encodeMessage(m);
}

std::string sessionOpening() {
  return bytesOf(WireType::Hello, "SN-7") + bytesOf(WireType::Online, "", "", true) +
         bytesOf(WireType::SessionMessage, "", "ZV-1 ready") + bytesOf(WireType::SessionStart);
}

struct StreamLink : ::testing::Test {
  QTemporaryDir dir;
  QLocalServer server;
  QLocalSocket* peer = nullptr;  // the instrument's end, owned by the server
  FrameDecoder fromProgram;
  std::unique_ptr<StreamObex> link;
  EventRecorder events;
  std::vector<std::string> errors;

  void SetUp() override {
    ASSERT_TRUE(server.listen(dir.filePath("z.sock")));
    link = std::make_unique<StreamObex>(parseDeviceAddress("unix:" + dir.filePath("z.sock").toStdString()));
    link->setEventSink(&events);
    link->onStreamError = [this](const std::string& e) { errors.push_back(e); };
  }
  void open() {
    bool ok = false;
    link->OpenSession(ok);
    ASSERT_TRUE(ok);
    ASSERT_TRUE(spinUntil([&] { return server.hasPendingConnections(); }, 3000));
    peer = server.nextPendingConnection();
  }
  void write(const std::string& bytes) {
    peer->write(bytes.data(), static_cast<qint64>(bytes.size()));
    peer->flush();
  }
  // The requests the program has sent so far, by type name.
  std::vector<std::string> requests() {
    std::vector<std::string> out;
    if (peer) {
      const QByteArray got = peer->readAll();
      fromProgram.feed(std::string_view(got.constData(), static_cast<size_t>(got.size())));
    }
    WireFrame f;
    while (fromProgram.next(f)) out.emplace_back(wireTypeName(decodeMessage(f).type));
    return out;
  }
  bool online() {
    bool on = false;
    link->GetOnline(on);
    return on;
  }
};

}  // namespace

// Messages joined in one write, and a packet split over three, come out as the events in order.
TEST_F(StreamLink, JoinedAndSplitFramesBecomeTheEventsInOrder) {
  open();
  write(sessionOpening());
  const std::string packet = bytesOf(WireType::Header, "D", std::string(5000, '\x55'), true);
  write(packet.substr(0, 3));
  spinFor(20);
  write(packet.substr(3, 2000));
  spinFor(20);
  EXPECT_EQ(events.count("Header"), 0u);
  write(packet.substr(2003) + bytesOf(WireType::Header, "V1", std::string("\x01\xf4", 2)));
  ASSERT_TRUE(spinUntil([&] { return events.count("Header") == 2; }, 3000));
  EXPECT_EQ(events.kinds(), (std::vector<std::string>{"Message", "Start", "D", "V1"}));
  EXPECT_EQ(events.entries[0].name, "ZV-1 ready");
  EXPECT_EQ(events.entries[2].value, std::string(5000, '\x55'));
  EXPECT_TRUE(events.entries[2].parallel);
  EXPECT_TRUE(online());
  std::string serial;
  link->GetUsbSerial(serial);
  EXPECT_EQ(serial, "SN-7");

  // The requests: what was set before, then the session, then the calls in order.
  link->PutRegister2("P1", -768);
  link->SetRepeatCommand(true, "D", false);
  bool active = false;
  link->GetSerialActive(active);
  EXPECT_TRUE(active);
  ASSERT_TRUE(spinUntil([&] { return peer->bytesAvailable() > 0; }, 1000));
  spinFor(20);
  EXPECT_EQ(requests(),
            (std::vector<std::string>{"SETTINGS_NAME", "PARALLEL_TRANSFER", "FIRMWARE_TIMEOUT", "SHOW_TIME",
                                      "OPEN_SESSION", "PUT_REGISTER2", "REPEAT_COMMAND"}));
  EXPECT_TRUE(errors.empty());
}

// The peer goes in the middle of a packet: what came whole is delivered, the cut packet is not, and the
// session ends as for a lost device.
TEST_F(StreamLink, APeerGoneMidPacketEndsTheSession) {
  open();
  const std::string packet = bytesOf(WireType::Header, "D", std::string(3000, 'x'));
  write(sessionOpening() + packet + packet.substr(0, 1500));
  ASSERT_TRUE(spinUntil([&] { return events.count("Header") == 1; }, 3000));
  EXPECT_GT(link->partialBytes(), 0u);
  peer->disconnectFromServer();
  ASSERT_TRUE(spinUntil([&] { return events.count("End") == 1; }, 3000));
  spinFor(20);
  EXPECT_EQ(events.kinds(), (std::vector<std::string>{"Message", "Start", "D", "End"}));
  EXPECT_FALSE(online());
  EXPECT_TRUE(errors.empty());  // a pulled cable is no fault of the stream
  // A new session takes a new connection.
  open();
  write(sessionOpening());
  EXPECT_TRUE(spinUntil([&] { return online(); }, 3000));
}

// A length beyond the limit, or a payload that breaks its layout, is never trusted: the connection
// closes with the reason, to the peer and to the program, and the session ends.
TEST_F(StreamLink, ABadFrameClosesTheConnectionWithTheReason) {
  struct Case {
    std::string bytes;
    std::string error;
  };
  const std::vector<Case> cases = {
      {std::string("\x7f\xff\xff\xff", 4),
       "device stream: a frame of 2147483647 bytes, more than the 1048576 allowed"},
      {std::string("\x00\x00\x00\x02\x83\x00", 6),
       "device stream: malformed SESSION_START message: 1 bytes after the last field"},
      {bytesOf(WireType::GetRegister, "TS"), "the instrument sent a request (GET_REGISTER)"},
  };
  for (const Case& c : cases) {
    events.entries.clear();
    errors.clear();
    open();
    write(sessionOpening() + c.bytes + bytesOf(WireType::Header, "D", "never"));
    ASSERT_TRUE(spinUntil([&] { return !errors.empty(); }, 3000)) << c.error;
    EXPECT_EQ(errors, std::vector<std::string>{c.error});
    EXPECT_EQ(events.kinds(), (std::vector<std::string>{"Message", "Start", "End"}));
    EXPECT_FALSE(online());
    ASSERT_TRUE(spinUntil(
        [&] { return peer->state() != QLocalSocket::ConnectedState || peer->bytesAvailable() > 0; }, 3000));
    spinFor(20);
    std::vector<std::string> got = requests();
    ASSERT_FALSE(got.empty());
    EXPECT_EQ(got.back(), "ERROR");
    fromProgram = FrameDecoder();
  }
}

// Nobody at the address, or an instrument that refuses: no device found, no session, no box.
TEST_F(StreamLink, NoListenerOrARefusalIsNoDeviceFound) {
  server.close();
  bool ok = false;
  link->OpenSession(ok);
  EXPECT_TRUE(ok);
  ASSERT_TRUE(spinUntil([&] { return events.count("NoDevice") == 1; }, 3000));
  ASSERT_TRUE(server.listen(dir.filePath("z.sock")));
  open();
  write(bytesOf(WireType::Hello) + bytesOf(WireType::Refused));
  ASSERT_TRUE(spinUntil([&] { return events.count("NoDevice") == 2; }, 3000));
  EXPECT_FALSE(online());
  EXPECT_TRUE(errors.empty());
}
