#include "real_time/loss_watch.h"

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "platform/clock.h"
#include "platform/numbers.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr Micros kEvery = 20 * kMillisecond;
constexpr Micros kSteady = kSecond;

bool ConeIsLost() {
  return cone.ConeLinkUp != kTrue || cone.ConePortLost == kTrue;
}

bool LinksAreUp() {
  return !ConeIsLost() && cone.TruckPortLost != kTrue && cone.ASCIIPortLost != kTrue &&
         cone.VideoPortLost != kTrue;
}

}  // namespace

LossWatch::~LossWatch() {
  DropCalls(this);
}

bool LossWatch::Take(const std::string& words) {
  if (words.starts_with("lost ")) {
    Loss loss;
    loss.name = words.substr(5);
    loss.rows_at_loss = sounding.RowCount;
    losses_.push_back(loss);
    DropCalls(this);
    Look();
    return true;
  }
  if (words != "back" && words != "back held") return false;
  losses_.back().back = Now();
  losses_.back().rows_at_return = rows_before_ = sounding.RowCount;
  reading_ = sounding.Readings(1);
  losses_.back().held = words == "back held";
  return true;
}

void LossWatch::Look() {
  Loss& loss = losses_.back();
  loss.cone_was_lost = loss.cone_was_lost || ConeIsLost();
  loss.truck_was_lost = loss.truck_was_lost || cone.TruckPortLost == kTrue;
  if (loss.back >= 0 && IsOver()) {
    lblOver.Caption = loss.name;
    return;
  }
  PostCall(
      Now() + kEvery, this, [this] { Look(); }, EventKind::RepeatingCall);
}

/// A second row, or a second without a loss, shows that the end is none that is soon taken back.
bool LossWatch::IsOver() {
  Loss& loss = losses_.back();
  if (!LinksAreUp()) {
    loss.over = -1;
    rows_before_ = sounding.RowCount;
    return false;
  }
  const bool well =
      loss.held || (sounding.RowCount > rows_before_ && sounding.Readings(1) != reading_);
  if (well && loss.over < 0) {
    loss.over = Now();
    first_row_ = sounding.RowCount;
  }
  if (loss.over < 0) return false;
  if (loss.held) return Now() - loss.over >= kSteady;
  return sounding.RowCount > first_row_ && HasRowsToJudge();
}

std::int32_t LossWatch::FirstRowToJudge(const Loss& loss) {
  return loss.rows_at_return + (loss.cone_was_lost ? 2 : 0);
}

bool LossWatch::HasRowsToJudge() const {
  return sounding.RowCount >= FirstRowToJudge(losses_.back()) + kRowsToJudge;
}

std::string LossWatch::Table(const std::string& wires) const {
  std::string table;
  for (const Loss& loss : losses_) {
    const bool over = loss.over >= 0 && loss.back >= 0;
    const double seconds = static_cast<double>(loss.over - loss.back) / 1e6;
    table += "| " + loss.name + " | " + wires + " | " +
             (over ? Format(seconds, "#0.0") + " s" : "not over") + " |\n";
  }
  return table;
}

void RowPasses::NoteReading() {
  const auto rows = static_cast<std::size_t>(sounding.RowCount);
  if (asked_behind_.size() < rows) asked_behind_.resize(rows, asked_.size());
  asked_.push_back(Now());
}

double RowPasses::LongestWait(std::size_t row) const {
  if (row >= asked_behind_.size() || asked_behind_[row] < 2) return -1;
  const std::size_t behind = asked_behind_[row];
  return static_cast<double>(asked_[behind] - asked_[behind - 2]) / kSecond;
}

}  // namespace penlog
