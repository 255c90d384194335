#pragma once
#include <algorithm>
#include <string>
#include <vector>

#include "link/obex_events.h"

namespace zorvik {

// Keeps every link event in arrival order, for tests to look at.
class EventRecorder : public ObexEvents {
 public:
  struct Entry {
    std::string kind;       // "NoDevice", "Message", "Start", "End", "Header", "Roll"
    std::string name = "";  // header name, or the message text
    std::string value = "";
    bool parallel = false;
    int32_t total = 0;
  };

  void ObexLinkDLL1_NoZorvikFoundEvent() override { entries.push_back({"NoDevice"}); }
  void ObexLinkDLL1_StartSessionMsgEvent(const std::string& message) override {
    entries.push_back({"Message", message});
  }
  void ObexLinkDLL1_StartSessionEvent() override { entries.push_back({"Start"}); }
  void ObexLinkDLL1_EndSessionEvent() override { entries.push_back({"End"}); }
  void ObexLinkDLL1_HeaderEvent(const std::string& name, const std::string& value, bool parallel) override {
    entries.push_back({"Header", name, value, parallel});
  }
  void ObexLinkDLL1_rollevent(const std::string& chunk, int32_t total) override {
    entries.push_back({"Roll", "", chunk, false, total});
  }

  size_t count(const std::string& kind, const std::string& name = "") const {
    return static_cast<size_t>(std::count_if(entries.begin(), entries.end(), [&](const Entry& e) {
      return e.kind == kind && (name.empty() || e.name == name);
    }));
  }
  // The last header of that name, or nullptr.
  const Entry* lastHeader(const std::string& name) const {
    for (auto it = entries.rbegin(); it != entries.rend(); ++it)
      if (it->kind == "Header" && it->name == name) return &*it;
    return nullptr;
  }
  std::vector<std::string> kinds() const {
    std::vector<std::string> out;
    for (const Entry& e : entries) out.push_back(e.kind == "Header" ? e.name : e.kind);
    return out;
  }

  std::vector<Entry> entries;
};

}  // namespace zorvik
