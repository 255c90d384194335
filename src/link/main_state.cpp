#include "link/main_state.h"

namespace zorvik {

const char* sessionStateName(SessionState state) {
  switch (state) {
    case SessionState::NoSession:
      return "NoSession";
    case SessionState::Opening:
      return "Opening";
    case SessionState::Boot:
      return "Boot";
    case SessionState::SettingUp:
      return "SettingUp";
    case SessionState::Ready:
      return "Ready";
  }
  return "Unknown";
}

}  // namespace zorvik
