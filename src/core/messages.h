#pragma once
#include <string>

namespace zorvik {

// Every box the program shows goes through one sink: Qt boxes in the GUI, a recorder in tests and the CLI.
enum class BoxKind {
  Information,  // platform box, information icon
  Critical,     // platform box, critical icon
  Question,     // platform box, Yes/No
  OkCancel,     // platform box, OK/Cancel with question icon
  InfoBox,      // the system's own self-closing information box (key may silence it)
  QuestBox,     // the system's question box with "Always"
  QuestBox3,    // the system's question box with "Always" and "Never"
};

// Answers: 6 yes, 7 no, 1 OK, 2 cancel, 0 no answer.
constexpr int kAnswerOk = 1;
constexpr int kAnswerCancel = 2;
constexpr int kAnswerYes = 6;
constexpr int kAnswerNo = 7;

const char* boxKindName(BoxKind kind);

class MessageSink {
 public:
  virtual ~MessageSink() = default;
  // Shows a box; returns the answer for questions, 0 for pure information.
  virtual int show(BoxKind kind, const std::string& title, const std::string& text,
                   const std::string& key = {}) = 0;
};

}  // namespace zorvik
