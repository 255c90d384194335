#pragma once
#include <cstdint>
#include <string>

namespace zorvik {

// The events of the link. They always arrive from the event loop, never from inside a link call.
class ObexEvents {
 public:
  virtual ~ObexEvents() = default;
  virtual void ObexLinkDLL1_NoZorvikFoundEvent() = 0;
  virtual void ObexLinkDLL1_StartSessionMsgEvent(const std::string& message) = 0;
  virtual void ObexLinkDLL1_StartSessionEvent() = 0;
  virtual void ObexLinkDLL1_EndSessionEvent() = 0;
  // value is a byte string, one char a byte, most significant byte first.
  virtual void ObexLinkDLL1_HeaderEvent(const std::string& name, const std::string& value, bool parallel) = 0;
  // One piece of a streamed packet; total > 0 starts a new packet.
  virtual void ObexLinkDLL1_rollevent(const std::string& chunk, int32_t total) = 0;
};

}  // namespace zorvik
