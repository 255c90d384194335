#include "config/reg_format.h"

namespace zorvik {

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

std::string hexUnpadded(unsigned char b) {
  std::string t;
  if (b >= 16) t += kDigits[b >> 4];
  t += kDigits[b & 15];
  return t;
}

std::string hexPadded(unsigned char b) {
  return {kDigits[b >> 4], kDigits[b & 15]};
}

// A text of digits alone gets its second digit from the picture; one with a letter stays as it is.
std::string throughPicture00(const std::string& hex) {
  if (hex.size() == 1 && hex[0] >= '0' && hex[0] <= '9') return "0" + hex;
  return hex;
}

std::string lowerHex(std::uint32_t n) {
  static constexpr char kLower[] = "0123456789abcdef";
  std::string t;
  do {
    t.insert(t.begin(), kLower[n & 15]);
    n >>= 4;
  } while (n != 0);
  return t;
}

}  // namespace

std::string regByteList(std::string_view bytes) {
  std::string out;
  for (unsigned char b : bytes) out += throughPicture00(hexUnpadded(b)) + ",";
  if (!out.empty()) out.pop_back();
  return out;
}

std::string regWrappedList(const std::vector<std::uint16_t>& chars, std::size_t column) {
  std::string out;
  std::size_t count = column;
  auto put = [&](unsigned char b) {
    count += 3;
    if (count > 75) {
      out += "\\\r\n  ";
      count = 2;
    }
    out += hexPadded(b) + ",";
  };
  for (std::uint16_t c : chars) {
    unsigned char low = static_cast<unsigned char>(c & 0xFF);
    unsigned char high = static_cast<unsigned char>(c >> 8);
    if (low == 0 && high == 4) low = 0x50;
    put(low);
    put(high);
  }
  if (!out.empty()) out.pop_back();
  return out;
}

std::string regDwordDigits(std::string_view data) {
  std::string out;
  for (int i = 3; i >= 0; --i) {
    unsigned char b = static_cast<std::size_t>(i) < data.size() ? static_cast<unsigned char>(data[i]) : 0;
    out += hexUnpadded(b);
  }
  return out;
}

std::string regKeyLine(std::uint32_t root, std::string_view shownPath) {
  std::string line = "[" + std::string(regRootName(root));
  if (!shownPath.empty()) line += "\\" + std::string(shownPath);
  return line + "]";
}

std::string regValueLine(const RegValue& v) {
  if (v.data.empty()) return "\"" + v.name + "\"=\"\"";
  std::string left = v.name.empty() ? std::string("@") : "\"" + v.name + "\"";
  switch (v.type) {
    case kRegString: {
      std::string_view text = v.data;
      if (text.back() == '\0') text.remove_suffix(1);
      std::string line = left + "=\"";
      for (char c : text) line += c == '\\' ? std::string("\\\\") : std::string(1, c);
      return line + "\"";
    }
    case kRegDword:
      return left + "=dword:" + regDwordDigits(v.data);
    case kRegBinary:
      return left + "=hex:" + regByteList(v.data);
    case kRegMultiString: {
      std::string head = left + "=hex(7):";
      // Without code-page conversion a stored byte is a character of that code.
      std::vector<std::uint16_t> chars;
      chars.reserve(v.data.size());
      for (unsigned char b : v.data) chars.push_back(b);
      return head + regWrappedList(chars, head.size());
    }
    default:
      return left + "=hex(" + lowerHex(v.type) + "):" + regByteList(v.data);
  }
}

}  // namespace zorvik
