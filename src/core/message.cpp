#include "core/message.h"

#include "sounding/sounding_state.h"

namespace penlog {

void Tell(const std::string& text) {
  if (IsRecording()) {
    PostBox(text);
  } else {
    MsgBox(text);
  }
}

void AskYesNo(const std::string& text, std::function<void(bool)> answered) {
  if (IsRecording()) {
    PostBox(text, BoxButtons::YesNo,
            [answered](BoxAnswer answer) { answered(answer == BoxAnswer::Yes); });
  } else {
    answered(MsgBox(text, BoxButtons::YesNo) == BoxAnswer::Yes);
  }
}

}  // namespace penlog
