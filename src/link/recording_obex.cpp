#include "link/recording_obex.h"

namespace zorvik {

RecordingObex::RecordingObex(ClassOBEX& inner) : inner_(inner) {
  inner_.setEventSink(this);
}

RecordingObex::~RecordingObex() {
  inner_.setEventSink(nullptr);
}

void RecordingObex::GetRegister(const std::string& name) {
  requests.push_back(name);
  inner_.GetRegister(name);
}
void RecordingObex::GetProperty(const std::string& name) {
  requests.push_back(name);
  inner_.GetProperty(name);
}
void RecordingObex::PutRegister1(const std::string& name, uint8_t value) {
  writes.emplace_back(name, value);
  inner_.PutRegister1(name, value);
}
void RecordingObex::PutRegister2(const std::string& name, int32_t value) {
  writes.emplace_back(name, value);
  inner_.PutRegister2(name, value);
}
void RecordingObex::PutRegister4(const std::string& name, int32_t value) {
  writes.emplace_back(name, value);
  inner_.PutRegister4(name, value);
}

ObexEvents* RecordingObex::target() {
  return eventSink();
}

void RecordingObex::ObexLinkDLL1_NoZorvikFoundEvent() {
  if (auto* t = target()) t->ObexLinkDLL1_NoZorvikFoundEvent();
}
void RecordingObex::ObexLinkDLL1_StartSessionMsgEvent(const std::string& message) {
  if (auto* t = target()) t->ObexLinkDLL1_StartSessionMsgEvent(message);
}
void RecordingObex::ObexLinkDLL1_StartSessionEvent() {
  if (auto* t = target()) t->ObexLinkDLL1_StartSessionEvent();
}
void RecordingObex::ObexLinkDLL1_EndSessionEvent() {
  if (auto* t = target()) t->ObexLinkDLL1_EndSessionEvent();
}
void RecordingObex::ObexLinkDLL1_HeaderEvent(const std::string& name, const std::string& value,
                                             bool parallel) {
  const bool data = name == "D" && onData;
  if (data) onData(value, parallel, false);
  if (auto* t = target()) t->ObexLinkDLL1_HeaderEvent(name, value, parallel);
  if (data && onData) onData(value, parallel, true);
}
void RecordingObex::ObexLinkDLL1_rollevent(const std::string& chunk, int32_t total) {
  ++rollChunks;
  rollBytes += static_cast<long long>(chunk.size());
  if (auto* t = target()) t->ObexLinkDLL1_rollevent(chunk, total);
}

}  // namespace zorvik
