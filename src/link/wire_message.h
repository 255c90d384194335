#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "link/wire_frame.h"

namespace zorvik {

// The messages of the device stream, one a frame. Requests go from the program to the instrument
// (one for each call of the link contract that the instrument must hear of), events come back (one
// for each event of the contract, and the state the contract's getters read).
enum class WireType : uint8_t {
  // Program -> instrument
  OpenSession = 0x01,
  CloseSession = 0x02,
  SettingsName = 0x03,      // name
  ParallelTransfer = 0x04,  // on
  FirmwareTimeout = 0x05,   // number (ms)
  ShowTime = 0x06,          // number (ms)
  FirmwareSector = 0x07,    // name, data, flagA, flagB
  Command = 0x08,           // name, flagA, flagB
  RepeatCommand = 0x09,     // flagA (enable), name, flagB
  PeriodicCommand = 0x0A,   // flagA (enable), name, number (period ms)
  GetRegister = 0x0B,       // name
  GetProperty = 0x0C,       // name
  PutRegister1 = 0x0D,      // name, number
  PutRegister2 = 0x0E,      // name, number
  PutRegister4 = 0x0F,      // name, number
  ResendLast = 0x10,
  StopRepeat = 0x11,  // flagA (resume)
  PrepareFirmwareLoad = 0x12,
  // Instrument -> program
  Hello = 0x80,  // number (protocol version), name (USB serial), data (USB version), text (USB name)
  NoDevice = 0x81,
  SessionMessage = 0x82,  // data (the message)
  SessionStart = 0x83,
  SessionEnd = 0x84,
  Header = 0x85,   // name, data (the value), flagA (parallel)
  Roll = 0x86,     // data (the chunk), number (total)
  Online = 0x87,   // flagA
  Refused = 0x88,  // the port cannot be opened
  Error = 0x8F,    // text; the sender closes the connection after it
};

inline constexpr int32_t kWireProtocolVersion = 1;

// All the fields a message may carry; each type uses the ones its comment names and leaves the rest
// at their defaults. On the wire the fields follow in a fixed order per type: a name is one length
// byte and up to 255 bytes, data and text are a 4-byte big-endian length and the bytes, a flag is one
// byte 0 or 1, a number 4 bytes big-endian, two's complement.
struct WireMessage {
  WireType type = WireType::OpenSession;
  std::string name;
  std::string data;
  std::string text;
  int32_t number = 0;
  bool flagA = false;
  bool flagB = false;
};

// Appends the message as one frame. Throws Fault for a name longer than 255 bytes or a message too
// long for a frame.
void appendMessage(std::string& out, const WireMessage& message);
std::string encodeMessage(const WireMessage& message);

// Reads a frame as a message. Throws Fault (with what was wrong) for an unknown type, a field cut
// short, a flag other than 0 or 1, or bytes left over.
WireMessage decodeMessage(const WireFrame& frame);

// "HEADER", "OPEN_SESSION", ...: the type as the protocol description names it.
std::string_view wireTypeName(WireType type);

}  // namespace zorvik
