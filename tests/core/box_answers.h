// The operator at the message boxes: answers each as it comes up and keeps what it said.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/texts.h"

namespace penlog {

class BoxAnswers {
 public:
  BoxAnswers() { Look(); }
  ~BoxAnswers() { DropCalls(this); }
  BoxAnswers(const BoxAnswers&) = delete;
  BoxAnswers& operator=(const BoxAnswers&) = delete;

  /// Boxes that begin with `text` are answered so; others with OK or Yes.
  void Answer(const std::string& text, BoxAnswer answer) { answers_[text] = answer; }

  std::vector<std::string> texts;
  std::vector<BoxButtons> buttons;

 private:
  void Look() {
    PostCall(
        Now() + kMillisecond, this,
        [this] {
          Take();
          Look();
        },
        EventKind::RepeatingCall);
  }

  void Take() {
    const MessageBox* box = FrontBox();
    if (box == nullptr || box->id == last_id_) return;
    last_id_ = box->id;
    texts.push_back(box->text);
    buttons.push_back(box->buttons);
    AnswerBox(box->id, For(*box));
  }

  BoxAnswer For(const MessageBox& box) const {
    for (const auto& [text, answer] : answers_) {
      if (StartsWith(box.text, text)) return answer;
    }
    return box.buttons == BoxButtons::YesNo ? BoxAnswer::Yes : BoxAnswer::Ok;
  }

  std::map<std::string, BoxAnswer> answers_;
  int last_id_ = 0;
};

}  // namespace penlog
