#include "link/wire_message.h"

#include <array>

#include "core/fault.h"

namespace zorvik {

namespace {

// The fields of each type in wire order: N name, D data, T text, I number, A flagA, B flagB.
struct Layout {
  WireType type;
  std::string_view name;
  std::string_view fields;
};

constexpr std::array<Layout, 28> kLayouts = {{
    {WireType::OpenSession, "OPEN_SESSION", ""},
    {WireType::CloseSession, "CLOSE_SESSION", ""},
    {WireType::SettingsName, "SETTINGS_NAME", "N"},
    {WireType::ParallelTransfer, "PARALLEL_TRANSFER", "A"},
    {WireType::FirmwareTimeout, "FIRMWARE_TIMEOUT", "I"},
    {WireType::ShowTime, "SHOW_TIME", "I"},
    {WireType::FirmwareSector, "FIRMWARE_SECTOR", "NDAB"},
    {WireType::Command, "COMMAND", "NAB"},
    {WireType::RepeatCommand, "REPEAT_COMMAND", "ANB"},
    {WireType::PeriodicCommand, "PERIODIC_COMMAND", "ANI"},
    {WireType::GetRegister, "GET_REGISTER", "N"},
    {WireType::GetProperty, "GET_PROPERTY", "N"},
    {WireType::PutRegister1, "PUT_REGISTER1", "NI"},
    {WireType::PutRegister2, "PUT_REGISTER2", "NI"},
    {WireType::PutRegister4, "PUT_REGISTER4", "NI"},
    {WireType::ResendLast, "RESEND_LAST", ""},
    {WireType::StopRepeat, "STOP_REPEAT", "A"},
    {WireType::PrepareFirmwareLoad, "PREPARE_FIRMWARE_LOAD", ""},
    {WireType::Hello, "HELLO", "INDT"},
    {WireType::NoDevice, "NO_DEVICE", ""},
    {WireType::SessionMessage, "SESSION_MESSAGE", "D"},
    {WireType::SessionStart, "SESSION_START", ""},
    {WireType::SessionEnd, "SESSION_END", ""},
    {WireType::Header, "HEADER", "NDA"},
    {WireType::Roll, "ROLL", "DI"},
    {WireType::Online, "ONLINE", "A"},
    {WireType::Refused, "REFUSED", ""},
    {WireType::Error, "ERROR", "T"},
}};

const Layout* findLayout(uint8_t type) {
  for (const Layout& l : kLayouts)
    if (static_cast<uint8_t>(l.type) == type) return &l;
  return nullptr;
}

void putU32(std::string& out, uint32_t v) {
  for (int shift = 24; shift >= 0; shift -= 8) out += static_cast<char>((v >> shift) & 0xFF);
}

void putBytes(std::string& out, const std::string& bytes) {
  putU32(out, static_cast<uint32_t>(bytes.size()));
  out += bytes;
}

class Reader {
 public:
  Reader(std::string_view bytes, std::string_view typeName) : bytes_(bytes), typeName_(typeName) {}

  std::string_view take(size_t n, std::string_view field) {
    if (bytes_.size() - at_ < n)
      fail(std::string(field) + " cut short (" + std::to_string(bytes_.size() - at_) + " of " +
           std::to_string(n) + " bytes)");
    const std::string_view out = bytes_.substr(at_, n);
    at_ += n;
    return out;
  }
  uint32_t u32(std::string_view field) {
    const std::string_view b = take(4, field);
    uint32_t v = 0;
    for (char c : b) v = v << 8 | static_cast<unsigned char>(c);
    return v;
  }
  std::string name() {
    const size_t n = static_cast<unsigned char>(take(1, "name length")[0]);
    return std::string(take(n, "name"));
  }
  std::string bytes(std::string_view field) { return std::string(take(u32(field), field)); }
  bool flag() {
    const unsigned char c = static_cast<unsigned char>(take(1, "flag")[0]);
    if (c > 1) fail("flag byte " + std::to_string(c) + " (0 or 1 expected)");
    return c == 1;
  }
  void end() {
    if (at_ != bytes_.size()) fail(std::to_string(bytes_.size() - at_) + " bytes after the last field");
  }
  [[noreturn]] void fail(const std::string& what) const {
    throw Fault("device stream: malformed " + std::string(typeName_) + " message: " + what);
  }

 private:
  std::string_view bytes_;
  std::string_view typeName_;
  size_t at_ = 0;
};

}  // namespace

void appendMessage(std::string& out, const WireMessage& m) {
  const Layout* layout = findLayout(static_cast<uint8_t>(m.type));
  if (!layout) throw Fault("device stream: no such message type");
  // Written in place behind a length that is filled in last: a packet is copied once, not per layer.
  const size_t start = out.size();
  putU32(out, 0);
  out += static_cast<char>(m.type);
  for (char f : layout->fields) {
    switch (f) {
      case 'N':
        if (m.name.size() > 255) {
          out.resize(start);
          throw Fault("device stream: a name of more than 255 bytes: " + m.name);
        }
        out += static_cast<char>(m.name.size());
        out += m.name;
        break;
      case 'D':
        putBytes(out, m.data);
        break;
      case 'T':
        putBytes(out, m.text);
        break;
      case 'I':
        putU32(out, static_cast<uint32_t>(m.number));
        break;
      case 'A':
        out += static_cast<char>(m.flagA ? 1 : 0);
        break;
      case 'B':
        out += static_cast<char>(m.flagB ? 1 : 0);
        break;
    }
  }
  const size_t body = out.size() - start - kFrameLengthBytes;
  if (body > kMaxFrameBody) {
    out.resize(start);
    throw Fault("device stream: a message of " + std::to_string(body - 1) + " bytes is too long");
  }
  for (size_t i = 0; i < kFrameLengthBytes; ++i)
    out[start + i] = static_cast<char>((body >> (8 * (kFrameLengthBytes - 1 - i))) & 0xFF);
}

std::string encodeMessage(const WireMessage& message) {
  std::string out;
  appendMessage(out, message);
  return out;
}

WireMessage decodeMessage(const WireFrame& frame) {
  const Layout* layout = findLayout(frame.type);
  if (!layout) throw Fault("device stream: unknown message type " + std::to_string(frame.type));
  Reader r(frame.payload, layout->name);
  WireMessage m;
  m.type = layout->type;
  for (char f : layout->fields) {
    switch (f) {
      case 'N':
        m.name = r.name();
        break;
      case 'D':
        m.data = r.bytes("data");
        break;
      case 'T':
        m.text = r.bytes("text");
        break;
      case 'I':
        m.number = static_cast<int32_t>(r.u32("number"));
        break;
      case 'A':
        m.flagA = r.flag();
        break;
      case 'B':
        m.flagB = r.flag();
        break;
    }
  }
  r.end();
  return m;
}

std::string_view wireTypeName(WireType type) {
  const Layout* layout = findLayout(static_cast<uint8_t>(type));
  return layout ? layout->name : std::string_view("UNKNOWN");
}

}  // namespace zorvik
