#include "platform/view.h"

#include <utility>

namespace penlog {

namespace {

View* view_in_use = nullptr;
std::function<std::string(std::string_view)> translation_in_use;
int translation_generation = 0;
LookSet chosen_look = LookSet::Day;

}  // namespace

View* TheView() {
  return view_in_use;
}

void UseView(View* view) {
  view_in_use = view;
}

LookSet ChosenLook() {
  return chosen_look;
}

void ChooseLook(LookSet set) {
  chosen_look = set;
}

std::string ShownText(std::string_view text) {
  return translation_in_use ? translation_in_use(text) : std::string(text);
}

void UseTranslation(std::function<std::string(std::string_view)> translation) {
  translation_in_use = std::move(translation);
  ++translation_generation;
}

int TranslationGeneration() {
  return translation_generation;
}

}  // namespace penlog
