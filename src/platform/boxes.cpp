#include "platform/boxes.h"

#include "platform/box_askers.h"
#include "platform/clock.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"
#include "platform/yield.h"

namespace penlog {

namespace {

/// A text from a damaged file must not make a box larger than the screen.
constexpr int kLongestBoxText = 3000;

struct BoxState {
  std::deque<MessageBox> open;
  std::optional<FileDialog> dialog;
  std::optional<std::string> dialog_answer;
  int last_id = 0;
};

BoxState state;

class AnswerTarget : public EventTarget {
 public:
  explicit AnswerTarget(std::string name) : EventTarget(std::move(name)) {}
  void Post(int id, std::uint32_t answer, std::string text) {
    Event event;
    event.kind = EventKind::Answer;
    event.target = this;
    event.number = id;
    event.lines = answer;
    event.text = std::move(text);
    TheQueue().Post(Now(), std::move(event));
  }
};

class BoxTarget : public AnswerTarget {
 public:
  BoxTarget() : AnswerTarget("message box") {}
  void Handle(const Event& event) override {
    if (state.open.empty() || state.open.front().id != event.number) return;
    const int id = state.open.front().id;
    const auto answer = static_cast<BoxAnswer>(event.lines);
    if (!Offers(state.open.front().buttons, answer)) return;
    const auto answered = std::move(state.open.front().answered);
    state.open.pop_front();
    const BoxAsker asker(AskerOfBox(id));  // what follows from it is asked there too
    ForgetAskerOfBox(id);
    if (answered) answered(answer);
  }
};

class DialogTarget : public AnswerTarget {
 public:
  DialogTarget() : AnswerTarget("file dialog") {}
  void Handle(const Event& event) override {
    if (!state.dialog || state.dialog->id != event.number) return;
    ForgetAskerOfBox(state.dialog->id);
    state.dialog.reset();
    state.dialog_answer = event.text;
  }
};

BoxTarget& Boxes() {
  static BoxTarget& target = *new BoxTarget;
  return target;
}

DialogTarget& Dialogs() {
  static DialogTarget& target = *new DialogTarget;
  return target;
}

}  // namespace

bool Offers(BoxButtons buttons, BoxAnswer answer) {
  switch (buttons) {
    case BoxButtons::Ok:
      return answer == BoxAnswer::Ok;
    case BoxButtons::OkCancel:
      return answer == BoxAnswer::Ok || answer == BoxAnswer::Cancel;
    case BoxButtons::YesNo:
    case BoxButtons::YesNoCareful:
      return answer == BoxAnswer::Yes || answer == BoxAnswer::No;
  }
  return false;
}

void PostBox(const std::string& text, BoxButtons buttons, std::function<void(BoxAnswer)> answered) {
  std::string shown = Left(text, kLongestBoxText);
  if (shown.size() < text.size()) shown += " ...";
  state.open.push_back({++state.last_id, std::move(shown), buttons, std::move(answered)});
  KeepAskerOfBox(state.last_id);
}

BoxAnswer MsgBox(const std::string& text, BoxButtons buttons) {
  // Shared, not on this stack: the box may be answered after an end that unwound this frame.
  auto answer = std::make_shared<std::optional<BoxAnswer>>();
  PostBox(text, buttons, [answer](BoxAnswer given) { *answer = given; });
  while (!*answer) WaitYield("the answer of a message box");
  return **answer;
}

const MessageBox* FrontBox() {
  return state.open.empty() ? nullptr : &state.open.front();
}

const std::deque<MessageBox>& OpenBoxes() {
  return state.open;
}

void AnswerBox(int id, BoxAnswer answer) {
  Boxes().Post(id, static_cast<std::uint32_t>(answer), {});
}

std::optional<std::string> AskFile(const std::string& title, const std::string& folder,
                                   const std::string& pattern, bool for_saving) {
  if (state.dialog) throw RuntimeFault("A file dialog is open already");
  state.dialog = FileDialog{++state.last_id, title, folder, pattern, for_saving};
  KeepAskerOfBox(state.last_id);
  state.dialog_answer.reset();
  while (!state.dialog_answer) WaitYield("the answer of a file dialog");
  if (state.dialog_answer->empty()) return std::nullopt;
  return state.dialog_answer;
}

const FileDialog* OpenFileDialog() {
  return state.dialog ? &*state.dialog : nullptr;
}

void AnswerFileDialog(int id, const std::string& path) {
  Dialogs().Post(id, 0, path);
}

bool BoxIsOpen() {
  return !state.open.empty() || state.dialog.has_value();
}

void ResetBoxes() {
  state = BoxState{};
  ForgetAskers();
}

}  // namespace penlog
