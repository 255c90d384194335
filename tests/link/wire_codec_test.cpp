// The frames and messages of the device stream: what one end writes the other reads back, however the
// bytes are cut on the way, and anything malformed is refused with a reason.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/fault.h"
#include "link/device_address.h"
#include "link/wire_frame.h"
#include "link/wire_message.h"

using namespace zorvik;

namespace {

std::vector<WireMessage> everyKind() {
  std::string packet(8200, '\0');
  for (size_t i = 0; i < packet.size(); ++i) packet[i] = static_cast<char>(i * 7);
  return {
      {WireType::OpenSession, "", "", "", 0, false, false},
      {WireType::SettingsName, "Zorvik DSO1", "", "", 0, false, false},
      {WireType::FirmwareSector, "W", std::string("\x01\x00\xff", 3), "", 0, true, false},
      {WireType::Command, "D", "", "", 0, true, true},
      {WireType::PeriodicCommand, "C", "", "", 60000, true, false},
      {WireType::PutRegister2, "P1", "", "", -768, false, false},
      {WireType::PutRegister4, "TS", "", "", static_cast<int32_t>(0x80000000u), false, false},
      {WireType::Hello, "ZV1-000123", "2.00", "Zorvik DSO", kWireProtocolVersion, false, false},
      {WireType::Header, "D", packet, "", 0, true, false},
      {WireType::Header, "XQZ", std::string(1, '\0'), "", 0, false, false},
      {WireType::Roll, "", packet.substr(0, 100), "", 8200, false, false},
      {WireType::Error, "", "", "in use", 0, false, false},
  };
}

void expectSame(const WireMessage& a, const WireMessage& b) {
  EXPECT_EQ(a.type, b.type);
  EXPECT_EQ(a.name, b.name);
  EXPECT_EQ(a.data, b.data);
  EXPECT_EQ(a.text, b.text);
  EXPECT_EQ(a.number, b.number);
  EXPECT_EQ(a.flagA, b.flagA);
  EXPECT_EQ(a.flagB, b.flagB);
}

std::vector<WireMessage> decodeAll(FrameDecoder& d) {
  std::vector<WireMessage> out;
  WireFrame f;
  while (d.next(f)) out.push_back(decodeMessage(f));
  return out;
}

WireFrame frame(uint8_t type, const std::string& payload) {
  return WireFrame{type, payload};
}

}  // namespace

TEST(WireCodec, TheBytesOfAMessageAreThoseOfTheDescription) {
  // A register write: length 8, type 0x0E, name "P1", the value -768 in four bytes.
  EXPECT_EQ(encodeMessage({WireType::PutRegister2, "P1", "", "", -768, false, false}),
            std::string("\x00\x00\x00\x08\x0e\x02P1\xff\xff\xfd\x00", 12));
  EXPECT_EQ(encodeMessage({WireType::SessionStart, "", "", "", 0, false, false}),
            std::string("\x00\x00\x00\x01\x83", 5));
}

// Joined into one stream and fed in every size of piece from one byte up, the messages come out whole,
// in order, and nothing is left over.
TEST(WireCodec, SplitAndJoinedFramesComeOutWholeAndInOrder) {
  const std::vector<WireMessage> sent = everyKind();
  std::string stream;
  for (const WireMessage& m : sent) appendMessage(stream, m);
  for (size_t piece : {size_t{1}, size_t{3}, size_t{4}, size_t{5}, size_t{1000}, stream.size()}) {
    FrameDecoder d;
    std::vector<WireMessage> got;
    for (size_t at = 0; at < stream.size(); at += piece) {
      d.feed(std::string_view(stream).substr(at, piece));
      for (WireMessage& m : decodeAll(d)) got.push_back(std::move(m));
    }
    ASSERT_EQ(got.size(), sent.size()) << "pieces of " << piece;
    for (size_t i = 0; i < sent.size(); ++i) expectSame(got[i], sent[i]);
    EXPECT_EQ(d.partialBytes(), 0u);
  }
}

