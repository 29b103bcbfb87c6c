// Answers message boxes for a test and keeps their texts.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "platform/boxes.h"
#include "platform/clock.h"

namespace penlog {

/// Each box is answered 10 ms after it is seen: with the next of `answers`, else OK or Yes.
class BoxAnswerer {
 public:
  BoxAnswerer() { Look(); }
  ~BoxAnswerer() { DropCalls(this); }
  BoxAnswerer(const BoxAnswerer&) = delete;
  BoxAnswerer& operator=(const BoxAnswerer&) = delete;

  std::vector<std::string> texts;
  std::deque<BoxAnswer> answers;

 private:
  void Look() {
    PostCall(
        Now() + 10 * kMillisecond, this,
        [this] {
          if (const MessageBox* box = FrontBox(); box != nullptr && box->id != last_) Answer(*box);
          Look();
        },
        EventKind::RepeatingCall);
  }

  void Answer(const MessageBox& box) {
    last_ = box.id;
    texts.push_back(box.text);
    BoxAnswer answer = box.buttons == BoxButtons::YesNo ? BoxAnswer::Yes : BoxAnswer::Ok;
    if (!answers.empty()) {
      answer = answers.front();
      answers.pop_front();
    }
    AnswerBox(box.id, answer);
  }

  int last_ = 0;
};

}  // namespace penlog
