#include "attacks/monkey_watch.h"

#include <algorithm>
#include <array>

#include "conelink/cone_state.h"
#include "core/session.h"
#include "forms/form.h"
#include "forms/operator_actions.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/texts.h"
#include "sounding/row_text.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr Micros kLongestDeadEnd = 15 * 60 * kSecond;
constexpr const char* kSoundings = "/soundings";
constexpr std::array kSigns = {"RUN-TIME FAULT", "Subscript out of range", "Bad file handle",
                               "yielded",        "basic_string",           "vector::"};

std::string ContentOf(const MemoryDisk& disk, const std::string& path) {
  const auto found = disk.Files().find(path);
  return found == disk.Files().end() ? std::string() : found->second;
}

/// The first `count` lines, their ends included.
std::string FirstLines(const std::string& text, int count) {
  std::size_t at = 0;
  for (int line = 0; line < count; ++line) {
    const auto end = text.find('\n', at);
    if (end == std::string::npos) return text;
    at = end + 1;
  }
  return text.substr(0, at);
}

bool IsAppended(const std::string& longer, const std::string& start) {
  return longer.compare(0, start.size(), start) == 0;
}

/// A file of a sounding: what it holds may never go.
bool IsKept(const std::string& path) {
  if (EndsWithNoCase(path, ".new")) return false;
  return StartsWith(path, kSoundings) || path.find("/TemporaryData") != std::string::npos;
}

/// Whether the operator could press it now.
bool IsWayOn(const Form& form, const Control& control) {
  if (control.Kind() != ControlKind::Button || (!control.Click && !control.Press)) return false;
  OperatorAction action;
  action.form = const_cast<Form*>(&form);
  action.control = const_cast<Control*>(&control);
  action.stamp = StampOf(form, &control);
  return WhyRefused(action).empty();
}

}  // namespace

void MonkeyWatch::Fail(const std::string& what) {
  if (faults_.size() < 20) {
    faults_.push_back("at " + std::to_string(Now() / kSecond) + " s: " + what);
  }
}

void MonkeyWatch::BeginLife() {
  open_ = done_ = false;
  last_way_on_ = Now();
}

void MonkeyWatch::Look() {
  LookAtSounding();
  LookAtHistory();
  LookAtBoxes();
  LookForWayOn();
}

void MonkeyWatch::LookAtSounding() {
  if (!open_ && sounding.ConsoleMode == 2) BeginSounding();
  if (!open_ || done_) return;
  AddRows();
  const bool closing = sounding.CloseRowsMade != 0;
  if (ContentOf(disk_, temporary_.path) == "DONE\r\n") return CheckDone();
  CompareFile(temporary_, 0, false);
  CompareFile(cpt_, 1, closing);
}

void MonkeyWatch::BeginSounding() {
  open_ = true;
  ++soundings_;
  constexpr int kTemporaryLines = 17;
  constexpr int kCptLines = 23;
  temporary_ = {session.SoundingFiles[0], "", "", 1};
  temporary_.header = FirstLines(ContentOf(disk_, temporary_.path), kTemporaryLines);
  cpt_ = {session.SoundingFiles[1], "", "", cone.DelayRows + 1};
  cpt_.header = FirstLines(ContentOf(disk_, cpt_.path), kCptLines);
}

void MonkeyWatch::AddRows() {
  for (; temporary_.next_row <= sounding.RowCount; ++temporary_.next_row) {
    temporary_.rows += TemporaryRow(temporary_.next_row);
    ++rows_;
  }
  for (; cpt_.next_row <= sounding.RowCount; ++cpt_.next_row) {
    cpt_.rows += AlignedRow(cpt_.next_row);
  }
}

