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

  /// Lets each box stand so long from now on.
  void Delay(Micros delay) { delay_ = delay; }

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
    if (box->id != seen_id_) {
      seen_id_ = box->id;
      seen_at_ = Now();
    }
    if (Now() < seen_at_ + delay_) return;
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
  int seen_id_ = 0;
  Micros seen_at_ = 0;
  Micros delay_ = 0;
};

}  // namespace penlog
