#include "core/message.h"

#include "platform/boxes.h"
#include "sounding/sounding_state.h"

namespace penlog {

void Tell(const std::string& text) {
  if (IsRecording()) {
    PostBox(text);
  } else {
    MsgBox(text);
  }
}

}  // namespace penlog