void MonkeyWatch::CompareFile(const File& file, int index, bool closing) {
  const std::string all = file.header + file.rows;
  const std::string on_disk = ContentOf(disk_, file.path);
  const HeldText& held = sounding.Held[static_cast<std::size_t>(index)];
  if (!closing && !IsAppended(all, on_disk)) {
    Fail(file.path + " holds what was never recorded");
  } else if (closing && !IsAppended(on_disk, all) && !IsAppended(all, on_disk)) {
    Fail(file.path + " holds what was never recorded");
  }
  if (held.Text.empty() && !IsAppended(on_disk, all)) {
    Fail(file.path + " lacks rows that count as written");
  }
  if (on_disk.size() + held.Text.size() < all.size()) Fail(file.path + " has lost rows");
}

void MonkeyWatch::CheckDone() {
  done_ = true;
  ++closed_;
  std::string all = cpt_.header + cpt_.rows;
  const std::int32_t newest = sounding.RowCount;
  for (std::int32_t row = newest - cone.DelayRows + 1; row <= newest; ++row) {
    all += FlushRow(row, newest);
  }
  const std::string on_disk = ContentOf(disk_, cpt_.path);
  if (!IsAppended(on_disk, all)) Fail(cpt_.path + " is not whole, and the sounding counts as done");
  const std::string rest = on_disk.substr(std::min(all.size(), on_disk.size()));
  if (std::count(rest.begin(), rest.end(), '\n') > 1) Fail(cpt_.path + " goes on behind its end");
}

bool MonkeyWatch::LivesOnElsewhere(const std::string& content) const {
  return std::any_of(disk_.Files().begin(), disk_.Files().end(),
                     [&](const auto& file) { return IsAppended(file.second, content); });
}

void MonkeyWatch::LookAtHistory() {
  constexpr int kHeaderLines = 23;
  for (const auto& [path, content] : history_) {
    const auto found = disk_.Files().find(path);
    if (found != disk_.Files().end() && IsAppended(found->second, content)) continue;
    const bool was_closed = found != disk_.Files().end() && found->second == "DONE\r\n";
    const bool has_rows = FirstLines(content, kHeaderLines) != content;
    if (has_rows && !was_closed && !LivesOnElsewhere(content)) {
      Fail(path + " has lost what it held, " + std::to_string(content.size()) +
           " bytes that end \"" + Right(content, 80) + "\"");
      if (found != disk_.Files().end()) Fail("it now ends \"" + Right(found->second, 80) + "\"");
    }
  }
  history_.clear();
  for (const auto& [path, content] : disk_.Files()) {
    if (IsKept(path) && content != "DONE\r\n") history_[path] = content;
  }
}

void MonkeyWatch::LookAtBoxes() {
  for (const auto& box : OpenBoxes()) {
    for (const char* sign : kSigns) {
      if (box.text.find(sign) != std::string::npos) Fail("a box says \"" + box.text + "\"");
    }
  }
}

void MonkeyWatch::LookForWayOn() {
  bool way_on = BoxIsOpen();
  for (const Form* form : ShownForms()) {
    for (const Control* control : form->Controls()) way_on = way_on || IsWayOn(*form, *control);
  }
  if (way_on) last_way_on_ = Now();
  if (Now() - last_way_on_ <= kLongestDeadEnd) return;
  Fail("the operator could do nothing for a quarter of an hour");
  last_way_on_ = Now();
}

void MonkeyWatch::EndLife(bool power_lost) {
  if (!power_lost) return LookAtHistory();
  std::map<std::string, std::string> written;
  for (int index = 0; open_ && !done_ && index < 2; ++index) {
    const HeldText& held = sounding.Held[static_cast<std::size_t>(index)];
    const std::string& path = session.SoundingFiles[static_cast<std::size_t>(index)];
    if (held.Text.empty() && !held.Failed) written[path] = ContentOf(disk_, path);
  }
  disk_.LosePower();
  for (const auto& [path, content] : written) {
    if (ContentOf(disk_, path) != content)
      Fail(path + " was acknowledged and is not on the medium");
  }
  history_.clear();
}

}  // namespace penlog
