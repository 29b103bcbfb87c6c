#include "rig/cone_line.h"

#include <algorithm>
#include <utility>

#include "platform/clock.h"
#include "rig/line_pace.h"

namespace penlog {

namespace {

constexpr PortSettings kLinkSettings{kLinkBaud, 'N', 8, 1};
constexpr std::size_t kLongestCommand = 200;

}  // namespace

Micros AnswerDelay(std::string_view command) {
  if (command == "D") return 8 * kMillisecond;  // conversion of all channels
  if (command == "Y" || command == "X") return 5 * kMillisecond;
  return 3 * kMillisecond;
}

ConeLine::ConeLine(RigFaults& faults, RigLog& log, std::uint32_t seed)
    : faults_(faults), log_(log), random_(seed) {}

ConeLine::~ConeLine() {
  DropCalls(this);
}

SimUnit* ConeLine::Unit(int number) {
  if (number == 0) return cone;
  const auto found = modules.find(number);
  return found == modules.end() ? nullptr : found->second;
}

void ConeLine::Log(RigLogKind kind, int unit, std::string text) {
  log_.Add({Now(), kind, unit, depth ? depth() : 0.0, 0, std::move(text)});
}

void ConeLine::TakeSettings(const PortSettings& settings) {
  settings_fit_ = settings == kLinkSettings;
  received_.clear();
}

void ConeLine::TakeBreak(bool on) {
  if (on == in_break_) return;
  in_break_ = on;
  Log(RigLogKind::Break, on ? 1 : 0, "");
  DropCalls(this);
  received_.clear();
  waiting_.clear();
  heard_until_ = Now();
  if (cone != nullptr) cone->Reset();
  for (const auto& [number, module] : modules) module->Reset();
  last_reading_.clear();
  starting_until_ = Now() + kStartTime;
  faults_.Off(FaultName::BreakOnly);
}

void ConeLine::TakeBytes(std::string_view bytes) {
  // Characters at another speed or format are no characters here.
  if (in_break_ || !settings_fit_ || Now() < starting_until_) return;
  const Micros start = std::max(heard_until_, Now());
  heard_until_ = start + LineTime(static_cast<std::int64_t>(bytes.size()));
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] != '\r') {
      if (received_.size() < kLongestCommand) received_ += bytes[i];
      continue;
    }
    const Micros complete = start + LineTime(static_cast<std::int64_t>(i) + 1);
    PostCall(complete, this, [this, line = std::exchange(received_, "")] { Execute(line); });
  }
}

void ConeLine::Execute(const std::string& line) {
  const Addressed addressed = AddressOf(line);
  Log(RigLogKind::Command, addressed.unit, line);
  if (Unit(addressed.unit) == nullptr) return;
  if (faults_.Active(FaultName::BreakOnly, Now()) || faults_.Strikes(FaultName::Silent, Now())) {
    Log(RigLogKind::Silence, addressed.unit, line);
    return;
  }
  if (waiting_.size() > 1) waiting_.pop_back();  // room for one line beside the one in hand
  waiting_.push_back({addressed.unit, std::string(addressed.command)});
  if (waiting_.size() == 1) AnswerNext();
}

/// One command at a time: the next is looked at when the answer to the one before is out.
void ConeLine::AnswerNext() {
  if (waiting_.empty()) return;
  PostCall(Now() + AnswerDelay(waiting_.front().command), this, [this] {
    const Waiting next = waiting_.front();
    Answer(next.unit, next.command);
  });
}

std::string ConeLine::Reply(int unit, const std::string& command) {
  if (command != "D") return Unit(unit)->Answer(command);
  if (faults_.Strikes(FaultName::LostSelection, Now())) Unit(unit)->LoseSelection();
  std::string& last = last_reading_[unit];
  if (last.empty() || !faults_.Strikes(FaultName::Frozen, Now())) {
    last = Unit(unit)->Answer(command);
  }
  return last;
}

void ConeLine::Answer(int unit, const std::string& command) {
  const std::string bytes = Reply(unit, command);
  if (bytes.empty()) {
    AnswerIsOut();
    return;
  }
  RigRecord reply{Now(), RigLogKind::Reply, unit, depth ? depth() : 0.0, 0, Disturb(bytes)};
  if (command == "D") reply.sampled = Now();
  const Micros end = SendPieces(std::move(reply));
  PostCall(end, this, [this] { AnswerIsOut(); });
}

void ConeLine::AnswerIsOut() {
  waiting_.pop_front();
  AnswerNext();
}

std::string ConeLine::Disturb(std::string bytes) {
  if (faults_.Strikes(FaultName::Garbled, Now())) bytes = Garble(std::move(bytes));
  if (faults_.Strikes(FaultName::HalfReply, Now())) bytes.resize(bytes.size() / 2);
  return bytes;
}

std::string ConeLine::Garble(std::string bytes) {
  const std::size_t length = bytes.size() < 3 ? 0 : bytes.size() - 2;  // the line end stays
  for (std::size_t i = 0; i < length; ++i) {
    if (random_() % 4 == 0) bytes[i] = static_cast<char>(33 + random_() % 94);
  }
  if (length > 2) bytes[length / 2] = '\r';
  return bytes;
}

/// The time when the last character is out.
Micros ConeLine::SendPieces(RigRecord reply) {
  const Micros start = Now();
  const auto length = static_cast<std::int64_t>(reply.text.size());
  const Micros end = start + LineTime(length);
  for (std::int64_t at = 0; at + kAdapterPiece < length; at += kAdapterPiece) {
    std::string piece = reply.text.substr(static_cast<std::size_t>(at), kAdapterPiece);
    PostCall(start + LineTime(at + kAdapterPiece), this, [this, piece = std::move(piece)] {
      if (wire != nullptr) wire->Send(piece);
    });
  }
  reply.time = end;
  PostCall(end, this, [this, reply = std::move(reply), length] {
    const std::int64_t rest = length == 0 ? 0 : (length - 1) % kAdapterPiece + 1;
    if (wire != nullptr) wire->Send(reply.text.substr(static_cast<std::size_t>(length - rest)));
    log_.Add(reply);
    if (reply.sampled > 0 && on_reading_sent) on_reading_sent(reply.sampled);
  });
  return end;
}

void ConeLine::SendAt(Micros time, int unit, const std::string& bytes) {
  PostCall(time, this, [this, unit, bytes] {
    SendPieces({Now(), RigLogKind::Reply, unit, depth ? depth() : 0.0, 0, bytes});
  });
}

}  // namespace penlog