TEST(WireCodec, AFrameCutShortWaitsAndShowsWhatIsMissing) {
  const std::string bytes =
      encodeMessage({WireType::Header, "D", std::string(300, 'x'), "", 0, false, false});
  FrameDecoder d;
  d.feed(std::string_view(bytes).substr(0, 100));
  WireFrame f;
  EXPECT_FALSE(d.next(f));
  EXPECT_EQ(d.partialBytes(), 100u);
  EXPECT_EQ(d.expectedBytes(), bytes.size() - 4);
}

TEST(WireCodec, ABadLengthIsRefusedBeforeAnyBodyArrives) {
  for (const std::string& head : {std::string("\x00\x00\x00\x00", 4), std::string("\x00\x10\x00\x01", 4),
                                  std::string("\xff\xff\xff\xff", 4)}) {
    FrameDecoder d;
    d.feed(head);
    WireFrame f;
    EXPECT_THROW(d.next(f), Fault);
  }
  FrameDecoder d;
  d.feed(std::string("\x00\x10\x00\x00\x85", 5));  // exactly the limit: waits for the body
  WireFrame f;
  EXPECT_FALSE(d.next(f));
}

TEST(WireCodec, MalformedPayloadsAreRefusedWithTheReason) {
  auto reason = [](const WireFrame& f) {
    try {
      decodeMessage(f);
    } catch (const Fault& e) {
      return std::string(e.what());
    }
    return std::string("accepted");
  };
  EXPECT_EQ(reason(frame(0x7f, "")), "device stream: unknown message type 127");
  EXPECT_EQ(reason(frame(0x85, std::string("\x01"
                                           "D\x00\x00\x00\x05"
                                           "ab\x00",
                                           9))),
            "device stream: malformed HEADER message: data cut short (3 of 5 bytes)");
  EXPECT_EQ(reason(frame(0x85, std::string("\x01"
                                           "D\x00\x00\x00\x00\x02",
                                           7))),
            "device stream: malformed HEADER message: flag byte 2 (0 or 1 expected)");
  EXPECT_EQ(reason(frame(0x83, "x")),
            "device stream: malformed SESSION_START message: 1 bytes after the last field");
  EXPECT_EQ(reason(frame(0x0b,
                         "\x05"
                         "TS")),
            "device stream: malformed GET_REGISTER message: name cut short (2 of 5 bytes)");
  EXPECT_EQ(reason(frame(0x86, std::string("\xff\xff\xff\xff", 4))),
            "device stream: malformed ROLL message: data cut short (0 of 4294967295 bytes)");
}

TEST(WireCodec, WhatCannotBeFramedIsRefusedAtTheSender) {
  EXPECT_THROW(encodeMessage({WireType::GetRegister, std::string(256, 'N'), "", "", 0, false, false}), Fault);
  EXPECT_THROW(encodeMessage({WireType::Header, "D", std::string(kMaxFrameBody, 'x'), "", 0, false, false}),
               Fault);
}

TEST(DeviceAddress, UnixAndTcpAddressesAndTheirFaults) {
  const DeviceAddress u = parseDeviceAddress("unix:z.sock");
  EXPECT_EQ(u.kind, DeviceAddress::Kind::Unix);
  EXPECT_EQ(u.path, "z.sock");
  const DeviceAddress t = parseDeviceAddress("tcp:127.0.0.1:5025");
  EXPECT_EQ(t.kind, DeviceAddress::Kind::Tcp);
  EXPECT_EQ(t.host, "127.0.0.1");
  EXPECT_EQ(t.port, 5025);
  EXPECT_EQ(parseDeviceAddress("tcp:[::1]:7").host, "::1");
  EXPECT_EQ(parseDeviceAddress("tcp:[::1]:7").text(), "tcp:[::1]:7");
  EXPECT_EQ(parseDeviceAddress("tcp:localhost:0", true).port, 0);
  for (const char* bad : {"", "unix:", "usb:1", "tcp:host", "tcp::5025", "tcp:h:0", "tcp:h:65536", "tcp:h:5x",
                          "tcp:::1:5", "tcp:a b:5"})
    EXPECT_THROW(parseDeviceAddress(bad), Fault) << bad;
}
