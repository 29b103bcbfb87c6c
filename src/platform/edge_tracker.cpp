#include "platform/edge_tracker.h"

#include <array>

namespace penlog {

namespace {

constexpr std::array<bool ModemLines::*, 3> kLines = {&ModemLines::cts, &ModemLines::dsr,
                                                      &ModemLines::cd};

using Deltas = std::array<std::uint32_t, 3>;

Deltas Since(const EdgeCounts& before, const EdgeCounts& now) {
  return {now.cts - before.cts, now.dsr - before.dsr, now.cd - before.cd};
}

int Differing(ModemLines a, ModemLines b) {
  int count = 0;
  for (const auto line : kLines) count += a.*line != b.*line ? 1 : 0;
  return count;
}

}  // namespace

EdgeTracker::EdgeTracker(ModemLines lines, std::optional<EdgeCounts> counts)
    : lines_(lines), counts_(counts) {}

EdgeReport EdgeTracker::Take(ModemLines lines, std::optional<EdgeCounts> counts, Micros now) {
  if (!counts || !counts_ || counters_are_dead_) return ByLines(lines);
  if (*counts == *counts_) return Agree(lines, now);
  counters_moved_ = true;
  disagreed_since_.reset();
  EdgeReport report = ByCounts(*counts);
  counts_ = counts;
  if (lines != lines_) disagreed_since_ = now;
  return report;
}

// Two lines that changed are two edges in an order that nobody saw.
EdgeReport EdgeTracker::ByLines(ModemLines lines) {
  EdgeReport report;
  const int changed = Differing(lines, lines_);
  if (changed == 0) return report;
  lines_ = lines;
  report.edges.push_back(lines);
  report.lost = changed - 1;
  return report;
}

EdgeReport EdgeTracker::ByCounts(const EdgeCounts& counts) {
  const Deltas deltas = Since(*counts_, counts);
  EdgeReport report;
  std::int64_t counted = 0;
  int moved = 0;
  for (const auto delta : deltas) {
    counted += delta;
    moved += delta > 0 ? 1 : 0;
  }
  const ModemLines before = lines_;
  for (std::size_t i = 0; i < kLines.size(); ++i) {
    const bool one_by_one = moved == 1 && deltas[i] <= kMostEdgesAtOnce;
    for (std::uint32_t n = one_by_one ? deltas[i] : deltas[i] % 2; n > 0; --n) {
      lines_.*kLines[i] = !(lines_.*kLines[i]);
      if (moved == 1) report.edges.push_back(lines_);
    }
  }
  if (moved > 1 && lines_ != before) report.edges.push_back(lines_);
  report.lost = counted - static_cast<std::int64_t>(report.edges.size());
  return report;
}

// The counters stand still. Lines that go on differing from them were changed by an edge that was
// not counted.
EdgeReport EdgeTracker::Agree(ModemLines lines, Micros now) {
  if (lines == lines_) {
    disagreed_since_.reset();
    return {};
  }
  if (!disagreed_since_) disagreed_since_ = now;
  if (now - *disagreed_since_ < kDisagreementLimit) return {};
  disagreed_since_.reset();
  counters_are_dead_ = !counters_moved_;
  EdgeReport report = ByLines(lines);
  ++report.lost;  // its time and its place among the others are unknown
  return report;
}

}  // namespace penlog
