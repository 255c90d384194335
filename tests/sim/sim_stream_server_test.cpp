// zorvik-sim's server in this process, against a client that this test plays byte by byte.
#include "sim/sim_stream_server.h"

#include <gtest/gtest.h>

#include <QLocalSocket>
#include <QTemporaryDir>
#include <memory>

#include "link/wire_message.h"
#include "sim/event_loop_helpers.h"
#include "sim/sim_config.h"

using namespace zorvik;

namespace {

std::string frame(WireType type, const std::string& name = "", int32_t number = 0, bool flag = false) {
  WireMessage m;
  m.type = type;
  m.name = name;
  m.number = number;
  m.flagA = flag;
  return encodeMessage(m);
}

struct StreamServer : ::testing::Test {
  QTemporaryDir dir;
  std::unique_ptr<SimStreamServer> server;
  std::vector<std::string> log;

  void serve(const std::string& options) {
    server = std::make_unique<SimStreamServer>(parseSimConfig(options));
    server->onLog = [this](const std::string& line) { log.push_back(line); };
    server->listen(parseDeviceAddress("unix:" + dir.filePath("z.sock").toStdString()));
  }
  std::unique_ptr<QLocalSocket> client() {
    auto s = std::make_unique<QLocalSocket>();
    s->setReadBufferSize(1 << 16);  // a program that stops reading fills this, then the kernel's
    s->connectToServer(dir.filePath("z.sock"));
    EXPECT_TRUE(s->waitForConnected(3000));
    return s;
  }
  static void write(QLocalSocket& s, const std::string& bytes) {
    s.write(bytes.data(), static_cast<qint64>(bytes.size()));
  }
  // Every message that arrives within the time, by type name.
  static std::vector<std::string> readFor(QLocalSocket& s, FrameDecoder& d, int ms) {
    std::vector<std::string> out;
    spinUntil(
        [&] {
          const QByteArray b = s.readAll();
          d.feed(std::string_view(b.constData(), static_cast<size_t>(b.size())));
          WireFrame f;
          while (d.next(f)) out.emplace_back(wireTypeName(decodeMessage(f).type));
          return false;
        },
        ms);
    return out;
  }
};

}  // namespace

// A program that stops reading holds the instrument back instead of filling the server's memory, and
// the acquisitions go on once it reads again.
TEST_F(StreamServer, AProgramThatStopsReadingHoldsTheAcquisitions) {
  serve("rate=max");
  auto s = client();
  write(*s, frame(WireType::OpenSession));
  FrameDecoder d;
  const std::vector<std::string> opening = readFor(*s, d, 200);
  EXPECT_EQ(opening, (std::vector<std::string>{"HELLO", "SESSION_MESSAGE", "ONLINE", "SESSION_START"}));
  write(*s, frame(WireType::PutRegister2, "QS", 8192) + frame(WireType::RepeatCommand, "D", 0, true));
  // Until the backlog is full: the count stands still.
  uint64_t held = 0;
  for (int i = 0; i < 30 && (held == 0 || server->device().packetsSent() != held); ++i) {
    held = server->device().packetsSent();
    spinFor(300);
  }
  EXPECT_GT(held, 100u);
  spinFor(500);
  EXPECT_EQ(server->device().packetsSent(), held);
  // Reading again lets the acquisitions go on: bounded in time, not measured by it (a sanitizer build is
  // slow).
  spinUntil(
      [&] {
        readFor(*s, d, 20);
        return server->device().packetsSent() > held + 100;
      },
      10000);
  EXPECT_GT(server->device().packetsSent(), held + 100);
}

// A frame that breaks the framing gets the reason back and the connection closed; the session ends and
// the next program is served.
TEST_F(StreamServer, ABadFrameIsAnsweredWithTheReasonAndTheNextProgramIsServed) {
  serve("rate=50");
  {
    auto s = client();
    write(*s, frame(WireType::OpenSession) + std::string("\x00\x00\x00\x02\x01\x07", 6));
    FrameDecoder d;
    std::vector<std::string> got = readFor(*s, d, 300);
    ASSERT_FALSE(got.empty());
    EXPECT_EQ(got.back(), "ERROR");
    EXPECT_EQ(s->state(), QLocalSocket::UnconnectedState);
  }
  ASSERT_FALSE(log.empty());
  EXPECT_EQ(
      log.back(),
      "closed the connection: device stream: malformed OPEN_SESSION message: 1 bytes after the last field");
  bool online = true;
  server->device().GetOnline(online);
  EXPECT_FALSE(online);
  auto next = client();
  FrameDecoder d;
  write(*next, frame(WireType::OpenSession));
  EXPECT_EQ(readFor(*next, d, 300),
            (std::vector<std::string>{"HELLO", "SESSION_MESSAGE", "ONLINE", "SESSION_START"}));
}
