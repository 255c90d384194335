#include "core/messages.h"

namespace zorvik {

const char* boxKindName(BoxKind kind) {
  switch (kind) {
    case BoxKind::Information:
      return "information";
    case BoxKind::Critical:
      return "critical";
    case BoxKind::Question:
      return "question";
    case BoxKind::OkCancel:
      return "okcancel";
    case BoxKind::InfoBox:
      return "infobox";
    case BoxKind::QuestBox:
      return "questbox";
    case BoxKind::QuestBox3:
      return "questbox3";
  }
  return "unknown";
}

}  // namespace zorvik
