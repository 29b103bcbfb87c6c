#include "attacks/hands.h"

#include <algorithm>
#include <utility>

#include "forms/form.h"
#include "platform/boxes.h"
#include "platform/clock.h"

namespace penlog {

void PostGlance(void* owner, std::function<void()> look) {
  PostCall(Now() + kGlance, owner, std::move(look), EventKind::RepeatingCall);
}

int EntryOf(const Control& list, const std::string& text) {
  const auto found = std::find(list.List.begin(), list.List.end(), text);
  return found == list.List.end() ? 0 : static_cast<int>(found - list.List.begin());
}

void Do(const std::string& control, ActionKind kind, const std::string& text, int number) {
  OperatorAction action;
  action.form = FindForm(control.substr(0, control.find('.')));
  action.control = action.form->Find(control.substr(control.find('.') + 1));
  action.kind = kind;
  action.text = text;
  action.number = number;
  PostActionNow(std::move(action));
}

std::string TakeFrontBox() {
  const MessageBox* box = FrontBox();
  if (box == nullptr) return {};
  const std::string text = box->text;
  const bool asks = Offers(box->buttons, BoxAnswer::Yes);
  AnswerBox(box->id, asks ? BoxAnswer::Yes : BoxAnswer::Ok);
  return text;
}

std::string FrontScreen() {
  for (auto form = ShownForms().rbegin(); form != ShownForms().rend(); ++form) {
    if ((*form)->Name() != "frmWarning") return (*form)->Name();
  }
  return {};
}

}  // namespace penlog
