#pragma once
#include <deque>
#include <string>
#include <vector>

#include "core/messages.h"

namespace zorvik {

struct RecordedMessage {
  BoxKind kind;
  std::string title;
  std::string text;
  std::string key;
};

// Keeps every box; questions take queued answers (default: the given fallback).
class RecordingSink : public MessageSink {
 public:
  explicit RecordingSink(int fallbackAnswer = kAnswerNo) : fallback_(fallbackAnswer) {}
  int show(BoxKind kind, const std::string& title, const std::string& text, const std::string& key) override {
    messages.push_back({kind, title, text, key});
    if (kind == BoxKind::Information || kind == BoxKind::Critical || kind == BoxKind::InfoBox) return 0;
    if (answers.empty()) return fallback_;
    int a = answers.front();
    answers.pop_front();
    return a;
  }
  std::vector<RecordedMessage> messages;
  std::deque<int> answers;

 private:
  int fallback_;
};

}  // namespace zorvik
