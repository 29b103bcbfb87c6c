#include "operator/run_hash.h"

#include <algorithm>

#include "forms/form.h"
#include "platform/event_queue.h"
#include "platform/memory_disk.h"

namespace penlog {

RunHash::RunHash() {
  TheQueue().on_taken = [this](Micros time, const Event& event) {
    ++events_;
    AddNumber(time);
    AddNumber(static_cast<std::int64_t>(event.kind));
    AddNumber(event.number);
    AddNumber(event.lines);
    Add(event.target->TargetName());
    Add(event.text);
  };
}

RunHash::~RunHash() {
  TheQueue().on_taken = nullptr;
}

void RunHash::Add(std::string_view bytes) {
  for (const char byte : bytes) {
    value_ = (value_ ^ static_cast<unsigned char>(byte)) * 1099511628211ULL;
  }
  value_ = (value_ ^ 0xFFU) * 1099511628211ULL;  // ends the text: "ab" "c" is not "a" "bc"
}

void RunHash::AddNumber(std::int64_t number) {
  for (int shift = 0; shift < 64; shift += 8) {
    value_ = (value_ ^ static_cast<std::uint64_t>((number >> shift) & 0xFF)) * 1099511628211ULL;
  }
}

void RunHash::AddTexts(const std::vector<std::string>& texts) {
  AddNumber(static_cast<std::int64_t>(texts.size()));
  for (const std::string& text : texts) Add(text);
}

void RunHash::AddControls() {
  // By name: the order of construction may differ between builds.
  std::vector<const Form*> forms(AllForms().begin(), AllForms().end());
  std::sort(forms.begin(), forms.end(),
            [](const Form* a, const Form* b) { return a->Name() < b->Name(); });
  for (const Form* form : forms) {
    Add(form->Name());
    Add(form->Caption);
    for (const Control* control : form->Controls()) {
      Add(control->Name());
      Add(control->Caption);
      Add(control->Text);
      AddTexts(control->List);
      AddTexts(control->Beside);
      AddNumber((control->Visible ? 1 : 0) + (control->Enabled ? 2 : 0) +
                (control->Checked ? 4 : 0) + (control->Fill == FillStyle::Solid ? 8 : 0));
    }
  }
}

void RunHash::AddFiles(const MemoryDisk& disk) {
  for (const auto& [path, content] : disk.Files()) {
    Add(path);
    Add(content);
  }
}

}  // namespace penlog
